#pragma once

#include "backend/SupabaseClient.h"
#include "support/HttpServer.h"
#include "support/OwnHome.h"
#include "support/PrivateBus.h"

#include <QApplication>
#include <QTest>

/// The whole of main() for the tests of the program as it starts: runs them against a service and
/// on a session bus of their own, with a configuration folder of their own.
template <typename Test>
int runOnDesktop(int argc, char *argv[])
{
    const OwnHome home;
    const PrivateBus bus;
    const QApplication application(argc, argv);
    // What cannot be decoded is not left where the user's own program leaves it.
    const SupabaseClient::Lifetime client(home.path() + QLatin1String("/reply.json"));
    HttpServer server;
    // Read once, at the first use of the service.
    qputenv("SUPABASE_URL", server.base().toLatin1());
    qputenv("SUPABASE_KEY", "public-key");
    Test test(server);
    const int result = QTest::qExec(&test, argc, argv);
    server.hangUp();
    return result;
}
