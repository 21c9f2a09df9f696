#pragma once

#include "account/CredentialsStore.h"
#include "backend/Backend.h"
#include "support/Await.h"
#include "support/HttpServer.h"

#include <QTemporaryDir>

#include <chrono>
#include <optional>

using namespace Qt::StringLiterals;

struct LocalBackendParts {
    QTemporaryDir folder;
    UserDefaults defaults{folder.filePath(u"defaults"_s)};
    NotificationCenter center;
};

/// A Backend that remembers, announces and leaves diagnostics where nobody else does.
class LocalBackend : public LocalBackendParts, public Backend {
public:
    explicit LocalBackend(const Configuration &configuration, const Limits &limits = {})
        : LocalBackend(configuration, limits, {})
    {
    }
    LocalBackend(const Configuration &configuration, const Limits &limits,
                 const QString &diagnosticFile)
        : Backend(configuration, defaults, center, limits,
                  diagnosticFile.isEmpty() ? folder.filePath(u"reply.json"_s) : diagnosticFile)
    {
    }
};

/// Gives up soon: for replies that never come.
inline Limits impatient()
{
    Limits limits;
    limits.silence = std::chrono::seconds(1);
    return limits;
}

/// What becomes of fetching the events from a service, or from one that answers thus.
inline Outcome<QList<Event>> fetch(const QString &base, const Limits &limits = {})
{
    LocalBackend backend({base, u"jeton-secret"_s}, limits);
    auto outcome = outcomeOf(backend.fetchEvents());
    return outcome;
}
inline Outcome<QList<Event>> fetchAnswered(const HttpAnswer &answer, const Limits &limits = {})
{
    HttpServer server;
    server.answer(answer);
    return fetch(server.base(), limits);
}

/// Somebody who signs in and up at a service of the test's.
struct Visitor {
    HttpServer server;
    LocalBackend backend{{server.base(), u"clef"_s}};

    /// Why it failed, if the service answers thus; empty when it succeeded.
    QString signedIn(const HttpAnswer &answer, bool isNew = false)
    {
        server.answer(answer);
        return outcomeOf(isNew ? backend.signUp(u" A@b.fr"_s, u"mot de passe"_s)
                               : backend.signIn(u" A@b.fr"_s, u"mot de passe"_s))
            .failure();
    }

    std::optional<Credentials> remembered() const
    {
        return CredentialsStore::loadCredentials(backend.defaults);
    }
};
