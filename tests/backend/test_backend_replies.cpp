// What is made of the service's whole replies.

#include "backend/SupabaseError.h"
#include "support/Await.h"
#include "support/HttpServer.h"
#include "support/LocalBackend.h"

#include <QTest>

#include <chrono>

using namespace Qt::StringLiterals;

namespace {

constexpr auto rows = R"([{"id": "1", "titre": "Fête"}, {"id": "2", "titre": "Bal"}])";

} // namespace

class TestBackendReplies : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aListIsReadInWhateverShapeItComes_data()
    {
        QTest::addColumn<HttpAnswer>("answer");
        const HttpAnswer whole = HttpAnswer::whole(200, rows);
        QTest::newRow("at once") << whole;
        QTest::newRow("late") << whole.late(150);
        QTest::newRow("in pieces") << whole.inPieces(7, 1);
        QTest::newRow("chunked") << HttpAnswer::chunked(
            200, {QByteArray(rows).first(9), QByteArray(rows).sliced(9)});
        QTest::newRow("chunked, in pieces") << HttpAnswer::chunked(200, {rows}).inPieces(5, 1);
        for (const char *const length : {"2", "9", "5000", "999999999999", "-1", "x"})
            QTest::addRow("chunked, with a length of %s", length)
                << HttpAnswer::chunked(200, {rows}, {{"Content-Length", length}});
        QTest::newRow("until the connection ends")
            << HttpAnswer::raw(QByteArray("HTTP/1.1 200 OK\r\n\r\n") + rows).thenFin();
        QTest::newRow("as HTTP/1.0")
            << HttpAnswer::raw(QByteArray("HTTP/1.0 200 OK\r\n\r\n") + rows).thenFin();
        QTest::newRow("206") << HttpAnswer::whole(206, rows);
        QTest::newRow("as plain text")
            << HttpAnswer::whole(200, rows, {{"Content-Type", "text/plain; charset=latin1"}});
        QTest::newRow("named identity")
            << HttpAnswer::whole(200, rows, {{"Content-Encoding", "identity"}});
    }

    void aListIsReadInWhateverShapeItComes()
    {
        QFETCH(HttpAnswer, answer);
        const auto outcome = fetchAnswered(answer);
        QCOMPARE(outcome.failure(), QString());
        QCOMPARE(outcome.value->size(), 2);
        QCOMPARE(outcome.value->at(0).titre, u"Fête"_s);
        QCOMPARE(outcome.value->at(1).id, u"2"_s);
    }

    void anEmptyListIsNoError()
    {
        const auto outcome = fetchAnswered(HttpAnswer::whole(200, "[]"));
        QCOMPARE(outcome.failure(), QString());
        QVERIFY(outcome.value->isEmpty());
    }

    void slowIsNotSilent()
    {
        // Longer in all than the limit, but never silent for so long.
        Limits limits;
        limits.silence = std::chrono::seconds(2);
        const QByteArray body = QByteArray(rows).leftJustified(150);
        const QByteArray head = "HTTP/1.1 200 OK\r\nContent-Length: 150\r\n\r\n";
        const HttpAnswer answer =
            HttpAnswer::raw(head).then(HttpAnswer::raw(body).inPieces(5, 100));
        QCOMPARE(fetchAnswered(answer, limits).failure(), QString());
    }

    void everyOtherStatusIsShownWithItsBody()
    {
        HttpServer server;
        int status = 0;
        server.answerWith([&status](const HttpRequest &) {
            return HttpAnswer::whole(status, "{\"message\":\"non\"}");
        });
        LocalBackend backend({server.base(), u"k"_s});
        for (status = 300; status <= 599; ++status) {
            const auto outcome = outcomeOf(backend.fetchEvents());
            const bool hasBody = status != 304;
            const auto wanted = SupabaseError::httpError(
                status, hasBody ? QByteArray("{\"message\":\"non\"}") : QByteArray());
            const auto *const error = outcome.errorAs<SupabaseError>();
            QVERIFY2(error != nullptr && *error == wanted,
                     qPrintable(QString::number(status) + u' ' + outcome.failure()));
        }
        QCOMPARE(server.requests().size(), 300);
    }

    void aChallengeIsAStatusLikeAnyOther_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("header");
        QTest::newRow("basic") << 401 << QByteArray("WWW-Authenticate");
        QTest::newRow("proxy") << 407 << QByteArray("Proxy-Authenticate");
    }

    void aChallengeIsAStatusLikeAnyOther()
    {
        QFETCH(int, status);
        QFETCH(QByteArray, header);
        HttpServer server;
        server.answer(HttpAnswer::whole(status, "{\"m\":1}", {{header, "Basic realm=\"x\""}}));
        const auto outcome = fetch(server.base());
        QCOMPARE(outcome.failure(), u"HTTP %1: {\"m\":1}"_s.arg(status));
        QCOMPARE(server.requests().size(), 1);
    }

    void anErrorIsReadInWhateverShapeItComes_data()
    {
        QTest::addColumn<HttpAnswer>("answer");
        QTest::addColumn<QString>("text");
        QTest::newRow("404, no body") << HttpAnswer::whole(404, {}) << u"HTTP 404"_s;
        QTest::newRow("500, not UTF-8") << HttpAnswer::whole(500, "\xE9\xE8") << u"HTTP 500"_s;
        QTest::newRow("502, a page") << HttpAnswer::whole(502, "<html><b>Bad</b></html>")
                                     << u"HTTP 502: <html><b>Bad</b></html>"_s;
        QTest::newRow("503, late and in pieces")
            << HttpAnswer::whole(503, "indisponible").late(50).inPieces(6, 2)
            << u"HTTP 503: indisponible"_s;
        QTest::newRow("429, chunked")
            << HttpAnswer::chunked(429, {"trop ", "souvent"}) << u"HTTP 429: trop souvent"_s;
    }

    void anErrorIsReadInWhateverShapeItComes()
    {
        QFETCH(HttpAnswer, answer);
        QFETCH(QString, text);
        QCOMPARE(fetchAnswered(answer).failure(), text);
    }

    void aSuccessWithoutAListCannotBeDecoded_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("body");
        QTest::newRow("nothing") << 200 << QByteArray();
        QTest::newRow("no content") << 204 << QByteArray();
        QTest::newRow("an object") << 200 << QByteArray("{\"message\": \"oui\"}");
        QTest::newRow("a page") << 200 << QByteArray("<!DOCTYPE html><html></html>");
        QTest::newRow("not UTF-8") << 200 << QByteArray("[{\"id\":\"\xE9\",\"titre\":\"x\"}]");
        QTest::newRow("a list cut short") << 200 << QByteArray(rows).chopped(1);
    }

    void aSuccessWithoutAListCannotBeDecoded()
    {
        QFETCH(int, status);
        QFETCH(QByteArray, body);
        const auto outcome = fetchAnswered(HttpAnswer::whole(status, body));
        const auto *const error = outcome.errorAs<SupabaseError>();
        QVERIFY2(error != nullptr, qPrintable(outcome.failure()));
        QCOMPARE(error->kind(), SupabaseError::Case::decodingFailed);
        QVERIFY(outcome.failure().startsWith(u"Decode error: "_s));
        const QString text = body.isValidUtf8() ? QString::fromUtf8(body) : u"<non-utf8 body>"_s;
        QVERIFY(outcome.failure().endsWith(u". Body preview: "_s + text
                                           + u". Saved response to /tmp/events-response.json"_s));
        QVERIFY(!outcome.failure().contains(u"jeton-secret"_s));
    }

    void callsMayOverlap()
    {
        HttpServer server;
        server.answerInTurn({HttpAnswer::whole(200, rows).late(120), HttpAnswer::whole(500, "x"),
                             HttpAnswer::whole(200, "[]").late(60)});
        LocalBackend backend({server.base(), u"k"_s});
        Outcome<QList<Event>> first;
        Outcome<QList<Event>> second;
        Outcome<QList<Event>> third;
        const auto one = note(backend.fetchEvents(), first);
        QTRY_COMPARE(server.requests().size(), 1);
        const auto two = note(backend.fetchEvents(), second);
        QTRY_COMPARE(server.requests().size(), 2);
        const auto three = note(backend.fetchEvents(), third);
        QTRY_VERIFY(first.isOver() && second.isOver() && third.isOver());
        QCOMPARE(first.value->size(), 2);
        QCOMPARE(second.failure(), u"HTTP 500: x"_s);
        QVERIFY(third.value->isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestBackendReplies)
#include "test_backend_replies.moc"
