#pragma once

#include "account/Credentials.h"
#include "backend/Configuration.h"
#include "backend/DiagnosticFile.h"
#include "backend/Sender.h"
#include "backend/Session.h"
#include "model/Event.h"
#include "model/EventCreatePayload.h"
#include "platform/NotificationCenter.h"
#include "platform/UserDefaults.h"

/// The service as the application uses it: the operations, and the session they share.
///
/// For one thread, on which its tasks resume. They throw LocalizedErrors and nothing else. A
/// Backend that is destroyed ends the tasks still on their way with a TransportError. What changes
/// something at the service (the writes, signUp) keeps an application that quits because its last
/// window was closed until it has been answered; what only asks does not.
class Backend : public QObject {
    Q_OBJECT

public:
    /// `defaults` and `center` must outlive this. `diagnosticFile`: where the last events reply
    /// that could not be decoded is left.
    Backend(const Configuration &configuration, UserDefaults &defaults, NotificationCenter &center,
            const Limits &limits = {}, const QString &diagnosticFile = defaultDiagnosticFile(),
            QObject *parent = nullptr);
    ~Backend() override;

    /// "SupabaseAuthChanged": posted after every change of the sign-in state or of the remembered
    /// record, on this thread, when the session's values are the new ones already.
    static const QString &authChangedNotification();

    /// All events, in the service's order. Open to everybody.
    QCoro::Task<QList<Event>> fetchEvents();

    // For members: a task throws SupabaseError `authError` when nobody is signed in at its start. A
    // sign-out later does not affect it. Whatever the connection does, a write reaches the service
    // at most once.

    QCoro::Task<void> createEvent(EventCreatePayload payload);
    QCoro::Task<void> updateEvent(QString id, EventCreatePayload payload);
    QCoro::Task<void> deleteEvent(QString id);

    /// Signs in, announces it, then remembers the credentials. Throws SupabaseError `authError`
    /// with the service's reason; the session is then as it was.
    QCoro::Task<void> signIn(QString email, QString password);
    /// Creates an account and goes on as signIn does, where the service signs the new member in.
    /// Where it first waits for the address to be confirmed, an `authError` tells so.
    QCoro::Task<void> signUp(QString email, QString password);
    /// Ends the session, here only, and announces it. The remembered credentials stay.
    void signOut();
    /// Forgets the remembered credentials and announces it. The session stays.
    void clearSavedCredentials();

    const Session &session() const { return m_session; }

private:
    QCoro::Task<void> write(Request request);
    /// The body of a success.
    QCoro::Task<QByteArray> bodyOf(Reply reply);
    /// The session that the authentication interface grants to who typed `credentials`.
    QCoro::Task<Session> sessionFor(Credentials credentials, Request request, QString fallback);
    void begin(const Session &session, const Credentials &credentials);

    const Configuration m_configuration;
    UserDefaults &m_defaults;
    NotificationCenter &m_center;
    const QString m_diagnosticFile;
    Session m_session;
    WaitingRoom m_room;
    Worker m_worker;
    Sender m_sender;
};
