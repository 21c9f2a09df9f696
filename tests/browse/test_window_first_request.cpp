// That the service is asked as a window opens, not after it: the service works while the window is
// painted.

#include "browse/ContentView.h"
#include "support/ViewMain.h"

#include <QTcpServer>
#include <QTcpSocket>

class TestWindowFirstRequest : public QObject {
    Q_OBJECT

public:
    explicit TestWindowFirstRequest(HttpServer &) { }

private Q_SLOTS:
    void theEventsAreAskedForBeforeThePaintingOfTheWindowTakesItsTurn();
};

void TestWindowFirstRequest::theEventsAreAskedForBeforeThePaintingOfTheWindowTakesItsTurn()
{
    constexpr int patience = 10'000;
    QTcpServer service;
    QVERIFY(service.listen(QHostAddress::LocalHost));
    qputenv("SUPABASE_URL", "http://127.0.0.1:" + QByteArray::number(service.serverPort()));
    ContentView window;
    window.show();

    // The event loop does not turn here.
    QVERIFY(service.waitForNewConnection(patience));
    QTcpSocket *request = service.nextPendingConnection();
    QVERIFY(request->waitForReadyRead(patience));
    QVERIFY(request->readAll().startsWith("GET /rest/v1/events?"));
}

int main(int argc, char *argv[])
{
    return runWithService<TestWindowFirstRequest>(argc, argv);
}

#include "test_window_first_request.moc"
