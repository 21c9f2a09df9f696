#include "backend/Backend.h"

#include "account/CredentialsStore.h"
#include "backend/AuthReply.h"
#include "backend/AuthRequests.h"
#include "backend/EventRequests.h"
#include "backend/FetchedEvents.h"
#include "backend/ReadReply.h"
#include "backend/SupabaseError.h"

#include <QEventLoopLocker>

#include <functional>
#include <utility>

using namespace Qt::StringLiterals;

Backend::Backend(const Configuration &configuration, UserDefaults &defaults,
                 NotificationCenter &center, const Limits &limits, const QString &diagnosticFile,
                 QObject *parent)
    : QObject(parent)
    , m_configuration(configuration)
    , m_defaults(defaults)
    , m_center(center)
    , m_diagnosticFile(diagnosticFile)
    , m_sender(m_worker, m_room, limits)
{
}

Backend::~Backend()
{
    // While everything that the tasks touch on their way out is still there.
    m_room.close();
}

const QString &Backend::authChangedNotification()
{
    static const QString name = u"SupabaseAuthChanged"_s;
    return name;
}

QCoro::Task<QList<Event>> Backend::fetchEvents()
{
    Request request = fetchEventsRequest(m_configuration, m_session);
    QCoro::Task<Reply> sending = m_sender.send(std::move(request));
    Reply reply = co_await sending;
    std::function read = [path = m_diagnosticFile](const Reply &it) { return eventsOf(it, path); };
    QCoro::Task<QList<Event>> reading =
        readReply(m_worker, m_room, std::move(reply), std::move(read));
    co_return co_await reading;
}

QCoro::Task<void> Backend::createEvent(EventCreatePayload payload)
{
    Request request = createEventRequest(m_configuration, m_session, payload);
    QCoro::Task<void> writing = write(std::move(request));
    co_await writing;
}

QCoro::Task<void> Backend::updateEvent(QString id, EventCreatePayload payload)
{
    Request request = updateEventRequest(m_configuration, m_session, id, payload);
    QCoro::Task<void> writing = write(std::move(request));
    co_await writing;
}

QCoro::Task<void> Backend::deleteEvent(QString id)
{
    Request request = deleteEventRequest(m_configuration, m_session, id);
    QCoro::Task<void> writing = write(std::move(request));
    co_await writing;
}

QCoro::Task<void> Backend::write(Request request)
{
    const QEventLoopLocker running;
    QCoro::Task<Reply> sending = m_sender.send(std::move(request));
    Reply reply = co_await sending;
    // What the service says of the row is not read: the caller loads the list anew.
    QCoro::Task<QByteArray> judging = bodyOf(std::move(reply));
    co_await judging;
}

QCoro::Task<QByteArray> Backend::bodyOf(Reply reply)
{
    std::function judge = [](const Reply &it) { return judged(it.status, it.body); };
    QCoro::Task<QByteArray> judging =
        readReply(m_worker, m_room, std::move(reply), std::move(judge));
    co_return co_await judging;
}

QCoro::Task<void> Backend::signIn(QString email, QString password)
{
    const Credentials credentials{email, password};
    Request request = signInRequest(m_configuration, credentials);
    QCoro::Task<Session> asking =
        sessionFor(credentials, std::move(request), u"Authentication failed."_s);
    const Session session = co_await asking;
    begin(session, credentials);
}

QCoro::Task<void> Backend::signUp(QString email, QString password)
{
    const Credentials credentials{email, password};
    const QEventLoopLocker running;
    Request request = signUpRequest(m_configuration, credentials);
    QCoro::Task<Session> asking = sessionFor(credentials, std::move(request), u"Sign up failed."_s);
    const Session session = co_await asking;
    if (!session.accessToken) {
        throw SupabaseError::authError(
            u"Compte créé. Vérifiez votre email pour confirmer la connexion."_s);
    }
    begin(session, credentials);
}

QCoro::Task<Session> Backend::sessionFor(Credentials credentials, Request request, QString fallback)
{
    QCoro::Task<Reply> sending = m_sender.send(std::move(request));
    Reply reply = co_await sending;
    std::function read = [email = credentials.email, fallback](const Reply &it) {
        return sessionOf(granted(it, fallback), email);
    };
    QCoro::Task<Session> reading = readReply(m_worker, m_room, std::move(reply), std::move(read));
    co_return co_await reading;
}

void Backend::begin(const Session &session, const Credentials &credentials)
{
    m_session = session;
    m_center.post(authChangedNotification());
    CredentialsStore::save(credentials, m_defaults);
}

void Backend::signOut()
{
    m_session = {};
    m_center.post(authChangedNotification());
}

void Backend::clearSavedCredentials()
{
    m_defaults.remove(CredentialsStore::key.toString());
    m_center.post(authChangedNotification());
}
