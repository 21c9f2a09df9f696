#include "backend/SupabaseClient.h"

#include "backend/Backend.h"
#include "backend/BundleDictionary.h"

#include "backend/TransportError.h"

#include <memory>
#include <utility>

namespace {

struct Shared {
    bool isAlive = false;
    QString diagnosticFile;
    std::unique_ptr<Backend> backend;
};

Shared &shared()
{
    static Shared only;
    return only;
}

// None outside the lifetime.
Backend *backend()
{
    Shared &only = shared();
    if (only.isAlive && !only.backend) {
        const auto configuration =
            Configuration::from(mainBundleDictionary(), QProcessEnvironment::systemEnvironment());
        only.backend = std::make_unique<Backend>(configuration, UserDefaults::standard(),
                                                 NotificationCenter::defaultCenter(), Limits{},
                                                 only.diagnosticFile);
    }
    return only.backend.get();
}

template <typename T>
QCoro::Task<T> tooLate()
{
    throw TransportError::ofClosing();
    co_return T();
}

} // namespace

namespace SupabaseClient {

Lifetime::Lifetime(const QString &diagnosticFile)
{
    shared().diagnosticFile = diagnosticFile;
    shared().isAlive = true;
}

Lifetime::~Lifetime()
{
    // First the end, then what it ends: who is woken by it may ask again.
    shared().isAlive = false;
    const std::unique_ptr<Backend> last = std::move(shared().backend);
}

const QString &authChangedNotification()
{
    return Backend::authChangedNotification();
}

QCoro::Task<QList<Event>> fetchEvents()
{
    Backend *const service = backend();
    return service ? service->fetchEvents() : tooLate<QList<Event>>();
}

QCoro::Task<void> createEvent(const EventCreatePayload &payload)
{
    Backend *const service = backend();
    return service ? service->createEvent(payload) : tooLate<void>();
}

QCoro::Task<void> updateEvent(const QString &id, const EventCreatePayload &payload)
{
    Backend *const service = backend();
    return service ? service->updateEvent(id, payload) : tooLate<void>();
}

QCoro::Task<void> deleteEvent(const QString &id)
{
    Backend *const service = backend();
    return service ? service->deleteEvent(id) : tooLate<void>();
}

QCoro::Task<void> signIn(const QString &email, const QString &password)
{
    Backend *const service = backend();
    return service ? service->signIn(email, password) : tooLate<void>();
}

QCoro::Task<void> signUp(const QString &email, const QString &password)
{
    Backend *const service = backend();
    return service ? service->signUp(email, password) : tooLate<void>();
}

void signOut()
{
    if (Backend *const service = backend())
        service->signOut();
}

void clearSavedCredentials()
{
    if (Backend *const service = backend())
        service->clearSavedCredentials();
}

const Session &session()
{
    static const Session nobodys;
    const Backend *const service = backend();
    return service ? service->session() : nobodys;
}

} // namespace SupabaseClient
