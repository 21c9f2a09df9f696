#include "service/Authentication.h"
#include "service/Catalogue.h"
#include "service/Cluster.h"
#include "service/ConnectionPool.h"
#include "service/Files.h"
#include "service/HttpServer.h"
#include "service/Migrations.h"
#include "service/Options.h"
#include "service/Router.h"
#include "service/StartFailure.h"

#include <csignal>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <exception>
#include <string>

namespace {

constexpr std::size_t sessionCount = 16;

/// Blocked before any thread starts, so that only waitForEnd() ever takes them.
sigset_t awaitedSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGCHLD})
        sigaddset(&signals, number);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    return signals;
}

void waitForEnd(const sigset_t &signals, Cluster &cluster)
{
    for (int number = 0;;) {
        if (sigwait(&signals, &number) == 0 && number != SIGCHLD)
            return;
        if (cluster.hasEnded())
            throw StartFailure("the database has ended unexpectedly");
    }
}

void serve(const Options &options)
{
    const sigset_t signals = awaitedSignals();
    const auto account = databaseAccount();
    const DataFolder folder(options.data, account);
    const Keys keys = keysOf(folder);
    Cluster cluster(folder, account);
    Connection administration(cluster.connectionText("postgres"));
    migrate(administration, options);
    const Catalogue catalogue(administration);
    ConnectionPool sessions(cluster.connectionText("authenticator"), sessionCount);
    const Rest rest{sessions, catalogue, options.maxRows};

    ConnectionPool accountSessions(cluster.connectionText("postgres"), sessionCount);
    Authentication authentication(options, keys, accountSessions, Outbox(folder.path("outbox")));

    const Router router(rest, authentication, keys);
    const HttpServer server(options.port, [&](const Call &call) { return router.answer(call); });
    const std::string ready = "SUPABASE_URL=http://127.0.0.1:" + std::to_string(server.port())
        + "\nSUPABASE_KEY=" + keys.publishable + '\n';
    if (options.readyFile)
        writeFileAtomically(*options.readyFile, ready, 0600);
    waitForEnd(signals, cluster);
}

} // namespace

int main(int count, char **arguments)
{
    if (count == 2 && std::strcmp(arguments[1], "--help") == 0) {
        std::fputs(usageText, stdout);
        return 0;
    }
    try {
        serve(optionsFrom(count, arguments));
        return 0;
    } catch (const std::exception &error) {
        std::fprintf(stderr, "amorvelle-service: %s\n", error.what());
        return 1;
    }
}
