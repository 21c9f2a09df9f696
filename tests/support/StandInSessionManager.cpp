#include "support/StandInSessionManager.h"

#include <QSocketNotifier>

#include <X11/ICE/ICElib.h>
#include <X11/ICE/ICEutil.h>
#include <X11/SM/SMlib.h>

#include <array>
#include <cstdlib>
#include <utility>

struct SessionCallbacks {
    static StandInSessionManager *self(SmPointer data)
    {
        return static_cast<StandInSessionManager *>(data);
    }

    static Status welcome(SmsConn member, SmPointer data, unsigned long *mask,
                          SmsCallbacks *callbacks, char **)
    {
        self(data)->m_member = member;
        self(data)->m_isSettled = false;
        self(data)->m_isLoggingOut = false;
        *mask = SmsRegisterClientProcMask | SmsInteractRequestProcMask | SmsInteractDoneProcMask
            | SmsSaveYourselfRequestProcMask | SmsSaveYourselfP2RequestProcMask
            | SmsSaveYourselfDoneProcMask | SmsCloseConnectionProcMask | SmsSetPropertiesProcMask
            | SmsDeletePropertiesProcMask | SmsGetPropertiesProcMask;
        callbacks->register_client = {enrol, data};
        callbacks->interact_request = {[](SmsConn conn, SmPointer, int) { SmsInteract(conn); },
                                       data};
        callbacks->interact_done = {[](SmsConn, SmPointer, Bool) {}, data};
        callbacks->save_yourself_request = {[](SmsConn, SmPointer, int, Bool, int, Bool, Bool) {},
                                            data};
        callbacks->save_yourself_phase2_request = {
            [](SmsConn conn, SmPointer) { SmsSaveYourselfPhase2(conn); }, data};
        callbacks->save_yourself_done = {noteSaved, data};
        callbacks->close_connection = {
            [](SmsConn conn, SmPointer manager, int count, char **reasons) {
                SmFreeReasons(count, reasons);
                self(manager)->letGo(SmsGetIceConnection(conn));
            },
            data};
        callbacks->set_properties = {[](SmsConn, SmPointer, int count, SmProp **properties) {
                                         for (int i = 0; i < count; ++i)
                                             SmFreeProperty(properties[i]);
                                         std::free(properties);
                                     },
                                     data};
        callbacks->delete_properties = {[](SmsConn, SmPointer, int count, char **names) {
                                            for (int i = 0; i < count; ++i)
                                                std::free(names[i]);
                                            std::free(names);
                                        },
                                        data};
        callbacks->get_properties = {
            [](SmsConn conn, SmPointer) { SmsReturnProperties(conn, 0, nullptr); }, data};
        return True;
    }

    static Status enrol(SmsConn member, SmPointer, char *previous)
    {
        char *id = previous ? previous : SmsGenerateClientID(member);
        SmsRegisterClientReply(member, id);
        std::free(id);
        // So the protocol wants it of a new member.
        SmsSaveYourself(member, SmSaveLocal, False, SmInteractStyleNone, False);
        return True;
    }

    static void noteSaved(SmsConn member, SmPointer data, Bool)
    {
        if (self(data)->m_isLoggingOut) {
            SmsDie(member);
            return;
        }
        SmsSaveComplete(member);
        self(data)->m_isSettled = true;
    }
};

StandInSessionManager::StandInSessionManager()
{
    std::array<char, 256> error{};
    const auto length = static_cast<int>(error.size());
    // No secrets between this test and itself.
    const auto letIn = [](char *) -> Bool { return True; };
    if (!SmsInitialize("stand-in", "1", SessionCallbacks::welcome, this, letIn, length,
                       error.data()))
        qFatal("no session: %s", error.data());
    // A program that dies takes no more of this one along than its connection.
    IceSetIOErrorHandler([](IceConn) {});
    IceListenObj *listeners = nullptr;
    if (!IceListenForConnections(&m_listenerCount, &listeners, length, error.data()))
        qFatal("nobody can join the session: %s", error.data());
    m_listeners = listeners;
    char *address = IceComposeNetworkIdList(m_listenerCount, listeners);
    m_address = address;
    std::free(address);
    for (int i = 0; i < m_listenerCount; ++i) {
        IceSetHostBasedAuthProc(listeners[i], letIn);
        auto *notifier = new QSocketNotifier(IceGetListenConnectionNumber(listeners[i]),
                                             QSocketNotifier::Read, this);
        connect(notifier, &QSocketNotifier::activated, this, [this, i] { accept(i); });
    }
}

StandInSessionManager::~StandInSessionManager()
{
    if (m_member)
        letGo(SmsGetIceConnection(m_member));
    IceFreeListenObjs(m_listenerCount, static_cast<IceListenObj *>(m_listeners));
}

void StandInSessionManager::logOut()
{
    m_isLoggingOut = true;
    SmsSaveYourself(m_member, SmSaveBoth, True, SmInteractStyleAny, False);
}

void StandInSessionManager::dismiss()
{
    SmsDie(m_member);
}

void StandInSessionManager::accept(int index)
{
    IceAcceptStatus status{};
    IceConn connection =
        IceAcceptConnection(static_cast<IceListenObj *>(m_listeners)[index], &status);
    if (!connection)
        return;
    auto *notifier =
        new QSocketNotifier(IceConnectionNumber(connection), QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, notifier, connection] {
        const auto outcome = IceProcessMessages(connection, nullptr, nullptr);
        if (outcome == IceProcessMessagesSuccess)
            return;
        notifier->setEnabled(false);
        notifier->deleteLater();
        // A program that was killed did not say goodbye.
        if (outcome == IceProcessMessagesIOError)
            letGo(connection);
    });
}

void StandInSessionManager::letGo(_IceConn *connection)
{
    if (m_member && SmsGetIceConnection(m_member) == connection)
        SmsCleanUp(std::exchange(m_member, nullptr));
    IceSetShutdownNegotiation(connection, False);
    IceCloseConnection(connection);
}
