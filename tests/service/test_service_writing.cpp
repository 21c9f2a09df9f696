#include "support/LocalService.h"
#include "support/ServiceClient.h"

#include <QJsonDocument>
#include <QSet>
#include <QTcpSocket>
#include <QTest>
#include <QUrl>
#include <QUuid>

#include <csignal>
#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

const Headers showRows{{"Prefer", "return=representation"}};

QByteArray freshId()
{
    return QUuid::createUuid().toByteArray(QUuid::WithoutBraces);
}

QByteArray json(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QByteArray titled(const char *title, const QByteArray &id)
{
    return json({{u"titre"_s, QString::fromUtf8(title)}, {u"id"_s, QString::fromLatin1(id)}});
}

} // namespace

class TestServiceWriting : public QObject {
    Q_OBJECT

private:
    struct Member {
        QString id;
        QByteArray bearer;
    };

    Member signUp(const QByteArray &email)
    {
        const QJsonObject session =
            exchange(m_service.url(), "POST", "/auth/v1/signup",
                     {{"apikey", m_service.key().toLatin1()}},
                     "{\"email\":\"" + email + "\",\"password\":\"motdepasse\"}")
                .object();
        return {session[u"user"_s][u"id"_s].toString(),
                "Bearer " + session[u"access_token"_s].toString().toLatin1()};
    }
    ServiceReply send(const QByteArray &verb, const QByteArray &query, const QByteArray &body,
                      const Member &member, const Headers &more = {})
    {
        Headers headers{{"apikey", m_service.key().toLatin1()}};
        if (!member.bearer.isEmpty())
            headers += Headers{{"Authorization", member.bearer}};
        if (!body.isEmpty())
            headers += Headers{{"Content-Type", "application/json"}};
        return exchange(m_service.url(), verb, "/rest/v1/events" + query, headers + more, body);
    }
    QByteArray add(const Member &member)
    {
        const QByteArray id = freshId();
        send("POST", "", titled("Fête", id), member);
        return id;
    }
    QJsonObject row(const QByteArray &id)
    {
        return send("GET", "?id=eq." + id, {}, {}).array().first().toObject();
    }
    void compareError(const ServiceReply &reply, int status, const char *code, const char *message)
    {
        QVERIFY2(reply.status == status, reply.body);
        QCOMPARE(reply.object()[u"code"_s].toString(), QLatin1StringView(code));
        QCOMPARE(reply.object()[u"message"_s].toString(), QString::fromUtf8(message));
    }

    LocalService m_service;
    Member m_anne;
    Member m_bruno;

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_service.isRunning());
        m_anne = signUp("anne@test.example");
        m_bruno = signUp("bruno@test.example");
        QVERIFY(!m_anne.id.isEmpty() && !m_bruno.id.isEmpty());
    }
    void cleanupTestCase() { QVERIFY2(m_service.stop(), qPrintable(m_service.output())); }

    void aNewEventIsShownAsItWasWritten()
    {
        const QJsonObject event{{u"id"_s, u"0B6F7F4E-66D5-4C6B-9B0F-0123456789AB"_s},
                                {u"user_id"_s, m_anne.id},
                                {u"titre"_s, u"Fête de l’été 🎉"_s},
                                {u"tags"_s, QJsonArray{u"Repas"_s, u"a,\"b\""_s}},
                                {u"lieu"_s, QString()},
                                {u"starts_at"_s, u"2025-06-14T13:30:00Z"_s}};
        const ServiceReply reply = send("POST", "", json(event), m_anne, showRows);
        QVERIFY2(reply.status == 201, reply.body);
        QCOMPARE(reply.array().size(), 1);
        const QJsonObject written = reply.array().first().toObject();
        QCOMPARE(written.size(), 14);
        QCOMPARE(written[u"id"_s].toString(), u"0b6f7f4e-66d5-4c6b-9b0f-0123456789ab"_s);
        for (const char *same : {"user_id", "titre", "tags", "lieu"})
            QCOMPARE(written[QLatin1StringView(same)], event[QLatin1StringView(same)]);
        QCOMPARE(written[u"starts_at"_s].toString(), u"2025-06-14T13:30:00+00:00"_s);
        QVERIFY(written[u"description"_s].isNull());
        QCOMPARE(written[u"status"_s].toString(), u"published"_s);
        QCOMPARE(row("0b6f7f4e-66d5-4c6b-9b0f-0123456789ab"), written);
    }

    void anEventIsItsWritersWithoutSayingSo()
    {
        QCOMPARE(row(add(m_anne))[u"user_id"_s].toString(), m_anne.id);
    }

    void aWriterWhoAsksForNothingGetsNothing()
    {
        const ServiceReply added = send("POST", "", R"({"titre":"X"})", m_anne);
        QCOMPARE(added.status, 201);
        QVERIFY(added.body.isEmpty());
        const QByteArray id = add(m_anne);
        const ServiceReply changed = send("PATCH", "?id=eq." + id, R"({"titre":"Y"})", m_anne,
                                          {{"Prefer", "return=minimal"}});
        QCOMPARE(changed.status, 204);
        QCOMPARE(changed.header("Preference-Applied"), "return=minimal");
        QCOMPARE(row(id)[u"titre"_s].toString(), u"Y"_s);
        const ServiceReply removed = send("DELETE", "?id=eq." + id, {}, m_anne);
        QCOMPARE(removed.status, 204);
        QCOMPARE(removed.header("Content-Range"), "*/*");
        QVERIFY(row(id).isEmpty());
    }

    void severalEventsAreAddedTogetherOrNotAtAll()
    {
        const QByteArray one = freshId();
        const QByteArray two = freshId();
        const auto body = [&](const char *title) {
            return '[' + titled("A", one) + ',' + titled(title, two) + ']';
        };
        QCOMPARE(send("POST", "", body(""), m_anne, showRows).status, 400);
        QVERIFY(row(one).isEmpty());
        const ServiceReply reply = send("POST", "?select=titre", body("B"), m_anne, showRows);
        QCOMPARE(reply.status, 201);
        QCOMPARE(
            reply.array(),
            QJsonArray({QJsonObject{{u"titre"_s, u"A"_s}}, QJsonObject{{u"titre"_s, u"B"_s}}}));
        QCOMPARE(send("POST", "", "[]", m_anne, showRows).body, "[]");
    }

    void aChangeTouchesOnlyWhatItNames()
    {
        const QByteArray id = add(m_anne);
        send("PATCH", "?id=eq." + id, R"({"lieu":"La Grange"})", m_anne);
        // What the application sends: the key and the owner, unchanged, with every change.
        const QJsonObject change{
            {u"id"_s, QString::fromLatin1(id)}, {u"user_id"_s, m_anne.id}, {u"titre"_s, u"Bal"_s}};
        const ServiceReply reply = send("PATCH", "?id=eq." + id, json(change), m_anne, showRows);
        QCOMPARE(reply.status, 200);
        const QJsonObject written = reply.array().first().toObject();
        QCOMPARE(written[u"titre"_s].toString(), u"Bal"_s);
        QCOMPARE(written[u"lieu"_s].toString(), u"La Grange"_s);
    }

    void whatMatchesNothingSucceedsEmpty()
    {
        const QByteArray nobody = "?id=eq." + freshId();
        for (const QByteArray &verb : {QByteArray("PATCH"), QByteArray("DELETE")}) {
            const QByteArray body = verb == "PATCH" ? R"({"titre":"X"})" : "";
            const ServiceReply shown = send(verb, nobody, body, m_anne, showRows);
            QCOMPARE(shown.status, 200);
            QCOMPARE(shown.body, "[]");
            const ServiceReply silent = send(verb, nobody, body, m_anne);
            QCOMPARE(silent.status, 204);
            QCOMPARE(silent.header("Content-Range"), "*/*");
        }
    }

    void theEventOfAnotherStaysAsItIs()
    {
        const QByteArray id = add(m_anne);
        const QJsonObject before = row(id);
        QCOMPARE(send("PATCH", "?id=eq." + id, R"({"titre":"X"})", m_bruno, showRows).body, "[]");
        QCOMPARE(send("DELETE", "?id=eq." + id, {}, m_bruno, showRows).body, "[]");
        QCOMPARE(row(id), before);
    }

    void whoIsNotAllowedIsToldWhy()
    {
        const char *policy = "new row violates row-level security policy for table \"events\"";
        const char *denied = "permission denied for table events";
        const QByteArray id = add(m_anne);
        const QByteArray mine = "?id=eq." + id;
        const QByteArray brunos = "\"user_id\":\"" + m_bruno.id.toLatin1() + "\"}";
        compareError(send("POST", "", "{\"titre\":\"X\"," + brunos, m_anne), 403, "42501", policy);
        compareError(send("PATCH", mine, '{' + brunos, m_anne), 403, "42501", policy);
        compareError(send("PATCH", mine, "{\"id\":\"" + freshId() + "\"}", m_anne), 403, "42501",
                     "the id of an event cannot be changed");
        compareError(send("PATCH", mine, R"({"status":"hidden"})", m_anne), 403, "42501", denied);
        compareError(send("POST", "", R"({"titre":"X","ts":"2020-01-01"})", m_anne), 403, "42501",
                     denied);
        const ServiceReply anonymous = send("POST", "", R"({"titre":"X"})", {});
        compareError(anonymous, 401, "42501", denied);
        QCOMPARE(anonymous.header("WWW-Authenticate"), "Bearer");
        compareError(send("PATCH", mine, R"({"titre":"X"})", {}), 401, "42501", denied);
        compareError(send("DELETE", mine, {}, {}), 401, "42501", denied);
    }

    void aWrongRowIsExplained_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QByteArray>("code");
        QTest::addColumn<QByteArray>("message");
        const auto wrong = [](const char *name, const char *body, const char *code,
                              const char *message) {
            QTest::newRow(name) << QByteArray(body) << QByteArray(code) << QByteArray(message);
        };
        wrong("cut short", R"({"titre":"X")", "PGRST102", "Empty or invalid json");
        wrong("empty", "", "PGRST102", "Empty or invalid json");
        wrong("not a row", "5", "PGRST102", "Empty or invalid json");
        wrong("different keys", R"([{"titre":"X"},{"lieu":"Y"}])", "PGRST102",
              "All object keys must match");
        wrong("unknown column", R"({"titre":"X","couleur":"vert"})", "PGRST204",
              "Could not find the 'couleur' column of 'events' in the schema cache");
        wrong("no instant", R"({"titre":"X","starts_at":"demain"})", "22007",
              "invalid input syntax for type timestamp with time zone: \"demain\"");
        wrong("no key", R"({"titre":"X","id":"5"})", "22P02",
              "invalid input syntax for type uuid: \"5\"");
        wrong("no list", R"({"titre":"X","tags":"un"})", "22P02",
              "malformed array literal: \"un\"");
        wrong("no title", R"({"lieu":"X"})", "23502",
              "null value in column \"titre\" of relation \"events\" violates not-null constraint");
        wrong("blank title", R"({"titre":" "})", "23514",
              "new row for relation \"events\" violates check constraint \"events_titre_length\"");
        wrong("a character that is none", R"({"titre":"a\u0000b"})", "22P05",
              "unsupported Unicode escape sequence");
    }
    void aWrongRowIsExplained()
    {
        QFETCH(QByteArray, body);
        QFETCH(QByteArray, code);
        QFETCH(QByteArray, message);
        compareError(send("POST", "", body, m_anne), 400, code.constData(), message.constData());
    }

    void aKeyThatIsTakenIsAConflict()
    {
        const QByteArray id = add(m_anne);
        compareError(send("POST", "", titled("X", id), m_anne), 409, "23505",
                     "duplicate key value violates unique constraint \"events_pkey\"");
    }

    void aWholeTableIsNeverWrittenByAForgottenFilter()
    {
        compareError(send("PATCH", "", R"({"titre":"X"})", m_anne), 400, "21000",
                     "UPDATE requires a WHERE clause");
        compareError(send("DELETE", "", {}, m_anne), 400, "21000",
                     "DELETE requires a WHERE clause");
        compareError(send("DELETE", "?select=id", {}, m_anne), 400, "21000",
                     "DELETE requires a WHERE clause");
    }

    void aFilterIsNeverReadAsSql()
    {
        const QByteArray id = add(m_anne);
        QCOMPARE(send("DELETE", "?titre=eq.X'%20or%20''='", {}, m_anne).status, 204);
        QCOMPARE(send("DELETE", "?titre%22%3Dtitre%20or%20%22titre=eq.X", {}, m_anne).status, 400);
        QVERIFY(!row(id).isEmpty());
    }

    void twoClientsWriteAtOnceWithoutMixing()
    {
        const QUrl url(m_service.url());
        std::vector<std::unique_ptr<QTcpSocket>> sockets;
        QList<QByteArray> ids;
        for (int at = 0; at < 30; ++at) {
            ids.append(freshId());
            const Member &member = at % 2 == 0 ? m_anne : m_bruno;
            const QByteArray body = titled("Ensemble", ids.last());
            sockets.push_back(std::make_unique<QTcpSocket>());
            sockets.back()->connectToHost(url.host(), static_cast<quint16>(url.port()));
            QVERIFY(sockets.back()->waitForConnected());
            sockets.back()->write("POST /rest/v1/events HTTP/1.1\r\nConnection: close\r\napikey: "
                                  + m_service.key().toLatin1()
                                  + "\r\nAuthorization: " + member.bearer + "\r\nContent-Length: "
                                  + QByteArray::number(body.size()) + "\r\n\r\n" + body);
            sockets.back()->flush();
        }
        for (int at = 0; at < 30; ++at) {
            QTcpSocket &socket = *sockets[static_cast<std::size_t>(at)];
            while (socket.state() == QAbstractSocket::ConnectedState
                   && socket.waitForReadyRead(20'000)) { }
            QVERIFY(socket.readAll().startsWith("HTTP/1.1 201"));
            QCOMPARE(row(ids[at])[u"user_id"_s].toString(), at % 2 == 0 ? m_anne.id : m_bruno.id);
        }
    }

    void whoAddsTooMuchIsToldToWait()
    {
        const Member member = signUp("presse@test.example");
        QByteArray rows;
        for (int count = 0; count < 60; ++count)
            rows += (rows.isEmpty() ? "" : ",") + titled("Trop", freshId());
        QCOMPARE(send("POST", "", '[' + rows + ']', member).status, 201);
        compareError(send("POST", "", titled("Trop", freshId()), member), 429, "PT429",
                     "Un compte peut ajouter 60 événements par heure. Réessayez plus tard.");
        compareError(
            send("POST", "", R"({"titre":"X","starts_at":"0001-01-01T00:00:00Z"})", m_anne), 400,
            "23514", "La date d’un événement doit être comprise entre 2000 et 2099.");
    }

    void nothingAcknowledgedIsLostWhenBothAreKilled()
    {
        // Several, since one account may add sixty events in an hour.
        QList<Member> members;
        for (const char *email : {"un@test.example", "deux@test.example", "trois@test.example"})
            members.append(signUp(email));
        QSet<QString> acknowledged;
        QSet<QString> uncertain;
        for (int round = 0; round < 50; ++round) {
            const QByteArray id = freshId();
            if (send("POST", "", titled("Compté", id), members[round % 3]).status == 201)
                acknowledged.insert(QString::fromLatin1(id));
        }
        QCOMPARE(acknowledged.size(), 50);
        // Fifty more at once, and the end while they are under way.
        const QUrl url(m_service.url());
        std::vector<std::pair<QByteArray, std::unique_ptr<QTcpSocket>>> writers;
        for (int at = 0; at < 50; ++at) {
            const QByteArray id = freshId();
            const QByteArray body = titled("Compté", id);
            auto socket = std::make_unique<QTcpSocket>();
            socket->connectToHost(url.host(), static_cast<quint16>(url.port()));
            QVERIFY(socket->waitForConnected());
            socket->write("POST /rest/v1/events HTTP/1.1\r\nConnection: close\r\napikey: "
                          + m_service.key().toLatin1()
                          + "\r\nAuthorization: " + members[at % 3].bearer + "\r\nContent-Length: "
                          + QByteArray::number(body.size()) + "\r\n\r\n" + body);
            socket->flush();
            writers.emplace_back(id, std::move(socket));
        }
        QVERIFY(writers[5].second->waitForReadyRead(20'000));
        ::kill(static_cast<pid_t>(m_service.databaseProcessId()), SIGKILL);
        m_service.kill();
        for (const auto &[id, socket] : writers) {
            while (socket->state() == QAbstractSocket::ConnectedState
                   && socket->waitForReadyRead(5000)) { }
            const bool isDone = socket->readAll().startsWith("HTTP/1.1 201");
            (isDone ? acknowledged : uncertain).insert(QString::fromLatin1(id));
        }
        QVERIFY(m_service.start());

        QSet<QString> stored;
        const QJsonArray rows = send("GET", "?select=id&titre=eq.Compt%C3%A9", {}, {}).array();
        for (const QJsonValue &value : rows)
            stored.insert(value[u"id"_s].toString());
        qInfo() << acknowledged.size() << "acknowledged," << uncertain.size() << "cut off,"
                << stored.size() << "stored";
        QVERIFY(acknowledged.size() > 50);
        QVERIFY((acknowledged - stored).isEmpty());
        QVERIFY((stored - acknowledged - uncertain).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestServiceWriting)
#include "test_service_writing.moc"
