// A large reply does not hold the window up.

#include "backend/Exchange.h"
#include "support/Await.h"
#include "support/EventLoopChecker.h"
#include "support/HttpServer.h"
#include "support/LocalBackend.h"

#include <QTest>
#include <QThread>

#include <atomic>
#include <future>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype hundredMegabytes = 100'000'000;

QByteArray largeList()
{
    QByteArray list;
    list.reserve(hundredMegabytes + 1000);
    const QByteArray padding(900, 'x');
    int count = 0;
    while (list.size() < hundredMegabytes) {
        list += list.isEmpty() ? '[' : ',';
        list += "{\"id\":\"" + QByteArray::number(count++)
            + "\",\"titre\":\"Bal\",\"starts_at\":\"2026-11-21T18:00:00+00:00\",\"more\":\""
            + padding + "\"}";
    }
    return list + ']';
}

} // namespace

class TestBackendLarge : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theEventLoopKeepsTurningWhileAHundredMegabytesAreDecoded()
    {
        HttpServer server;
        server.answer(HttpAnswer::whole(200, largeList()));
        LocalBackend backend({server.base(), u"k"_s});

        const EventLoopChecker checker;
        qint64 whenSent = 0;
        connect(&server, &HttpServer::answered, this, [&] { whenSent = checker.ticks(); });
        const auto outcome = outcomeOf(backend.fetchEvents());
        const qint64 whenOver = checker.ticks();

        QCOMPARE(outcome.failure(), QString());
        QVERIFY(outcome.value->size() > 90000);
        QVERIFY(whenSent > 0);
        qInfo("ticks: %lld while sending, %lld while receiving the rest and decoding",
              static_cast<long long>(whenSent), static_cast<long long>(whenOver - whenSent));
        QVERIFY(whenOver - whenSent > 2000);
    }

    void whatCameWhileTheWindowWasBusyIsTakenOverInManyTurns()
    {
        std::atomic<bool> isAsked = false;
        std::atomic<bool> isSent = false;
        std::promise<QString> base;
        const std::unique_ptr<QThread> elsewhere(QThread::create([&] {
            HttpServer server;
            server.answer(HttpAnswer::whole(200, QByteArray(hundredMegabytes, 'x')));
            connect(&server, &HttpServer::requested, &server, [&isAsked] { isAsked = true; });
            connect(&server, &HttpServer::answered, &server, [&isSent] { isSent = true; });
            base.set_value(server.base());
            QEventLoop().exec();
        }));
        elsewhere->start();

        Exchange exchange({});
        exchange.send({"GET", QUrl(base.get_future().get()), {}, {}});
        QTRY_VERIFY(isAsked);
        // The thread is busy with something else now; the manager's own goes on.
        while (!isSent)
            QThread::msleep(1);

        const EventLoopChecker checker;
        QEventLoop loop;
        connect(&exchange, &Exchange::ended, &loop, &QEventLoop::quit);
        loop.exec();
        QCOMPARE(exchange.take().body.size(), hundredMegabytes);
        // Taken over at one go, it would be a turn or two.
        QVERIFY2(checker.ticks() > 10, qPrintable(QString::number(checker.ticks())));
        elsewhere->quit();
        elsewhere->wait();
    }
};

QTEST_GUILESS_MAIN(TestBackendLarge)
#include "test_backend_large.moc"
