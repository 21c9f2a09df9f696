#include "support/LocalService.h"
#include "support/ServiceClient.h"

#include <QDateTime>
#include <QLocale>
#include <QTcpSocket>
#include <QTest>
#include <QTimeZone>
#include <QUrl>

#include <memory>
#include <vector>
#include <zlib.h>

using namespace Qt::StringLiterals;

namespace {

QByteArray gzipped(const QByteArray &bytes)
{
    z_stream stream{};
    deflateInit2(&stream, Z_BEST_SPEED, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY);
    QByteArray packed(
        static_cast<qsizetype>(deflateBound(&stream, static_cast<uLong>(bytes.size()))), '\0');
    QByteArray source = bytes;
    stream.next_in = reinterpret_cast<Bytef *>(source.data());
    stream.avail_in = static_cast<uInt>(source.size());
    stream.next_out = reinterpret_cast<Bytef *>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    deflate(&stream, Z_FINISH);
    packed.resize(static_cast<qsizetype>(stream.total_out));
    deflateEnd(&stream);
    return packed;
}

} // namespace

/// Clients that send oddly, slowly, or too much.
class TestServiceClients : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<QTcpSocket> connected()
    {
        const QUrl url(m_service.url());
        auto socket = std::make_unique<QTcpSocket>();
        socket->connectToHost(url.host(), static_cast<quint16>(url.port()));
        socket->waitForConnected();
        return socket;
    }
    /// What comes back for these bytes until the service hangs up, or said "Bal folk" so often.
    QByteArray answerTo(const QByteArray &bytes, int count = 1)
    {
        const auto socket = connected();
        socket->write(bytes);
        QByteArray answer;
        while (answer.count("Bal folk") < count && socket->waitForReadyRead(20'000))
            answer += socket->readAll();
        return answer;
    }
    QByteArray head(const QByteArray &firstLine) const
    {
        return firstLine + " HTTP/1.1\r\nHost: x\r\napikey: " + m_service.key().toLatin1() + "\r\n";
    }
    QByteArray oneEvent() const
    {
        return head("GET /rest/v1/events?select=titre&titre=eq.Bal%20folk") + "\r\n";
    }
    ServiceReply post(const QByteArray &target, const QByteArray &body, const Headers &more = {})
    {
        return exchange(
            m_service.url(), "POST", target,
            Headers{{"apikey", m_service.key().toLatin1()}, {"Content-Type", "application/json"}}
                + more,
            body);
    }
    bool stillAnswers()
    {
        return exchange(m_service.url(), "GET", "/rest/v1/events?limit=1",
                        {{"apikey", m_service.key().toLatin1()}})
                   .status
            == 200;
    }

    LocalService m_service;

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_service.isRunning()); }
    void cleanup() { QVERIFY2(stillAnswers(), qPrintable(m_service.output())); }
    void cleanupTestCase() { QVERIFY2(m_service.stop(), qPrintable(m_service.output())); }

    void everyAnswerSaysWhenItWasGiven_data()
    {
        QTest::addColumn<QByteArray>("request");
        QTest::addColumn<QByteArray>("status");
        const QByteArray last = "Connection: close\r\n\r\n";
        const auto row = [](const char *name, const QByteArray &request, const char *status) {
            QTest::newRow(name) << request << QByteArray(status);
        };
        row("events", head("GET /rest/v1/events?limit=1") + last, "200");
        row("no key", "GET /rest/v1/events HTTP/1.1\r\nHost: x\r\n" + last, "401");
        row("an unknown verb", head("BREW /rest/v1/events") + last, "400");
        row("a length that is none", head("POST /rest/v1/events") + "Content-Length: x\r\n" + last,
            "400");
    }
    void everyAnswerSaysWhenItWasGiven()
    {
        QFETCH(QByteArray, request);
        QFETCH(QByteArray, status);
        const QDateTime before = QDateTime::currentDateTimeUtc().addSecs(-1);
        const QByteArray answer = answerTo(request);
        QVERIFY2(answer.startsWith("HTTP/1.1 " + status + ' '), answer.constData());
        const auto start = answer.indexOf("\r\nDate: ") + 8;
        QVERIFY2(start > 8, answer.constData());
        const QString text =
            QString::fromLatin1(answer.mid(start, answer.indexOf("\r\n", start) - start));
        QDateTime date = QLocale::c().toDateTime(text, u"ddd, dd MMM yyyy HH:mm:ss 'GMT'"_s);
        date.setTimeZone(QTimeZone::utc());
        QVERIFY2(before <= date && date <= QDateTime::currentDateTimeUtc(), qPrintable(text));
    }

    void deeplyNestedJsonIsRefusedAndEndsNothing_data()
    {
        QTest::addColumn<QByteArray>("target");
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QByteArray>("code");
        const QByteArray open(150'000, '[');
        const QByteArray lists = open + QByteArray(150'000, ']');
        QByteArray objects;
        for (int level = 0; level < 150'000; ++level)
            objects += "{\"a\":";
        objects += '1' + QByteArray(150'000, '}');
        const auto row = [](const char *name, const char *target, const QByteArray &body,
                            const char *code) {
            QTest::newRow(name) << QByteArray(target) << body << QByteArray(code);
        };
        row("rows, lists", "/rest/v1/events", lists, "PGRST102");
        row("rows, objects", "/rest/v1/events", objects, "PGRST102");
        row("rows, never closed", "/rest/v1/events", open, "PGRST102");
        row("a column", "/rest/v1/events", "{\"titre\":" + lists + '}', "PGRST102");
        row("an account", "/auth/v1/signup", objects, "bad_json");
        row("what is known of an account", "/auth/v1/signup",
            R"({"email":"a@test.example","password":"motdepasse","data":{"x":)" + lists + "}}",
            "bad_json");
        row("a sign-in", "/auth/v1/token?grant_type=password", lists, "bad_json");
    }
    void deeplyNestedJsonIsRefusedAndEndsNothing()
    {
        QFETCH(QByteArray, target);
        QFETCH(QByteArray, body);
        QFETCH(QByteArray, code);
        const ServiceReply reply = post(target, body);
        QCOMPARE(reply.status, 400);
        QVERIFY2(reply.body.contains('"' + code + '"'), reply.body);
    }

    void aDeepTreeOfConditionsIsRefused()
    {
        QByteArray tree = "titre.eq.X";
        for (int level = 0; level < 1000; ++level)
            tree = "and(" + tree + ')';
        const ServiceReply reply =
            exchange(m_service.url(), "GET", "/rest/v1/events?or=(" + tree + ')',
                     {{"apikey", m_service.key().toLatin1()}});
        QCOMPARE(reply.status, 400);
        QVERIFY2(reply.body.contains("PGRST100"), reply.body);
    }

    void aBodyThatIsPackedIsNotUnpacked()
    {
        // 200 MB of spaces in 200 kB, after which a row follows.
        const QByteArray bomb = gzipped(QByteArray(200 << 20, ' ') + R"({"titre":"X"})");
        QVERIFY(bomb.size() < 1 << 20);
        const Headers packed{{"Content-Encoding", "gzip"}};
        const ServiceReply row = post("/rest/v1/events", bomb, packed);
        QCOMPARE(row.status, 400);
        QVERIFY2(row.body.contains("PGRST102"), row.body);
        const ServiceReply account = post("/auth/v1/signup", gzipped("{}"), packed);
        QCOMPARE(account.status, 400);
        QVERIFY2(account.body.contains("bad_json"), account.body);
    }

    void drippingClientsKeepNobodyElseWaiting()
    {
        // More than there are threads, in the head as well as in the body.
        std::vector<std::unique_ptr<QTcpSocket>> drippers;
        for (int count = 0; count < 120; ++count) {
            drippers.push_back(connected());
            QCOMPARE(drippers.back()->state(), QAbstractSocket::ConnectedState);
            const QByteArray beginning = count % 2 == 0
                ? head("GET /rest/v1/events")
                : head("POST /auth/v1/signup") + "Content-Length: 1000\r\n\r\n{";
            drippers.back()->write(beginning);
            drippers.back()->waitForBytesWritten();
        }
        const auto drip = [&] {
            for (const auto &socket : drippers) {
                socket->write(" ");
                socket->flush();
            }
        };
        // Each of them sends another byte before each request of somebody else.
        for (int request = 0; request < 10; ++request) {
            drip();
            QVERIFY(stillAnswers());
        }
        // None of them was answered, or ended, to make way.
        for (const auto &socket : drippers) {
            QCOMPARE(socket->bytesAvailable(), 0);
            QCOMPARE(socket->state(), QAbstractSocket::ConnectedState);
        }
    }

    void aClientThatNeverReadsKeepsNobodyElseWaiting()
    {
        std::vector<std::unique_ptr<QTcpSocket>> deaf;
        for (int count = 0; count < 40; ++count) {
            deaf.push_back(connected());
            deaf.back()->setReadBufferSize(1);
            QByteArray questions;
            for (int question = 0; question < 50; ++question)
                questions += head("GET /rest/v1/events") + "\r\n";
            deaf.back()->write(questions);
            deaf.back()->waitForBytesWritten();
        }
        for (int request = 0; request < 10; ++request)
            QVERIFY(stillAnswers());
    }

    void aRequestThatComesInPiecesIsWhole()
    {
        const auto socket = connected();
        for (const char byte : oneEvent()) {
            socket->write(&byte, 1);
            socket->waitForBytesWritten();
        }
        QByteArray answer;
        while (!answer.contains("Bal folk") && socket->waitForReadyRead(20'000))
            answer += socket->readAll();
        QVERIFY2(answer.endsWith(R"([{"titre":"Bal folk"}])"), answer);
    }

    void requestsThatComeTogetherAreAnsweredInTheirOrder()
    {
        const QByteArray answer = answerTo(head("GET /rest/v1/events?select=nichts") + "\r\n"
                                               + oneEvent() + "\r\n" + oneEvent(),
                                           2);
        QVERIFY2(answer.startsWith("HTTP/1.1 400 "), answer);
        QCOMPARE(answer.count("HTTP/1.1 200 "), 2);
    }

    void aBodyInChunksIsRead()
    {
        const QByteArray start = head("POST /auth/v1/signup")
            + "Connection: close\r\nTransfer-Encoding: chunked\r\n\r\n";
        const QByteArray answer =
            answerTo(start
                     + "1a\r\n{\"email\":\"c@test.example\",\r\n6;x=y\r\n\"passw\r\n"
                       "15\r\nord\":\"motdepasse\"}   \r\n0\r\nTrailer: x\r\n\r\n");
        QVERIFY2(answer.startsWith("HTTP/1.1 200 "), answer);
        QVERIFY2(answer.contains("\"c@test.example\""), answer);
    }

    void whoWaitsForLeaveToSendGetsIt()
    {
        const auto socket = connected();
        const QByteArray body = R"({"email":"d@test.example","password":"motdepasse"})";
        socket->write(head("POST /auth/v1/signup") + "Connection: close\r\nExpect: 100-continue\r\n"
                      + "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n");
        QVERIFY(socket->waitForReadyRead(20'000));
        QCOMPARE(socket->readAll(), "HTTP/1.1 100 Continue\r\n\r\n");
        socket->write(body);
        QByteArray answer;
        while (socket->waitForReadyRead(20'000))
            answer += socket->readAll();
        QVERIFY2(answer.startsWith("HTTP/1.1 200 "), answer);
    }

    void everyRefusalSaysWhy_data()
    {
        QTest::addColumn<QByteArray>("request");
        QTest::addColumn<int>("status");
        const auto row = [](const char *name, const QByteArray &request, int status) {
            QTest::newRow(name) << request << status;
        };
        const QByteArray post = head("POST /auth/v1/signup");
        row("no HTTP", "GET\r\n\r\n", 400);
        row("an unknown verb", "FETCH / HTTP/1.1\r\n\r\n", 400);
        row("a header without a name", "GET / HTTP/1.1\r\n: x\r\n\r\n", 400);
        row("a long address", "GET /" + QByteArray(9000, 'x') + " HTTP/1.1\r\n\r\n", 414);
        row("long headers", "GET / HTTP/1.1\r\nX: " + QByteArray(70'000, 'x'), 431);
        row("a large body", post + "Content-Length: 99999999\r\n\r\n", 413);
        row("a body without an end", post + "Content-Length: 99999999999999999999999\r\n\r\n", 413);
        row("a large chunk", post + "Transfer-Encoding: chunked\r\n\r\nfffffff\r\n", 413);
        row("no chunk", post + "Transfer-Encoding: chunked\r\n\r\nzz\r\n", 400);
        row("a length that is none", post + "Content-Length: 2\r\nContent-Length: 3\r\n\r\n{}",
            400);
        row("a length and chunks", post + "Content-Length: 2\r\nTransfer-Encoding: chunked\r\n\r\n",
            400);
        row("a coding that is not known", post + "Transfer-Encoding: gzip\r\n\r\n", 501);
        row("an expectation that is not known", post + "Expect: money\r\n\r\n", 417);
    }
    void everyRefusalSaysWhy()
    {
        QFETCH(QByteArray, request);
        QFETCH(int, status);
        const auto socket = connected();
        socket->write(request);
        QByteArray answer;
        while (!answer.endsWith('}') && socket->waitForReadyRead(20'000))
            answer += socket->readAll();
        QVERIFY2(answer.startsWith("HTTP/1.1 " + QByteArray::number(status) + ' '), answer);
        QVERIFY2(answer.contains("{\"message\":\""), answer);
    }

    void aRangeOfBytesCutsNothing()
    {
        const ServiceReply reply =
            exchange(m_service.url(), "GET", "/rest/v1/events?select=titre&titre=eq.Bal%20folk",
                     {{"apikey", m_service.key().toLatin1()}, {"Range", "bytes=0-4"}});
        QCOMPARE(reply.status, 200);
        QCOMPARE(reply.body, R"([{"titre":"Bal folk"}])");
    }

    void aRequestHiddenInAnotherIsNotAnswered()
    {
        // The inner one is the body of the outer, whatever the headers say of ranges and packing.
        const QByteArray inner = "GET /health HTTP/1.1\r\n\r\n";
        const QByteArray answer = answerTo(
            head("POST /auth/v1/signup") + "Connection: close\r\nContent-Encoding: gzip\r\n"
            + "Content-Length: " + QByteArray::number(inner.size()) + "\r\n\r\n" + inner);
        QCOMPARE(answer.count("HTTP/1.1 "), 1);
    }
};

QTEST_GUILESS_MAIN(TestServiceClients)
#include "test_service_clients.moc"
