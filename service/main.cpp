#include "service/Authentication.h"
#include "service/Catalogue.h"
#include "service/Cluster.h"
#include "service/ConnectionPool.h"
#include "service/Files.h"
#include "service/Gateway.h"
#include "service/HttpServer.h"
#include "service/Migrations.h"
#include "service/Options.h"
#include "service/RestWriting.h"
#include "service/StartFailure.h"

#include <csignal>
#include <cstdio>
#include <cstring>

namespace {

constexpr std::string_view restPath = "/rest/v1/";
constexpr std::string_view authPath = "/auth/v1/";
constexpr std::size_t sessionCount = 16;

Reply answerRest(const Rest &rest, const Keys &keys, const Call &call)
{
    const std::string table = call.path.substr(restPath.size());
    const Caller caller = callerOf(call, keys);
    try {
        if (call.verb == "GET" || call.verb == "HEAD")
            return readRows(rest, call, caller, table);
        if (call.verb == "POST")
            return insertRows(rest, call, caller, table);
        if (call.verb == "PATCH")
            return updateRows(rest, call, caller, table);
        if (call.verb == "DELETE")
            return deleteRows(rest, call, caller, table);
        return restError(405, "PGRST117", "Unsupported HTTP method: " + call.verb);
    } catch (const DatabaseError &error) {
        return restError(error, caller.isSignedIn());
    }
}

Reply answer(const Rest &rest, Authentication &authentication, const Keys &keys, const Call &call)
{
    if (call.path.starts_with(authPath)) {
        const std::string operation = call.path.substr(authPath.size());
        // A link in a mail is opened by a browser, which has no key.
        if (operation != "verify")
            requireProjectKey(call, keys);
        return authentication.answer(operation, call);
    }
    if (call.path.starts_with(restPath)) {
        requireProjectKey(call, keys);
        return answerRest(rest, keys, call);
    }
    Reply reply;
    reply.status = 404;
    reply.body = R"({"error":"requested path is invalid"})";
    return reply;
}

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
    migrate(administration, options.supabase, options.seedPassword);
    const Catalogue catalogue(administration);
    ConnectionPool sessions(cluster.connectionText("authenticator"), sessionCount);
    const Rest rest{sessions, catalogue, options.maxRows};

    ConnectionPool accountSessions(cluster.connectionText("postgres"), sessionCount);
    Authentication authentication(options, keys, accountSessions, Outbox(folder.path("outbox")));

    const HttpServer server(
        options.port, [&](const Call &call) { return answer(rest, authentication, keys, call); });
    const std::string ready = "SUPABASE_URL=http://127.0.0.1:" + std::to_string(server.port())
        + "\nSUPABASE_KEY=" + keys.anonKey + '\n';
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
