// Replies that a service, a proxy or somebody in between might send, and what comes of each. What a
// person reads of a failure is its text; the service must have seen one request.

#include "backend/SupabaseError.h"
#include "backend/TransportError.h"
#include "support/Await.h"
#include "support/HttpServer.h"
#include "support/LocalBackend.h"

#include <QLibraryInfo>
#include <QNetworkProxy>
#include <QTest>
#include <QVersionNumber>

#include <array>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

const QString lost = u"The connection was lost before the reply was complete."_s;
const QString failed = u"The connection failed before there was a reply."_s;
const QString barred = u"The network's proxy did not let the request through."_s;

QByteArray rowWith(const QByteArray &members)
{
    return "[{\"id\":\"1\",\"titre\":\"Bal\"" + members + "}]";
}

QByteArray rowNamed(const QByteArray &title)
{
    return "[{\"id\":\"1\",\"titre\":\"" + title + "\"}]";
}

/// A port of the loopback interface that answers no one who knocks: as behind a firewall.
class FullPort {
public:
    FullPort()
    {
        m_address.sin_family = AF_INET;
        m_address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof m_address;
        m_sockets.front() = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        if (bind(m_sockets.front(), address(), size) != 0 || listen(m_sockets.front(), 0) != 0
            || getsockname(m_sockets.front(), address(), &size) != 0)
            qFatal("no free port on the loopback interface");
        for (size_t i = 1; i < m_sockets.size(); ++i) {
            m_sockets[i] = socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
            ::connect(m_sockets[i], address(), size);
        }
    }
    ~FullPort()
    {
        for (const int socket : m_sockets)
            ::close(socket);
    }
    Q_DISABLE_COPY_MOVE(FullPort)

    quint16 number() const { return ntohs(m_address.sin_port); }

private:
    sockaddr *address() { return reinterpret_cast<sockaddr *>(&m_address); }

    sockaddr_in m_address{};
    std::array<int, 5> m_sockets{};
};

} // namespace

class TestBackendFaults : public QObject {
    Q_OBJECT

    /// One fetch; the service must have been asked once.
    Outcome<QList<Event>> fetchOnce(const HttpAnswer &answer)
    {
        HttpServer server;
        server.answer(answer);
        LocalBackend backend({server.base(), u"k"_s});
        auto outcome = outcomeOf(backend.fetchEvents());
        if (server.requests().size() != 1)
            qFatal("asked %lld times", static_cast<long long>(server.requests().size()));
        return outcome;
    }

    /// One fetch, where all goes through the proxy at `port` of this machine.
    static Outcome<QList<Event>> fetchThrough(quint16 port, const QString &base,
                                              const Limits &limits = {})
    {
        QNetworkProxy::setApplicationProxy({QNetworkProxy::HttpProxy, u"127.0.0.1"_s, port});
        auto outcome = fetch(base, limits);
        QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
        return outcome;
    }

private Q_SLOTS:
    void aReplyCutAtAnyTenthIsLost_data()
    {
        QTest::addColumn<QByteArray>("reply");
        const QByteArray body = rowWith(",\"lieu\":\"Salle\"");
        QTest::newRow("with its length") << "HTTP/1.1 200 OK\r\nContent-Length: "
                + QByteArray::number(body.size()) + "\r\n\r\n" + body;
        QTest::newRow("in chunks") << "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5\r\n"
                + body.first(5) + "\r\n" + QByteArray::number(body.size() - 5, 16) + "\r\n"
                + body.sliced(5) + "\r\n0\r\n\r\n";
    }

    void aReplyCutAtAnyTenthIsLost()
    {
        QFETCH(QByteArray, reply);
        for (int tenth = 0; tenth < 10; ++tenth) {
            const auto cut = HttpAnswer::raw(reply.first(reply.size() * tenth / 10));
            for (const HttpAnswer &answer : {cut.thenFin(), cut.thenRst()}) {
                const auto outcome = fetchOnce(answer);
                QVERIFY2(!outcome.value, qPrintable(QString::number(tenth)));
                QCOMPARE(outcome.failure(), lost);
            }
        }
        QVERIFY(fetchOnce(HttpAnswer::raw(reply)).value);
    }

    void aLengthThatIsWrong_data()
    {
        QTest::addColumn<QByteArray>("length");
        QTest::addColumn<QString>("failure"); // how it begins; null: none
        QTest::newRow("too long") << "Content-Length: 9\r\n"_ba << lost;
        QTest::newRow("too short") << "Content-Length: 1\r\n"_ba << u"Decode error: "_s;
        QTest::newRow("zero") << "Content-Length: 0\r\n"_ba << u"Decode error: "_s;
        QTest::newRow("twice the same")
            << "Content-Length: 2\r\nContent-Length: 2\r\n"_ba << QString();
        QTest::newRow("none") << QByteArray() << QString();
        QTest::newRow("negative") << "Content-Length: -1\r\n"_ba << QString();
        QTest::newRow("a word") << "Content-Length: two\r\n"_ba << QString();
        QTest::newRow("beyond all numbers")
            << "Content-Length: 99999999999999999999\r\n"_ba << QString();
    }

    void aLengthThatIsWrong()
    {
        QFETCH(QByteArray, length);
        QFETCH(QString, failure);
        const auto outcome =
            fetchOnce(HttpAnswer::raw("HTTP/1.1 200 OK\r\n" + length + "\r\n[]").thenFin());
        if (failure.isNull())
            QCOMPARE(outcome.failure(), QString());
        else
            QVERIFY2(outcome.failure().startsWith(failure), qPrintable(outcome.failure()));
    }

    void aBodyThatIsNoListOfEventsIsTold_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("room") << " \n\t"_ba;
        QTest::newRow("a portal's page") << "<!DOCTYPE html><html><body>Wifi</body></html>"_ba;
        QTest::newRow("not UTF-8") << rowNamed("\xC3\x28");
        QTest::newRow("UTF-16") << "\xFF\xFE[\0]\0"_ba;
        QTest::newRow("two marks") << "\xEF\xBB\xBF\xEF\xBB\xBF[]"_ba;
        QTest::newRow("null") << "null"_ba;
        QTest::newRow("true") << "true"_ba;
        QTest::newRow("a number") << "1"_ba;
        QTest::newRow("a text") << "\"[]\""_ba;
        QTest::newRow("an object") << "{\"data\":[]}"_ba;
        QTest::newRow("a list of lists") << "[[]]"_ba;
        QTest::newRow("a list of null") << "[null]"_ba;
        QTest::newRow("an empty row") << "[{}]"_ba;
        QTest::newRow("a title that is a list") << "[{\"id\":\"1\",\"titre\":[]}]"_ba;
        QTest::newRow("two lists") << "[][]"_ba;
        QTest::newRow("a comma too many") << "[{\"id\":\"1\",\"titre\":\"Bal\"},]"_ba;
        QTest::newRow("single quotes") << "[{'id':'1'}]"_ba;
        QTest::newRow("cut") << "[{\"id\":\"1\",\"titre\":\"Bal\"}"_ba;
        QTest::newRow("a bare control sign") << rowNamed("a\nb");
        QTest::newRow("NUL behind it") << "[]\0"_ba.append('\0');
        QTest::newRow("10,000 levels") << QByteArray(10'000, '[') + QByteArray(10'000, ']');
        QTest::newRow("half a surrogate pair") << rowNamed("\\ud800");
        QTest::newRow("the second half") << rowNamed("\\udc00");
        QTest::newRow("a pair the wrong way round") << rowNamed("\\udc00\\ud800");
        QTest::newRow("a number of no grammar") << rowWith(",\"x\":01");
        QTest::newRow("year 10000") << rowWith(",\"starts_at\":\"10000-01-01\"");
    }

    void aBodyThatIsNoListOfEventsIsTold()
    {
        QFETCH(QByteArray, body);
        const auto outcome = fetchOnce(HttpAnswer::whole(200, body));
        QVERIFY(outcome.errorAs<SupabaseError>() != nullptr);
        QVERIFY2(outcome.failure().startsWith(u"Decode error: "_s), qPrintable(outcome.failure()));
        // Bounded, however long the body is.
        QVERIFY(outcome.failure().size() < 1000);
    }

    void aTitleComesAsItIsWritten_data()
    {
        QTest::addColumn<QByteArray>("written");
        QTest::addColumn<QString>("title");
        QTest::newRow("NUL") << "a\\u0000b"_ba << u"a\0b"_s;
        QTest::newRow("right to left") << QByteArray("\u202Eabc\u202C") << u"\u202Eabc\u202C"_s;
        QTest::newRow("no width") << QByteArray("a\u200B\u200D\uFEFFb")
                                  << u"a\u200B\u200D\uFEFFb"_s;
        QTest::newRow("a mark in front") << QByteArray("\uFEFFBal") << u"\uFEFFBal"_s;
        QTest::newRow("a pair") << "\\ud83d\\ude00"_ba << u"😀"_s;
        QTest::newRow("markup") << "<b>Bal</b>"_ba << u"<b>Bal</b>"_s;
        QTest::newRow("nothing") << QByteArray() << QString();
        QTest::newRow("a million signs") << QByteArray(1'000'000, 'x') << QString(1'000'000, u'x');
    }

    void aTitleComesAsItIsWritten()
    {
        QFETCH(QByteArray, written);
        QFETCH(QString, title);
        const auto outcome = fetchOnce(HttpAnswer::whole(200, rowNamed(written)));
        QCOMPARE(outcome.failure(), QString());
        QCOMPARE(outcome.value->constFirst().titre, title);
    }

    void whatIsOddButRightIsRead_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<qsizetype>("count");
        QTest::newRow("a mark in front") << "\xEF\xBB\xBF" + rowNamed("Bal") << qsizetype{1};
        QTest::newRow("room around it") << "\r\n\t " + rowNamed("Bal") + "\n" << qsizetype{1};
        QTest::newRow("numbers out of range")
            << rowWith(",\"x\":1e999,\"y\":-99999999999999999999999") << qsizetype{1};
        QTest::newRow("a doubled key")
            << "[{\"id\":\"1\",\"id\":\"2\",\"titre\":\"Bal\"}]"_ba << qsizetype{1};
        QTest::newRow("year 1") << rowWith(",\"starts_at\":\"0001-01-01\"") << qsizetype{1};
        QTest::newRow("year 9999")
            << rowWith(",\"starts_at\":\"9999-12-31T23:59:59Z\"") << qsizetype{1};
        QTest::newRow("10,000 tags")
            << rowWith(",\"tags\":[" + QByteArray("\"a\",").repeated(9999) + "\"a\"]")
            << qsizetype{1};
        QByteArray day = "[";
        for (int i = 0; i < 100'000; ++i)
            day += "{\"id\":\"" + QByteArray::number(i)
                + "\",\"titre\":\"Bal\",\"starts_at\":\"2026-06-14T18:30:00Z\"},";
        day.back() = ']';
        QTest::newRow("100,000 events on one day") << day << qsizetype{100'000};
    }

    void whatIsOddButRightIsRead()
    {
        QFETCH(QByteArray, body);
        QFETCH(qsizetype, count);
        const auto outcome = fetchOnce(HttpAnswer::whole(200, body));
        QCOMPARE(outcome.failure(), QString());
        QCOMPARE(outcome.value->size(), count);
        QCOMPARE(outcome.value->constFirst().id.size(), 1);
    }

    void everyStatusIsToldWithOrWithoutABody()
    {
        for (int status = 400; status <= 599; ++status) {
            const QString code = u"HTTP %1"_s.arg(status);
            QCOMPARE(fetchOnce(HttpAnswer::whole(status, {})).failure(), code);
            const HttpAnswer ended =
                HttpAnswer::raw("HTTP/1.1 " + QByteArray::number(status) + " Told\r\n\r\nnon")
                    .thenFin();
            QCOMPARE(fetchOnce(ended).failure(), code + u": non"_s);
        }
    }

    void anAddressThatCannotBeReachedIsTold()
    {
        // The address that no network routes.
        LocalBackend backend({u"http://255.255.255.255:9"_s, u"k"_s});
        const auto outcome = outcomeOf(backend.fetchEvents());
        QVERIFY(outcome.errorAs<TransportError>() != nullptr);
        QCOMPARE(outcome.failure(), failed);
    }

    void aServerThatLetsNobodyInIsSilent()
    {
        // Nobody takes what waits, and no more may wait.
        FullPort port;
        const auto outcome = fetch(u"http://127.0.0.1:%1"_s.arg(port.number()), impatient());
        QVERIFY(outcome.errorAs<TransportError>() != nullptr);
        QCOMPARE(outcome.failure(), u"The server did not answer for 1 seconds."_s);
    }

    // The last that can be told from a whole list: the toolkit takes it for the end of the reply.
    void aListCutByAChunkOfNoSizeIsNoList()
    {
        const QByteArray row = rowNamed("Bal");
        const QByteArray first = QByteArray::number(row.size() - 1, 16) + "\r\n" + row.chopped(1);
        const auto outcome =
            fetchOnce(HttpAnswer::raw("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"
                                      + first + "\r\nzz\r\n]\r\n0\r\n\r\n"));
        QVERIFY(!outcome.value);
        QVERIFY(!outcome.failure().isEmpty());
    }

    void whatAProxyAnswersIsTold_data()
    {
        QTest::addColumn<HttpAnswer>("answer");
        QTest::addColumn<QString>("failure");
        QTest::newRow("it passes on") << HttpAnswer::whole(200, "[]") << QString();
        QTest::newRow("it cannot reach the service")
            << HttpAnswer::whole(502, "no way") << u"HTTP 502: no way"_s;
        QTest::newRow("it wants a password")
            << HttpAnswer::whole(407, "qui ?", {{"Proxy-Authenticate", "Basic realm=\"x\""}})
            << u"HTTP 407: qui ?"_s;
        QTest::newRow("it hangs up") << HttpAnswer::fin() << lost;
    }

    void whatAProxyAnswersIsTold()
    {
        QFETCH(HttpAnswer, answer);
        QFETCH(QString, failure);
        HttpServer proxy;
        proxy.answer(answer);
        const auto outcome = fetchThrough(proxy.port(), u"http://nowhere.invalid"_s);
        QCOMPARE(outcome.failure(), failure);
        QCOMPARE(proxy.requests().size(), 1);
    }

    // Of a service that speaks TLS the proxy is asked for a way there, and is told no more.
    void whatAProxyAnswersOfATunnelIsTold_data()
    {
        QTest::addColumn<HttpAnswer>("answer");
        QTest::addColumn<QString>("failure");
        const QString silent = u"The server did not answer for 1 seconds."_s;
        QTest::newRow("it cannot reach the service") << HttpAnswer::whole(502, "no way") << failed;
        QTest::newRow("it will not") << HttpAnswer::whole(403, "non") << failed;
        QTest::newRow("it wants a password")
            << HttpAnswer::whole(407, "qui ?", {{"Proxy-Authenticate", "Basic realm=\"x\""}})
            << barred;
        QTest::newRow("it opens a way that ends")
            << HttpAnswer::raw("HTTP/1.1 200 OK\r\n\r\n").thenFin() << lost;
        // The toolkit does not tell either from a proxy that takes its time.
        QTest::newRow("it hangs up") << HttpAnswer::fin() << silent;
        QTest::newRow("it says nothing") << HttpAnswer::silence() << silent;
    }

    void whatAProxyAnswersOfATunnelIsTold()
    {
        QFETCH(HttpAnswer, answer);
        QFETCH(QString, failure);
        HttpServer proxy;
        proxy.answer(answer);
        const auto outcome = fetchThrough(proxy.port(), u"https://nowhere.invalid"_s, impatient());
        QVERIFY(outcome.errorAs<TransportError>() != nullptr);
        QCOMPARE(outcome.failure(), failure);
        QCOMPARE(proxy.requests().size(), 1);
        QCOMPARE(proxy.connections(), 1);
        QCOMPARE(proxy.requests().constFirst().method, "CONNECT");
        QCOMPARE(proxy.requests().constFirst().target, "nowhere.invalid:443");
        QVERIFY(!proxy.requests().constFirst().raw.contains("jeton-secret"));
    }

    // The end of the connection may come at any moment: with the last byte, or after it.
    void aBodyThatEndsWithItsConnectionIsWhole()
    {
        for (int i = 0; i < 50; ++i) {
            const auto outcome = fetchOnce(HttpAnswer::raw("HTTP/1.1 200 OK\r\n\r\n[]").thenFin());
            QCOMPARE(outcome.failure(), QString());
        }
    }

    void aProxyThatIsNotThereIsTold()
    {
        HttpServer gone;
        gone.close();
        const auto outcome = fetchThrough(gone.port(), u"http://nowhere.invalid"_s);
        const auto tunnelled = fetchThrough(gone.port(), u"https://nowhere.invalid"_s);
        QVERIFY(tunnelled.errorAs<TransportError>() != nullptr);
        // Older toolkits do not tell the proxy's refusal from the server's.
        const bool tellsApart = QLibraryInfo::version() >= QVersionNumber(6, 8);
        QCOMPARE(outcome.failure(),
                 tellsApart ? barred : u"The server \"nowhere.invalid\" refused the connection."_s);
        QCOMPARE(tunnelled.failure(), tellsApart ? barred : failed);
    }
};

QTEST_GUILESS_MAIN(TestBackendFaults)
#include "test_backend_faults.moc"
