#include "backend/SupabaseClient.h"

#include "backend/Backend.h"
#include "backend/BundleDictionary.h"

#include <QCoreApplication>
#include <QPointer>

namespace {

Backend &backend()
{
    static QPointer<Backend> shared;
    if (!shared) {
        const auto configuration =
            Configuration::from(mainBundleDictionary(), QProcessEnvironment::systemEnvironment());
        shared = new Backend(configuration, UserDefaults::standard(),
                             NotificationCenter::defaultCenter(), {},
                             Backend::defaultDiagnosticFile(), QCoreApplication::instance());
    }
    return *shared;
}

} // namespace

namespace SupabaseClient {

const QString &authChangedNotification()
{
    return Backend::authChangedNotification();
}

QCoro::Task<QList<Event>> fetchEvents()
{
    return backend().fetchEvents();
}

QCoro::Task<void> createEvent(const EventCreatePayload &payload)
{
    return backend().createEvent(payload);
}

QCoro::Task<void> updateEvent(const QString &id, const EventCreatePayload &payload)
{
    return backend().updateEvent(id, payload);
}

QCoro::Task<void> deleteEvent(const QString &id)
{
    return backend().deleteEvent(id);
}

QCoro::Task<void> signIn(const QString &email, const QString &password)
{
    return backend().signIn(email, password);
}

QCoro::Task<void> signUp(const QString &email, const QString &password)
{
    return backend().signUp(email, password);
}

void signOut()
{
    backend().signOut();
}

void clearSavedCredentials()
{
    backend().clearSavedCredentials();
}

const Session &session()
{
    return backend().session();
}

} // namespace SupabaseClient
