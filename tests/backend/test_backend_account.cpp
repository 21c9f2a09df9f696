// Signing in, up and out, and what is remembered of it.

#include "account/CredentialsStore.h"
#include "support/Await.h"
#include "support/HttpServer.h"
#include "support/LocalBackend.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

// {"sub":"moi"}, and claims of 24 and 22 letters: without padding, and short of two.
constexpr auto token = "e30.eyJzdWIiOiJtb2kifQ.x";
// {"sub":"moi","exp":1}
constexpr auto expired = "e30.eyJzdWIiOiJtb2kiLCJleHAiOjF9.x";
constexpr auto token24 = "e30.eyJzdWIiOiJtb2kxMjM0NSJ9.x";

// What a listener sees at each posting.
struct Seen {
    QString name;
    Session session;
    bool isRemembered;
};

} // namespace

class TestBackendAccount : public QObject {
    Q_OBJECT

    std::unique_ptr<Visitor> m_visitor;
    QList<Seen> m_seen;

    static Session session(const char *accessToken, const char *userId, const char *email)
    {
        return {QString::fromUtf8(accessToken), QString::fromUtf8(userId),
                QString::fromUtf8(email)};
    }

private Q_SLOTS:
    void init()
    {
        m_visitor = std::make_unique<Visitor>();
        m_seen.clear();
        connect(&m_visitor->backend.center, &NotificationCenter::posted, &m_visitor->backend,
                [this](const QString &name) {
                    m_seen.append(
                        {name, m_visitor->backend.session(), m_visitor->remembered().has_value()});
                });
    }

    void everybodyStartsSignedOut()
    {
        QCOMPARE(m_visitor->backend.session(), Session());
        QVERIFY(m_seen.isEmpty());
    }

    void aSignInGoesOutAsTold_data()
    {
        QTest::addColumn<bool>("isNew");
        QTest::addColumn<QByteArray>("target");
        QTest::newRow("sign in") << false << QByteArray("/auth/v1/token?grant_type=password");
        QTest::newRow("sign up") << true << QByteArray("/auth/v1/signup");
    }

    void aSignInGoesOutAsTold()
    {
        QFETCH(bool, isNew);
        QFETCH(QByteArray, target);
        QCOMPARE(m_visitor->signedIn(HttpAnswer::whole(200, "{\"access_token\":\"t\"}"), isNew),
                 QString());
        QCOMPARE(m_visitor->server.requests().size(), 1);
        const HttpRequest &request = m_visitor->server.requests().constFirst();
        QCOMPARE(request.method, "POST");
        QCOMPARE(request.target, target);
        QCOMPARE(request.header("apikey"), "clef");
        QCOMPARE(request.header("Content-Type"), "application/json");
        QCOMPARE(request.header("Accept"), "application/json");
        QVERIFY(request.header("Authorization").isNull());
        QVERIFY(request.header("Prefer").isNull());
        const QJsonObject sent{{u"email"_s, u" A@b.fr"_s}, {u"password"_s, u"mot de passe"_s}};
        QCOMPARE(QJsonDocument::fromJson(request.body).object(), sent);
    }

    void aMemberWhoSignsInAgainStillSendsNoToken()
    {
        QCOMPARE(m_visitor->signedIn(HttpAnswer::whole(200, "{\"access_token\":\"t\"}")),
                 QString());
        QCOMPARE(m_visitor->signedIn(HttpAnswer::whole(200, "{\"access_token\":\"t\"}")),
                 QString());
        QVERIFY(m_visitor->server.requests().at(1).header("Authorization").isNull());
    }

    void aSuccessBeginsASession_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<Session>("begun");
        const QByteArray t(token);
        QTest::newRow("token and user") << QByteArray(
            "{\"access_token\":\"t\",\"token_type\":\"bearer\",\"user\":{\"id\":\"u\","
            "\"email\":\"e@f\"}}") << session("t", "u", "e@f");
        QTest::newRow("user without an address")
            << QByteArray("{\"access_token\":\"t\",\"user\":{\"id\":\"u\",\"email\":null}}")
            << session("t", "u", " A@b.fr");
        QTest::newRow("the user's identifier before the token's")
            << QByteArray("{\"access_token\":\"" + t + "\",\"user\":{\"id\":\"u\"}}")
            << session(token, "u", " A@b.fr");
        QTest::newRow("no user, the token says who")
            << QByteArray("{\"access_token\":\"" + t + "\"}") << session(token, "moi", " A@b.fr");
        QTest::newRow("claims that need no padding")
            << QByteArray("{\"access_token\":\"" + QByteArray(token24) + "\",\"user\":null}")
            << session(token24, "moi12345", " A@b.fr");
        QTest::newRow("a token without a dot") << QByteArray("{\"access_token\":\"t\"}")
                                               << Session{u"t"_s, std::nullopt, u" A@b.fr"_s};
        QTest::newRow("claims that are none") << QByteArray("{\"access_token\":\"a.!!.c\"}")
                                              << Session{u"a.!!.c"_s, std::nullopt, u" A@b.fr"_s};
        QTest::newRow("an empty address")
            << QByteArray("{\"access_token\":\"t\",\"user\":{\"id\":\"u\",\"email\":\"\"}}")
            << session("t", "u", "");
        QTest::newRow("an empty identifier")
            << QByteArray("{\"access_token\":\"" + t + "\",\"user\":{\"id\":\"\"}}")
            << session(token, "", " A@b.fr");
        QTest::newRow("a token long expired")
            << QByteArray("{\"access_token\":\"" + QByteArray(expired) + "\"}")
            << session(expired, "moi", " A@b.fr");
        QTest::newRow("an empty token")
            << QByteArray("{\"access_token\":\"\"}") << Session{u""_s, std::nullopt, u" A@b.fr"_s};
    }

    void aSuccessBeginsASession()
    {
        QFETCH(QByteArray, body);
        QFETCH(Session, begun);
        for (const bool isNew : {false, true}) {
            init();
            QCOMPARE(m_visitor->signedIn(HttpAnswer::whole(200, body), isNew), QString());
            QCOMPARE(m_visitor->backend.session(), begun);
            QCOMPARE(m_seen.size(), 1);
            QCOMPARE(m_seen.constFirst().name, u"SupabaseAuthChanged"_s);
            QCOMPARE(m_seen.constFirst().session, begun);
            QCOMPARE(m_visitor->remembered(), (Credentials{u" A@b.fr"_s, u"mot de passe"_s}));
        }
    }

    void theRecordIsSavedAfterThePosting()
    {
        QCOMPARE(m_visitor->signedIn(HttpAnswer::whole(200, "{\"access_token\":\"t\"}")),
                 QString());
        QVERIFY(!m_seen.constFirst().isRemembered);
        QVERIFY(m_visitor->remembered());
    }

    void aSignInWithoutATokenSignsOut()
    {
        QCOMPARE(m_visitor->signedIn(HttpAnswer::whole(200, "{\"access_token\":\"t\"}")),
                 QString());
        QCOMPARE(m_visitor->signedIn(HttpAnswer::whole(200, "{}")), QString());
        QCOMPARE(m_visitor->backend.session(), (Session{std::nullopt, std::nullopt, u" A@b.fr"_s}));
        QCOMPARE(m_seen.size(), 2);
        QVERIFY(m_visitor->remembered());
    }

    void aSignInWithoutATokenStillTakesTheUser()
    {
        QCOMPARE(m_visitor->signedIn(
                     HttpAnswer::whole(200, "{\"user\":{\"id\":\"u\",\"email\":\"e\"}}")),
                 QString());
        QCOMPARE(m_visitor->backend.session(), (Session{std::nullopt, u"u"_s, u"e"_s}));
    }

    void aSignOutEndsTheSessionAndKeepsTheRecord()
    {
        QCOMPARE(m_visitor->signedIn(HttpAnswer::whole(200, "{\"access_token\":\"t\"}")),
                 QString());
        m_seen.clear();
        m_visitor->backend.signOut();
        QCOMPARE(m_visitor->backend.session(), Session());
        QCOMPARE(m_seen.size(), 1);
        QCOMPARE(m_seen.constFirst().session, Session());
        QVERIFY(m_visitor->remembered());
        QCOMPARE(m_visitor->server.requests().size(), 1);
    }

    void theSameSignInAgainIsStillAnnounced()
    {
        const HttpAnswer same = HttpAnswer::whole(200, "{\"access_token\":\"t\"}");
        for (int i = 1; i <= 3; ++i) {
            QCOMPARE(m_visitor->signedIn(same, i == 3), QString());
            QCOMPARE(m_seen.size(), i);
        }
        QCOMPARE(m_seen.at(0).session, m_seen.at(2).session);
    }

    void forgettingNothingIsStillAnnounced()
    {
        m_visitor->backend.clearSavedCredentials();
        QCOMPARE(m_seen.size(), 1);
        QCOMPARE(m_seen.constFirst().name, u"SupabaseAuthChanged"_s);
    }

    void anEmptyTokenIsAToken()
    {
        QCOMPARE(m_visitor->signedIn(HttpAnswer::whole(200, "{\"access_token\":\"\"}")), QString());
        m_visitor->server.answer(HttpAnswer::whole(204, ""));
        QCOMPARE(outcomeOf(m_visitor->backend.deleteEvent(u"1"_s)).failure(), QString());
        QCOMPARE(m_visitor->server.requests().at(1).header("Authorization"), "Bearer");
    }

    void aSignOutWhileSignedOutIsStillAnnounced()
    {
        m_visitor->backend.signOut();
        QCOMPARE(m_seen.size(), 1);
        QCOMPARE(m_seen.constFirst().name, u"SupabaseAuthChanged"_s);
    }

    void forgettingTheRecordKeepsTheSession()
    {
        QCOMPARE(m_visitor->signedIn(HttpAnswer::whole(200, "{\"access_token\":\"t\"}")),
                 QString());
        m_seen.clear();
        m_visitor->backend.clearSavedCredentials();
        QVERIFY(!m_visitor->remembered());
        QCOMPARE(m_visitor->backend.session().accessToken, u"t"_s);
        QCOMPARE(m_seen.size(), 1);
        QCOMPARE(m_seen.constFirst().name, u"SupabaseAuthChanged"_s);
        QVERIFY(!m_seen.constFirst().isRemembered);
    }

    void onceSignedInAMemberReadsWithTheToken()
    {
        QCOMPARE(m_visitor->signedIn(HttpAnswer::whole(200, "{\"access_token\":\"jeton\"}")),
                 QString());
        m_visitor->server.answer(HttpAnswer::whole(200, "[]"));
        QCOMPARE(outcomeOf(m_visitor->backend.fetchEvents()).failure(), QString());
        QCOMPARE(m_visitor->server.requests().at(1).header("Authorization"), "Bearer jeton");
        m_visitor->backend.signOut();
        QCOMPARE(outcomeOf(m_visitor->backend.fetchEvents()).failure(), QString());
        QCOMPARE(m_visitor->server.requests().at(2).header("Authorization"), "Bearer clef");
    }
};

QTEST_GUILESS_MAIN(TestBackendAccount)
#include "test_backend_account.moc"
