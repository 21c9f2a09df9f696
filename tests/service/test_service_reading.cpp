#include "support/LocalService.h"
#include "support/ServiceClient.h"

#include <QDateTime>
#include <QFile>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QTcpSocket>
#include <QTest>
#include <QUrl>

#include <cstddef>
#include <memory>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr char wholeList[] =
    "/rest/v1/events?select=id,titre,description,tags,lieu,link,organise_par,"
    "status,contact_email,user_id,ts,date_texte,heure_texte,starts_at"
    "&order=starts_at.asc.nullslast";

} // namespace

class TestServiceReading : public QObject {
    Q_OBJECT

private:
    ServiceReply get(const QByteArray &target, const Headers &more = {}, const char *verb = "GET")
    {
        return exchange(m_service.url(), verb, target,
                        Headers{{"apikey", m_service.key().toLatin1()}} + more);
    }
    QByteArray secret() const
    {
        QFile file(m_service.dataFolder() + u"/keys.json"_s);
        return file.open(QIODevice::ReadOnly)
            ? QJsonDocument::fromJson(file.readAll())[u"token_secret"_s].toString().toLatin1()
            : QByteArray();
    }
    void compareError(const ServiceReply &reply, int status, const QByteArray &body)
    {
        QCOMPARE(reply.status, status);
        QCOMPARE(reply.body, body);
        QCOMPARE(reply.header("Content-Type"), "application/json; charset=utf-8");
    }

    LocalService m_service{{u"--max-rows"_s, u"50"_s}};

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_service.isRunning()); }
    void cleanupTestCase() { QVERIFY2(m_service.stop(), qPrintable(m_service.output())); }

    void theListHasEveryColumnAndTheWantedOrder()
    {
        const ServiceReply reply = get(wholeList);
        QCOMPARE(reply.status, 200);
        QCOMPARE(reply.header("Content-Type"), "application/json; charset=utf-8");
        const QJsonArray rows = reply.array();
        QCOMPARE(rows.size(), 50);
        QString previous;
        bool hasEnded = false;
        for (const QJsonValue &row : rows) {
            QCOMPARE(row.toObject().size(), 14);
            QVERIFY(row[u"id"_s].isString());
            const QJsonValue start = row[u"starts_at"_s];
            QVERIFY(!hasEnded || start.isNull());
            hasEnded = start.isNull();
            if (!hasEnded) {
                QVERIFY(previous <= start.toString());
                previous = start.toString();
            }
        }
    }

    void everybodyReadsTheSame_data()
    {
        QTest::addColumn<QByteArray>("bearer");
        QTest::newRow("without a token") << QByteArray();
        QTest::newRow("with the public key") << "Bearer " + m_service.key().toLatin1();
        QTest::newRow("signed in") << "Bearer "
                + signedToken({{u"role"_s, u"authenticated"_s},
                               {u"sub"_s, u"a0000000-0000-4000-8000-000000000001"_s},
                               {u"exp"_s, QDateTime::currentSecsSinceEpoch() + 60}},
                              secret());
    }
    void everybodyReadsTheSame()
    {
        QFETCH(QByteArray, bearer);
        const Headers headers = bearer.isEmpty() ? Headers() : Headers{{"Authorization", bearer}};
        const ServiceReply reply = get(wholeList, headers);
        QCOMPARE(reply.status, 200);
        QCOMPARE(reply.body, get(wholeList).body);
    }

    void anInstantIsWrittenInGmtWithItsOffset()
    {
        const QJsonValue row =
            get("/rest/v1/events?select=ts,starts_at&order=starts_at&limit=1").array().first();
        const QRegularExpression instant(
            uR"(^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d(\.\d{1,6})?\+00:00$)"_s);
        QVERIFY(instant.match(row[u"ts"_s].toString()).hasMatch());
        QVERIFY(instant.match(row[u"starts_at"_s].toString()).hasMatch());
    }

    void filtersAndPagesChooseRows_data()
    {
        QTest::addColumn<QByteArray>("query");
        QTest::addColumn<int>("count");
        QTest::addColumn<QByteArray>("range");
        QTest::newRow("by key") << QByteArray("id=eq.5eed0000-0000-4000-8000-000000000003") << 1
                                << QByteArray("0-0/*");
        QTest::newRow("key in capitals")
            << QByteArray("id=eq.5EED0000-0000-4000-8000-000000000003") << 1 << QByteArray("0-0/*");
        QTest::newRow("no such key")
            << QByteArray("id=eq.00000000-0000-4000-8000-000000000000") << 0 << QByteArray("*/*");
        QTest::newRow("one of two") << QByteArray("id=in.(5eed0000-0000-4000-8000-000000000003,"
                                                  "%225eed0000-0000-4000-8000-000000000004%22)")
                                    << 2 << QByteArray("0-1/*");
        QTest::newRow("two filters")
            << QByteArray("lieu=eq.La%20Grange&titre=like.Bal*") << 1 << QByteArray("0-0/*");
        QTest::newRow("negated") << QByteArray("titre=not.neq.Bal%20folk") << 1
                                 << QByteArray("0-0/*");
        QTest::newRow("absent") << QByteArray("titre=is.null") << 0 << QByteArray("*/*");
        QTest::newRow("a quote is a letter")
            << QByteArray("titre=eq.'%20or%20true--") << 0 << QByteArray("*/*");
        QTest::newRow("a page") << QByteArray("limit=7&offset=10") << 7 << QByteArray("10-16/*");
        QTest::newRow("beyond the end") << QByteArray("offset=100") << 0 << QByteArray("*/*");
        QTest::newRow("more than allowed")
            << QByteArray("limit=1000") << 50 << QByteArray("0-49/*");
    }
    void filtersAndPagesChooseRows()
    {
        QFETCH(QByteArray, query);
        QFETCH(int, count);
        QFETCH(QByteArray, range);
        const ServiceReply reply = get("/rest/v1/events?" + query);
        QVERIFY2(reply.status == 200, reply.body);
        QCOMPARE(reply.array().size(), count);
        QCOMPARE(reply.header("Content-Range"), range);
        QVERIFY(count > 0 || reply.body == "[]");
    }

    void rowsComeInTheOrderAskedFor()
    {
        const QJsonArray rows =
            get("/rest/v1/events?select=date_texte,titre&order=date_texte.desc.nullsfirst,"
                "titre.asc")
                .array();
        QVERIFY(rows.first()[u"date_texte"_s].isNull());
        QCOMPARE(rows.first()[u"titre"_s].toString(), u"Café des parents");
    }

    void headTellsTheSameWithoutABody()
    {
        const ServiceReply reply = get("/rest/v1/events?limit=3", {}, "HEAD");
        QCOMPARE(reply.status, 200);
        QCOMPARE(reply.header("Content-Range"), "0-2/*");
        QVERIFY(reply.body.isEmpty());
    }

    void aListIsPackedForThoseWhoAskForIt()
    {
        const ServiceReply packed = get(wholeList, {{"Accept-Encoding", "gzip, deflate"}});
        QCOMPARE(packed.header("Content-Encoding"), "gzip");
        QVERIFY(packed.body.startsWith("\x1f\x8b"));
        const QByteArray plain = get(wholeList).body;
        QVERIFY(packed.body.size() < plain.size() / 2);
        quint32 length = 0;
        memcpy(&length, packed.body.constData() + packed.body.size() - 4, 4);
        QCOMPARE(length, static_cast<quint32>(plain.size()));
        QVERIFY(
            get(wholeList, {{"Accept-Encoding", "gzip;q=0"}}).header("Content-Encoding").isEmpty());
    }

    void aRequestWithoutTheRightKeyIsTurnedAway()
    {
        compareError(exchange(m_service.url(), "GET", wholeList), 401,
                     R"({"message":"No API key found in request","hint":"No `apikey` request )"
                     R"(header or url param was found."})");
        compareError(exchange(m_service.url(), "GET", wholeList, {{"apikey", "wrong"}}), 401,
                     R"({"message":"Invalid API key","hint":"Double check your Supabase `anon` )"
                     R"(or `service_role` API key."})");
        QCOMPARE(exchange(m_service.url(), "GET",
                          QByteArray(wholeList) + "&apikey=" + m_service.key().toLatin1())
                     .status,
                 200);
    }

    void aTokenThatIsNotOursIsRefused_data()
    {
        const QJsonObject claims{{u"role"_s, u"authenticated"_s},
                                 {u"exp"_s, QDateTime::currentSecsSinceEpoch() + 60}};
        QJsonObject ended = claims;
        ended[u"exp"_s] = QDateTime::currentSecsSinceEpoch() - 1;
        QTest::addColumn<QByteArray>("bearer");
        QTest::addColumn<QByteArray>("code");
        QTest::addColumn<QByteArray>("details");
        QTest::addColumn<QByteArray>("message");
        const auto row = [](const char *name, const QByteArray &bearer, const char *code,
                            const char *details, const char *message) {
            QTest::newRow(name) << bearer << QByteArray(code) << QByteArray(details)
                                << QByteArray(message);
        };
        const char *wrong = "No suitable key or wrong key type";
        const char *none = "\"None of the keys was able to decode the JWT\"";
        row("expired", signedToken(ended, secret()), "PGRST303", "null", "JWT expired");
        row("another secret", signedToken(claims, "another"), "PGRST301", none, wrong);
        row("unsigned", signedToken(claims, {}, "none"), "PGRST301", none, wrong);
        row("changed", signedToken(claims, secret()).replace('.', ".e"), "PGRST301", none, wrong);
        row("not a token", "a.b", "PGRST301", "null", "Expected 3 parts in JWT; got 2");
        row("nothing", "", "PGRST301", "null", "Empty JWT is sent in Authorization header");
        row("a key that is not the request's", "sb_secret_x", "PGRST301", "null",
            "Expected 3 parts in JWT; got 1");
    }
    void aTokenThatIsNotOursIsRefused()
    {
        QFETCH(QByteArray, bearer);
        QFETCH(QByteArray, code);
        QFETCH(QByteArray, details);
        QFETCH(QByteArray, message);
        const ServiceReply reply = get(wholeList, {{"Authorization", "Bearer " + bearer}});
        compareError(reply, 401,
                     "{\"code\":\"" + code + "\",\"details\":" + details
                         + ",\"hint\":null,\"message\":\"" + message + "\"}");
        QCOMPARE(reply.header("WWW-Authenticate"),
                 "Bearer error=\"invalid_token\", error_description=\"" + message + '"');
    }

    void aWrongQuestionIsExplained_data()
    {
        QTest::addColumn<QByteArray>("target");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("code");
        QTest::addColumn<QString>("message");
        const auto row = [](const char *name, const char *target, int status, const char *code,
                            const char *message) {
            QTest::newRow(name) << QByteArray(target) << status << QString::fromLatin1(code)
                                << QString::fromLatin1(message);
        };
        row("unknown column", "/rest/v1/events?select=id,couleur", 400, "42703",
            "column events.couleur does not exist");
        row("unknown filter column", "/rest/v1/events?couleur=eq.1", 400, "42703",
            "column events.couleur does not exist");
        row("unknown table", "/rest/v1/recettes", 404, "PGRST205",
            "Could not find the table 'public.recettes' in the schema cache");
        row("a table of another schema", "/rest/v1/users", 404, "PGRST205",
            "Could not find the table 'public.users' in the schema cache");
        row("bad order", "/rest/v1/events?order=starts_at.sideways", 400, "PGRST100",
            "\"failed to parse order (starts_at.sideways)\" (line 1, column 11)");
        row("bad select", "/rest/v1/events?select=id,", 400, "PGRST100",
            "\"failed to parse select parameter (id,)\" (line 1, column 4)");
        row("bad filter", "/rest/v1/events?id=5", 400, "PGRST100",
            "\"failed to parse filter (5)\" (line 1, column 1)");
        row("a key that is none", "/rest/v1/events?id=eq.5", 400, "22P02",
            "invalid input syntax for type uuid: \"5\"");
        row("negative page", "/rest/v1/events?limit=-1", 416, "PGRST103",
            "Requested range not satisfiable");
    }
    void aWrongQuestionIsExplained()
    {
        QFETCH(QByteArray, target);
        QFETCH(int, status);
        QFETCH(QString, code);
        QFETCH(QString, message);
        const ServiceReply reply = get(target);
        QCOMPARE(reply.status, status);
        QCOMPARE(reply.object().value(u"code"_s).toString(), code);
        QCOMPARE(reply.object().value(u"message"_s).toString(), message);
        QCOMPARE(reply.object().keys(),
                 QStringList({u"code"_s, u"details"_s, u"hint"_s, u"message"_s}));
    }

    void onlyJsonIsServed()
    {
        compareError(get("/rest/v1/events", {{"Accept", "text/html"}}), 406,
                     R"({"code":"PGRST107","details":null,"hint":null,)"
                     R"("message":"None of these media types are available: text/html"})");
        QCOMPARE(get("/rest/v1/events", {{"Accept", "text/html, */*;q=0.1"}}).status, 200);
    }

    void anUnknownVerbIsNotAllowed()
    {
        compareError(get("/rest/v1/events", {}, "TRACE"), 405,
                     R"({"code":"PGRST117","details":null,"hint":null,)"
                     R"("message":"Unsupported HTTP method: TRACE"})");
    }

    void anAddressOutsideTheInterfacesIsNotFound()
    {
        compareError(get("/"), 404, R"({"error":"requested path is invalid"})");
        compareError(get("//rest/v1/events"), 404, R"({"error":"requested path is invalid"})");
    }

    void manyClientsAtOnceAllGetTheWholeList()
    {
        const QByteArray wanted = get(wholeList).body;
        const QUrl url(m_service.url());
        // Two of them never finish their request, which is nobody else's trouble.
        std::vector<std::unique_ptr<QTcpSocket>> sockets;
        for (int client = 0; client < 40; ++client) {
            sockets.push_back(std::make_unique<QTcpSocket>());
            sockets.back()->connectToHost(url.host(), static_cast<quint16>(url.port()));
            QVERIFY(sockets.back()->waitForConnected());
            sockets.back()->write(QByteArray("GET ") + wholeList
                                  + " HTTP/1.1\r\napikey: " + m_service.key().toLatin1()
                                  + "\r\nConnection: close\r\n" + (client < 2 ? "" : "\r\n"));
            QVERIFY(sockets.back()->waitForBytesWritten() || sockets.back()->bytesToWrite() == 0);
        }
        for (std::size_t client = 2; client < sockets.size(); ++client) {
            QTcpSocket &socket = *sockets[client];
            while (socket.state() == QAbstractSocket::ConnectedState
                   && socket.waitForReadyRead(20'000)) { }
            const QByteArray answer = socket.readAll();
            QCOMPARE(answer.mid(answer.indexOf("\r\n\r\n") + 4), wanted);
        }
    }

    void aRequestIsLoggedWithoutItsSecrets()
    {
        const QByteArray bearer = signedToken({{u"role"_s, u"anon"_s}}, secret());
        get("/rest/v1/events?select=id&limit=4&apikey=" + m_service.key().toLatin1(),
            {{"Authorization", "Bearer " + bearer}});
        const QRegularExpression line(
            uR"(GET /rest/v1/events\?select=id&limit=4&apikey=\.\.\. 200 \d+\n)"_s);
        QTRY_VERIFY(line.match(m_service.output()).hasMatch());
        QVERIFY(!m_service.output().contains(m_service.key()));
        QVERIFY(!m_service.output().contains(QString::fromLatin1(bearer)));
    }
};

QTEST_GUILESS_MAIN(TestServiceReading)
#include "test_service_reading.moc"
