// Creating, changing and deleting events.

#include "backend/SupabaseError.h"
#include "support/Await.h"
#include "support/HttpServer.h"
#include "support/LocalBackend.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const HttpAnswer granting(const QByteArray &token)
{
    return HttpAnswer::whole(200, "{\"access_token\":\"" + token + "\",\"user\":{\"id\":\"moi\"}}");
}

EventCreatePayload bal()
{
    EventCreatePayload payload;
    payload.id = u"b1"_s;
    payload.titre = u"Bal d'été"_s;
    payload.description = QString(); // empty, which is not absent
    payload.tags = QStringList{QString(), u"Repas"_s};
    return payload;
}

constexpr auto writtenBal = "{\"id\":\"b1\",\"titre\":\"Bal d'été\",\"description\":\"\","
                            "\"tags\":[\"\",\"Repas\"]}";

enum class Write { create, update, remove };

QCoro::Task<void> started(Backend &backend, Write what)
{
    switch (what) {
    case Write::create:
        return backend.createEvent(bal());
    case Write::update:
        return backend.updateEvent(u"b1"_s, bal());
    case Write::remove:
        return backend.deleteEvent(u"b1"_s);
    }
    Q_UNREACHABLE();
    return backend.deleteEvent({});
}

void addWrites()
{
    QTest::addColumn<Write>("what");
    QTest::newRow("create") << Write::create;
    QTest::newRow("update") << Write::update;
    QTest::newRow("delete") << Write::remove;
}

} // namespace

class TestBackendMembers : public QObject {
    Q_OBJECT

    // The server's first request is the sign-in.
    static void signIn(Backend &backend)
    {
        const auto outcome = outcomeOf(backend.signIn(u"a@b.fr"_s, u"secret"_s));
        QCOMPARE(outcome.failure(), QString());
    }

private Q_SLOTS:
    void aWriteGoesOutAsTold_data()
    {
        QTest::addColumn<Write>("what");
        QTest::addColumn<QByteArray>("method");
        QTest::addColumn<QByteArray>("target");
        QTest::newRow("create") << Write::create << QByteArray("POST")
                                << QByteArray("/rest/v1/events");
        QTest::newRow("update") << Write::update << QByteArray("PATCH")
                                << QByteArray("/rest/v1/events?id=eq.b1");
        QTest::newRow("delete") << Write::remove << QByteArray("DELETE")
                                << QByteArray("/rest/v1/events?id=eq.b1");
    }

    void aWriteGoesOutAsTold()
    {
        QFETCH(Write, what);
        QFETCH(QByteArray, method);
        QFETCH(QByteArray, target);
        HttpServer server;
        server.answerInTurn({granting("jeton"), HttpAnswer::whole(201, "[{}]")});
        LocalBackend backend({server.base(), u"clef"_s});
        signIn(backend);
        QCOMPARE(outcomeOf(started(backend, what)).failure(), QString());

        QCOMPARE(server.requests().size(), 2);
        const HttpRequest &request = server.requests().at(1);
        QCOMPARE(request.method, method);
        QCOMPARE(request.target, target);
        QCOMPARE(request.version, "HTTP/1.1");
        QCOMPARE(request.header("apikey"), "clef");
        QCOMPARE(request.header("Authorization"), "Bearer jeton");
        QCOMPARE(request.header("Accept"), "application/json");
        const bool hasBody = what != Write::remove;
        QCOMPARE(request.header("Content-Type"), hasBody ? "application/json" : QByteArray());
        QCOMPARE(request.header("Prefer"), hasBody ? "return=representation" : QByteArray());
        QCOMPARE(request.body, hasBody ? QByteArray(writtenBal) : QByteArray());

        QList<QByteArray> names;
        for (const auto &[name, value] : request.headers)
            names.append(name.toLower());
        for (const char *name :
             {"apikey", "authorization", "accept", "content-type", "prefer", "host", "connection",
              "accept-encoding", "accept-language", "user-agent", "content-length"})
            names.removeOne(name);
        QCOMPARE(names, QList<QByteArray>());
    }

    void whoIsSignedOutSendsNothing_data() { addWrites(); }
    void whoIsSignedOutSendsNothing()
    {
        QFETCH(Write, what);
        HttpServer server;
        LocalBackend backend({server.base(), u"k"_s});
        QCOMPARE(outcomeOf(started(backend, what)).failure(), u"Vous devez être connecté."_s);
        LocalBackend unconfigured({});
        QCOMPARE(outcomeOf(started(unconfigured, what)).failure(), u"Vous devez être connecté."_s);
        QCOMPARE(server.connections(), 0);
    }

    void anySuccessWillDo_data()
    {
        QTest::addColumn<Write>("what");
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("body");
        for (const Write what : {Write::create, Write::update, Write::remove}) {
            QTest::addRow("%d: rows", int(what)) << what << 200 << QByteArray("[{\"id\":\"b1\"}]");
            QTest::addRow("%d: no row", int(what)) << what << 200 << QByteArray("[]");
            QTest::addRow("%d: created", int(what)) << what << 201 << QByteArray();
            QTest::addRow("%d: no content", int(what)) << what << 204 << QByteArray();
            QTest::addRow("%d: no JSON", int(what)) << what << 299 << QByteArray("\xFF<p>");
        }
    }

    void anySuccessWillDo()
    {
        QFETCH(Write, what);
        QFETCH(int, status);
        QFETCH(QByteArray, body);
        HttpServer server;
        server.answerInTurn({granting("j"), HttpAnswer::whole(status, body)});
        LocalBackend backend({server.base(), u"k"_s});
        signIn(backend);
        QCOMPARE(outcomeOf(started(backend, what)).failure(), QString());
    }

    void anExpiredTokenIsAnErrorThatKeepsTheSession_data() { addWrites(); }
    void anExpiredTokenIsAnErrorThatKeepsTheSession()
    {
        QFETCH(Write, what);
        HttpServer server;
        server.answerInTurn({granting("j"),
                             HttpAnswer::whole(401, "{\"message\":\"JWT expired\"}",
                                               {{"WWW-Authenticate", "Bearer error=\"x\""}})});
        LocalBackend backend({server.base(), u"k"_s});
        signIn(backend);
        const Session before = backend.session();
        const auto outcome = outcomeOf(started(backend, what));
        QVERIFY(outcome.errorAs<SupabaseError>() != nullptr);
        QCOMPARE(*outcome.errorAs<SupabaseError>(),
                 SupabaseError::httpError(401, "{\"message\":\"JWT expired\"}"));
        QCOMPARE(backend.session(), before);
        QCOMPARE(server.requests().size(), 2);
    }

    void anIdentifierThatMakesNoAddressSendsNothing()
    {
        HttpServer server;
        server.answer(granting("j"));
        LocalBackend backend({server.base(), u"k"_s});
        signIn(backend);
        const QString failure = u"Supabase URL is invalid: "_s + server.base();
        QCOMPARE(outcomeOf(backend.deleteEvent(u"a b"_s)).failure(), failure);
        QCOMPARE(outcomeOf(backend.updateEvent(u"é"_s, bal())).failure(), failure);
        QCOMPARE(server.requests().size(), 1);
    }

    void anIdentifierIsSentAsItStands()
    {
        HttpServer server;
        server.answer(granting("j"));
        LocalBackend backend({server.base(), u"k"_s});
        signIn(backend);
        QCOMPARE(outcomeOf(backend.deleteEvent(u"a&b=c%20d+e"_s)).failure(), QString());
        QCOMPARE(server.requests().at(1).target, "/rest/v1/events?id=eq.a&b=c%20d+e");
    }

    void aSignOutOnTheWayDoesNotAffectTheRequest()
    {
        HttpServer server;
        server.answerInTurn({granting("jeton"), HttpAnswer::whole(201, {}).late(50)});
        LocalBackend backend({server.base(), u"k"_s});
        signIn(backend);
        Outcome<void> outcome;
        const auto noting = note(backend.createEvent(bal()), outcome);
        backend.signOut();
        QTRY_VERIFY(outcome.isOver());
        QCOMPARE(outcome.failure(), QString());
        QCOMPARE(server.requests().at(1).header("Authorization"), "Bearer jeton");
        QCOMPARE(outcomeOf(backend.createEvent(bal())).failure(), u"Vous devez être connecté."_s);
    }

    void aTokenThatWouldBreakItsHeaderIsNotSent()
    {
        HttpServer server;
        server.answer(granting("jeton\\r\\nX-More: 1"));
        LocalBackend backend({server.base(), u"k"_s});
        signIn(backend);
        QCOMPARE(backend.session().accessToken, u"jeton\r\nX-More: 1"_s);
        const QString failure = outcomeOf(backend.deleteEvent(u"1"_s)).failure();
        QVERIFY(failure.startsWith(u"The request was not sent: "_s));
        QVERIFY(!failure.contains(u"jeton"_s));
        QCOMPARE(server.requests().size(), 1);
    }

    void aReadMayOverlapAWrite()
    {
        HttpServer server;
        server.answerWith([](const HttpRequest &request) {
            if (request.method == "POST")
                return granting("j");
            return request.method == "GET" ? HttpAnswer::whole(200, "[]").late(150)
                                           : HttpAnswer::whole(204, {});
        });
        LocalBackend backend({server.base(), u"k"_s});
        signIn(backend);
        Outcome<QList<Event>> read;
        Outcome<void> removed;
        const auto reading = note(backend.fetchEvents(), read);
        QTRY_COMPARE(server.requests().size(), 2);
        const auto removing = note(backend.deleteEvent(u"1"_s), removed);
        QTRY_VERIFY(read.isOver() && removed.isOver());
        QCOMPARE(read.failure(), QString());
        QCOMPARE(removed.failure(), QString());
        QCOMPARE(server.requests().size(), 3);
    }
};

QTEST_GUILESS_MAIN(TestBackendMembers)
#include "test_backend_members.moc"
