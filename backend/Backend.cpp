#include "backend/Backend.h"

#include "account/CredentialsStore.h"
#include "backend/AuthReply.h"
#include "backend/AuthRequests.h"
#include "backend/DecodeOnWorker.h"
#include "backend/EventRequests.h"
#include "backend/SupabaseError.h"

#include <QEventLoopLocker>

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

QString Backend::defaultDiagnosticFile()
{
    return u"/tmp/events-response.json"_s;
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
    QByteArray body = judged(reply.status, std::exchange(reply.body, {}));
    QCoro::Task<QList<Event>> decoding =
        decodeOnWorker(m_worker, m_room, std::move(body), m_diagnosticFile);
    co_return co_await decoding;
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
    const Reply reply = co_await sending;
    // What the service says of the row is not read: the caller loads the list anew.
    judged(reply.status, reply.body);
}

QCoro::Task<void> Backend::signIn(QString email, QString password)
{
    const Credentials credentials{email, password};
    Request request = signInRequest(m_configuration, credentials);
    QCoro::Task<Reply> sending = m_sender.send(std::move(request));
    const Reply reply = co_await sending;
    begin(granted(reply, u"Authentication failed."_s), credentials);
}

QCoro::Task<void> Backend::signUp(QString email, QString password)
{
    const Credentials credentials{email, password};
    const QEventLoopLocker running;
    Request request = signUpRequest(m_configuration, credentials);
    QCoro::Task<Reply> sending = m_sender.send(std::move(request));
    const Reply reply = co_await sending;
    const AuthResponse response = granted(reply, u"Sign up failed."_s);
    if (!response.access_token) {
        throw SupabaseError::authError(
            u"Compte créé. Vérifiez votre email pour confirmer la connexion."_s);
    }
    begin(response, credentials);
}

void Backend::begin(const AuthResponse &response, const Credentials &credentials)
{
    m_session = sessionOf(response, credentials.email);
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
