// What is said when no whole reply comes.

#include "backend/Limits.h"
#include "backend/TransportError.h"
#include "backend/TransportFailure.h"
#include "support/Await.h"
#include "support/HttpServer.h"
#include "support/LocalBackend.h"

#include <QTest>

#include <chrono>

using namespace Qt::StringLiterals;

namespace {

constexpr auto rows = R"([{"id": "1", "titre": "Fête"}, {"id": "2", "titre": "Bal"}])";

} // namespace

class TestBackendFailures : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aBrokenReplyIsAFailureOfTheTransport_data()
    {
        QTest::addColumn<HttpAnswer>("answer");
        QTest::addColumn<QString>("text");

        const QString lost = u"The connection was lost before the reply was complete."_s;
        QTest::newRow("cut") << HttpAnswer::cut(200, rows, 5000) << lost;
        QTest::newRow("cut, though readable") << HttpAnswer::cut(200, "[]", 100) << lost;
        QTest::newRow("an error cut") << HttpAnswer::cut(404, "{}", 100) << lost;
        QTest::newRow("within the head")
            << HttpAnswer::raw("HTTP/1.1 200 OK\r\nContent-Le").thenFin() << lost;
        QTest::newRow("no HTTP") << HttpAnswer::raw("SSH-2.0-OpenSSH_9.2\r\n\r\n") << lost;
        QTest::newRow("a bare list") << HttpAnswer::raw("[]\r\n\r\n").thenFin() << lost;
        QTest::newRow("no status")
            << HttpAnswer::raw("HTTP/1.1 OK\r\nContent-Length: 2\r\n\r\n[]").thenFin() << lost;
        QTest::newRow("torn down in the body")
            << HttpAnswer::raw("HTTP/1.1 200 OK\r\nContent-Length: 99\r\n\r\n[").thenRst() << lost;
        QTest::newRow("ended at once") << HttpAnswer::fin() << lost;
        QTest::newRow("torn down at once") << HttpAnswer::rst() << lost;
        QTest::newRow("silent") << HttpAnswer::silence()
                                << u"The server did not answer for 1 seconds."_s;
        QTest::newRow("silent in the body")
            << HttpAnswer::raw("HTTP/1.1 200 OK\r\nContent-Length: 99\r\n\r\n[")
            << u"The server did not answer for 1 seconds."_s;
    }

    void aBrokenReplyIsAFailureOfTheTransport()
    {
        QFETCH(HttpAnswer, answer);
        QFETCH(QString, text);
        const auto outcome = fetchAnswered(answer, impatient());
        QCOMPARE(outcome.failure(), text);
        QVERIFY(outcome.errorAs<TransportError>() != nullptr);
    }

    // The manager calls every status from 400 up an error, and some below.
    void aStatusIsAnAnswerWhateverTheManagerMakesOfIt_data()
    {
        QTest::addColumn<QNetworkReply::NetworkError>("error");
        QTest::addColumn<int>("status");
        QTest::addColumn<bool>("isAnswer");
        const auto row = [](const char *name, QNetworkReply::NetworkError error, int status,
                            bool isAnswer) {
            QTest::addRow("%s, %d", name, status) << error << status << isAnswer;
        };
        row("nothing", QNetworkReply::NoError, 200, true);
        row("nothing", QNetworkReply::NoError, 101, false);
        row("nothing", QNetworkReply::NoError, 199, false);
        row("denied", QNetworkReply::ContentAccessDenied, 403, true);
        row("other content", QNetworkReply::UnknownContentError, 418, true);
        row("server", QNetworkReply::InternalServerError, 500, true);
        row("other server", QNetworkReply::UnknownServerError, 599, true);
        row("invalid", QNetworkReply::ProtocolInvalidOperationError, 400, true);
        row("invalid", QNetworkReply::ProtocolInvalidOperationError, 399, false);
        row("proxy", QNetworkReply::ProxyAuthenticationRequiredError, 407, true);
        row("proxy", QNetworkReply::ProxyAuthenticationRequiredError, 408, false);
        row("other proxy", QNetworkReply::UnknownProxyError, 502, false);
        row("again", QNetworkReply::ContentReSendError, 307, true);
        row("again", QNetworkReply::ContentReSendError, 308, true);
        row("again", QNetworkReply::ContentReSendError, 401, true);
        row("again", QNetworkReply::ContentReSendError, 309, false);
        row("protocol", QNetworkReply::ProtocolUnknownError, 302, false);
        row("protocol", QNetworkReply::ProtocolFailure, 200, false);
        row("network", QNetworkReply::UnknownNetworkError, 200, false);
    }

    void aStatusIsAnAnswerWhateverTheManagerMakesOfIt()
    {
        QFETCH(QNetworkReply::NetworkError, error);
        QFETCH(int, status);
        Received received;
        received.error = error;
        received.status = status;
        QTEST(!transportFailure(received, QUrl(u"https://x.fr"_s), Limits()), "isAnswer");
    }

    void aReplyThatSaysNotModifiedHasNoBodyToMiss()
    {
        const auto outcome = fetchAnswered(
            HttpAnswer::raw("HTTP/1.1 304 Not Modified\r\nContent-Length: 9\r\n\r\n"), impatient());
        QCOMPARE(outcome.failure(), u"HTTP 304"_s);
    }

    void aClosedPortRefuses()
    {
        HttpServer server;
        const QString base = server.base();
        server.close();
        const auto outcome = fetch(base);
        QCOMPARE(outcome.failure(), u"The server \"127.0.0.1\" refused the connection."_s);
        QVERIFY(outcome.errorAs<TransportError>() != nullptr);
    }

    void aHostThatDoesNotExistCannotBeFound()
    {
        const auto outcome = fetch(u"http://nowhere.invalid"_s);
        QCOMPARE(outcome.failure(), u"The server \"nowhere.invalid\" cannot be found."_s);
        QVERIFY(outcome.errorAs<TransportError>() != nullptr);
    }

    void aHostThatCannotBeIsToldInTheOperatorsWords_data()
    {
        QTest::addColumn<QString>("base");
        QTest::addColumn<QString>("host");
        QTest::newRow("a port too large") << u"https://x:99999"_s << u"x:99999"_s;
        QTest::newRow("an escape") << u"https://Vil%20lage.fr"_s << u"Vil%20lage.fr"_s;
        QTest::newRow("a secret before it") << u"https://nom:mot@x:70000/a"_s << u"x:70000"_s;
        QTest::newRow("none") << u"https://"_s << QString();
    }

    void aHostThatCannotBeIsToldInTheOperatorsWords()
    {
        QFETCH(QString, base);
        QFETCH(QString, host);
        LocalBackend backend({base, u"k"_s});
        const QString text = u"The server \"%1\" cannot be found."_s.arg(host);
        for (const QString &failure : {outcomeOf(backend.fetchEvents()).failure(),
                                       outcomeOf(backend.signIn(u"a"_s, u"b"_s)).failure(),
                                       outcomeOf(backend.signUp(u"a"_s, u"b"_s)).failure()})
            QCOMPARE(failure, text);
    }

    void aBackendThatGoesEndsWhatIsOnItsWay()
    {
        HttpServer server;
        server.answer(HttpAnswer::silence());
        Outcome<QList<Event>> outcome;
        QCoro::Task<void> noting;
        {
            LocalBackend backend({server.base(), u"k"_s});
            noting = note(backend.fetchEvents(), outcome);
            QTRY_COMPARE(server.requests().size(), 1);
            QVERIFY(!outcome.isOver());
        }
        QVERIFY(outcome.errorAs<TransportError>() != nullptr);
        QCOMPARE(outcome.failure(),
                 u"The request was given up because the application is closing."_s);
    }

    void aReplyOverTheLimitIsGivenUp_data()
    {
        QTest::addColumn<HttpAnswer>("answer");
        const QByteArray large(2 * 1024 * 1024 + 1, ' ');
        QTest::newRow("announced")
            << HttpAnswer::raw("HTTP/1.1 200 OK\r\nContent-Length: 999999999999\r\n\r\n[");
        QTest::newRow("sent") << HttpAnswer::whole(200, large);
        QTest::newRow("sent in chunks") << HttpAnswer::chunked(200, {large});
        QTest::newRow("an error") << HttpAnswer::whole(500, large);
    }

    void aReplyOverTheLimitIsGivenUp()
    {
        QFETCH(HttpAnswer, answer);
        Limits limits;
        limits.largestReply = 2 * 1024 * 1024;
        const auto outcome = fetchAnswered(answer, limits);
        QCOMPARE(outcome.failure(), u"The reply was given up: it is larger than 2 MiB."_s);
        QVERIFY(outcome.errorAs<TransportError>() != nullptr);
    }

    void whatShipsWaitsAMinuteAndTakesAQuarterOfAGigabyte()
    {
        QCOMPARE(Limits().silence, std::chrono::seconds(60));
        QCOMPARE(Limits().largestReply, 268'435'456);
    }

    void aReplyOfTheLimitIsTaken()
    {
        Limits limits;
        limits.largestReply = 1024;
        const auto outcome =
            fetchAnswered(HttpAnswer::whole(200, QByteArray("[]").leftJustified(1024)), limits);
        QCOMPARE(outcome.failure(), QString());
    }
};

QTEST_GUILESS_MAIN(TestBackendFailures)
#include "test_backend_failures.moc"
