#pragma once

#include <QByteArray>
#include <QObject>

extern "C" {
struct _IceConn;
struct _SmsConn;
}

/// As much of a desktop's session manager as one program needs to take part in a session and to be
/// told that it ends.
class StandInSessionManager : public QObject {
    Q_OBJECT

public:
    StandInSessionManager();
    ~StandInSessionManager() override;
    Q_DISABLE_COPY_MOVE(StandInSessionManager)

    /// What programs find it by, in SESSION_MANAGER.
    const QByteArray &address() const { return m_address; }
    /// Whether a program takes part, and has nothing left to save for its beginning.
    bool hasMember() const { return m_member != nullptr && m_isSettled; }

    /// Asks the program to save what it has, and once that is done to end.
    void logOut();
    /// Tells it to end without asking.
    void dismiss();

private:
    friend struct SessionCallbacks;
    void accept(int index);
    void letGo(_IceConn *connection);

    QByteArray m_address;
    int m_listenerCount = 0;
    void *m_listeners = nullptr;
    _SmsConn *m_member = nullptr;
    bool m_isSettled = false;
    bool m_isLoggingOut = false;
};
