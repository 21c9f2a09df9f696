#pragma once

#include "backend/SupabaseClient.h"
#include "look/Accessibility.h"
#include "support/HttpServer.h"
#include "support/OwnHome.h"

#include <QApplication>
#include <QTest>

/// The whole of main() for the tests of a view: runs them against a service of their own, which the
/// program finds as its project, and with a configuration folder of their own. `prepare` runs
/// before the first test.
template <typename Test>
int runWithService(
    int argc, char *argv[], void (*prepare)() = [] {})
{
    const OwnHome home;
    const QApplication application(argc, argv);
    // What cannot be decoded is not left where the user's own program leaves it.
    const SupabaseClient::Lifetime client(home.path() + QLatin1String("/reply.json"));
    installAccessibility();
    prepare();
    HttpServer server;
    // Read once, at the first use of the service.
    qputenv("SUPABASE_URL", server.base().toLatin1());
    qputenv("SUPABASE_KEY", "public-key");
    Test test(server);
    const int result = QTest::qExec(&test, argc, argv);
    server.hangUp();
    return result;
}
