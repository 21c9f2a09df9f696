#pragma once

#include "backend/DiagnosticFile.h"
#include "backend/Session.h"

#include <QCoro/QCoroTask>
#include <QList>

struct Event;
struct EventCreatePayload;

/// The application's only way to the service: one Backend for the whole process, built on first use
/// with the configuration found then, the user's defaults and the default notification centre.
///
/// To be used on the main thread, on which the tasks resume too. Every task may throw a
/// LocalizedError (SupabaseError, TransportError, UndecodableReply) and nothing else.
namespace SupabaseClient {

/// For as long as one of these lives there is a Backend to be had. Whoever starts the program makes
/// one, once, after the QCoreApplication, and lets it go before: what a network manager tears down
/// later, TLS above all, is torn down too late. With it the tasks on their way end; and whatever is
/// asked afterwards fails alike, as does what is asked before. Nobody is signed in then.
class Lifetime {
public:
    /// `diagnosticFile`: as a Backend's.
    explicit Lifetime(const QString &diagnosticFile = defaultDiagnosticFile());
    ~Lifetime();
    Q_DISABLE_COPY_MOVE(Lifetime)
};

/// The name posted on NotificationCenter::defaultCenter() after every change of the sign-in state
/// or of the remembered record: "SupabaseAuthChanged".
const QString &authChangedNotification();

/// All events, in the service's order. Open to everybody.
QCoro::Task<QList<Event>> fetchEvents();
/// Writes a new event. Sent to the service at most once, as all that follow.
QCoro::Task<void> createEvent(const EventCreatePayload &payload);
/// Changes the event with this identifier; what the payload leaves absent stays as it was.
QCoro::Task<void> updateEvent(const QString &id, const EventCreatePayload &payload);
/// Deletes the event with this identifier; one that does not exist counts as deleted.
QCoro::Task<void> deleteEvent(const QString &id);

/// Signs in, announces it, then remembers the credentials.
QCoro::Task<void> signIn(const QString &email, const QString &password);
/// Creates an account; signs in with it when the service gives a session at once, else throws an
/// `authError` that tells to confirm the address.
QCoro::Task<void> signUp(const QString &email, const QString &password);
/// Ends the session here and announces it; the remembered credentials stay.
void signOut();
/// Forgets the remembered credentials and announces it; the session stays.
void clearSavedCredentials();

/// Who is signed in now.
const Session &session();

} // namespace SupabaseClient
