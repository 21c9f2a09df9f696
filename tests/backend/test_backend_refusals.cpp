// Sign-ins and sign-ups that fail change nothing and say why.

#include "account/CredentialsStore.h"
#include "backend/AuthRecords.h"
#include "backend/AuthReply.h"
#include "backend/SupabaseError.h"
#include "backend/TransportError.h"
#include "backend/UndecodableReply.h"
#include "support/Await.h"
#include "support/HttpServer.h"
#include "support/LocalBackend.h"

#include <QTest>

#include <memory>
#include <optional>
#include <variant>

using namespace Qt::StringLiterals;

namespace {

constexpr auto confirm = R"({"id":"u","email":"a@b.fr","confirmation_sent_at":"x"})";

} // namespace

class TestBackendRefusals : public QObject {
    Q_OBJECT

    std::unique_ptr<Visitor> m_visitor;
    QStringList m_seen;

private Q_SLOTS:
    void init()
    {
        m_visitor = std::make_unique<Visitor>();
        m_seen.clear();
        connect(&m_visitor->backend.center, &NotificationCenter::posted, &m_visitor->backend,
                [this](const QString &name) { m_seen.append(name); });
    }

    void aSignUpThatWaitsForConfirmationChangesNothing()
    {
        QCOMPARE(m_visitor->signedIn(HttpAnswer::whole(200, "{\"access_token\":\"t\"}")),
                 QString());
        m_visitor->backend.clearSavedCredentials();
        m_seen.clear();
        const Session before = m_visitor->backend.session();
        for (const char *body :
             {confirm, "{}", "{\"access_token\":null,\"user\":{\"id\":\"u\"}}"}) {
            m_visitor->server.answer(HttpAnswer::whole(200, body));
            const auto outcome = outcomeOf(m_visitor->backend.signUp(u"a@b.fr"_s, u"p"_s));
            QCOMPARE(outcome.failure(),
                     u"Compte créé. Vérifiez votre email pour confirmer la connexion."_s);
            QVERIFY(outcome.errorAs<SupabaseError>() != nullptr);
            QCOMPARE(outcome.errorAs<SupabaseError>()->kind(), SupabaseError::Case::authError);
        }
        QCOMPARE(m_visitor->backend.session(), before);
        QVERIFY(m_seen.isEmpty());
        QVERIFY(!m_visitor->remembered());
    }

    void aRefusalSaysWhy_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("text"); // null: each operation's own

        QTest::newRow("both texts")
            << 400 << QByteArray("{\"error\":\"invalid_grant\",\"error_description\":\"Non\"}")
            << u"Non"_s;
        QTest::newRow("only the error")
            << 400 << QByteArray("{\"error\":\"invalid_grant\"}") << u"invalid_grant"_s;
        QTest::newRow("a null description")
            << 400 << QByteArray("{\"error\":\"e\",\"error_description\":null}") << u"e"_s;
        QTest::newRow("an empty object") << 400 << QByteArray("{}") << QString();
        QTest::newRow("other keys")
            << 422 << QByteArray("{\"code\":422,\"msg\":\"weak password\"}") << QString();
        QTest::newRow("plain text")
            << 429 << QByteArray("Too many requests") << u"Too many requests"_s;
        QTest::newRow("a text of the wrong type")
            << 400 << QByteArray("{\"error\":3}") << u"{\"error\":3}"_s;
        QTest::newRow("a list") << 500 << QByteArray("[]") << u"[]"_s;
        QTest::newRow("a page") << 502 << QByteArray("<html>\xC3\xA9</html>")
                                << u"<html>é</html>"_s;
        QTest::newRow("an empty description")
            << 400 << QByteArray("{\"error\":\"e\",\"error_description\":\"\"}") << u""_s;
        QTest::newRow("an empty error") << 400 << QByteArray("{\"error\":\"\"}") << u""_s;
        QTest::newRow("text with room around it")
            << 429 << QByteArray(" Too many\r\n") << u" Too many\r\n"_s;
        QTest::newRow("blank") << 500 << QByteArray(" \n") << u" \n"_s;
        QTest::newRow("nothing") << 500 << QByteArray() << QString();
        QTest::newRow("not UTF-8") << 500 << QByteArray("\xE9") << QString();
        QTest::newRow("a challenge") << 401 << QByteArray("{\"error\":\"no\"}") << u"no"_s;
        QTest::newRow("not modified") << 304 << QByteArray() << QString();
    }

    void aRefusalSaysWhy()
    {
        QFETCH(int, status);
        QFETCH(QByteArray, body);
        QFETCH(QString, text);
        for (const bool isNew : {false, true}) {
            init();
            const QString fallback = isNew ? u"Sign up failed."_s : u"Authentication failed."_s;
            QCOMPARE(m_visitor->signedIn(HttpAnswer::whole(200, "{\"access_token\":\"t\"}")),
                     QString());
            m_visitor->backend.clearSavedCredentials();
            m_seen.clear();
            const Session before = m_visitor->backend.session();
            m_visitor->server.answer(HttpAnswer::whole(status, body));
            const auto outcome = outcomeOf(isNew ? m_visitor->backend.signUp(u"a@b.fr"_s, u"p"_s)
                                                 : m_visitor->backend.signIn(u"a@b.fr"_s, u"p"_s));
            QVERIFY(outcome.errorAs<SupabaseError>() != nullptr);
            QCOMPARE(outcome.errorAs<SupabaseError>()->kind(), SupabaseError::Case::authError);
            QCOMPARE(outcome.failure(), text.isNull() ? fallback : text);
            QCOMPARE(m_visitor->backend.session(), before);
            QVERIFY(m_seen.isEmpty());
            QVERIFY(!m_visitor->remembered());
        }
    }

    void whatIsNoHttpIsNoRefusal()
    {
        for (const QString &fallback : {u"Authentication failed."_s, u"Sign up failed."_s}) {
            try {
                granted({std::nullopt, "{\"error\":\"e\"}"}, fallback);
                QFAIL("taken for a success");
            } catch (const SupabaseError &error) {
                QCOMPARE(error, SupabaseError::invalidResponse());
            }
        }
    }

    void aSuccessThatIsNoRecordLeavesTheSession_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::newRow("a user without an identifier")
            << QByteArray("{\"access_token\":\"new\",\"user\":{\"email\":\"e\"}}");
        QTest::newRow("a token that is a number") << QByteArray("{\"access_token\":1}");
        QTest::newRow("a list") << QByteArray("[]");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("a page") << QByteArray("<html></html>");
    }

    void aSuccessThatIsNoRecordLeavesTheSession()
    {
        QFETCH(QByteArray, body);
        const auto decoded = decodeAuthResponse(body);
        const auto *const error = std::get_if<DecodingError>(&decoded);
        QVERIFY(error != nullptr);
        for (const bool isNew : {false, true}) {
            init();
            QCOMPARE(m_visitor->signedIn(HttpAnswer::whole(200, "{\"access_token\":\"t\"}")),
                     QString());
            m_seen.clear();
            m_visitor->server.answer(HttpAnswer::whole(200, body));
            const auto outcome = outcomeOf(isNew ? m_visitor->backend.signUp(u"x"_s, u"y"_s)
                                                 : m_visitor->backend.signIn(u"x"_s, u"y"_s));
            QVERIFY(outcome.errorAs<UndecodableReply>() != nullptr);
            QCOMPARE(outcome.failure(), error->description);
            QCOMPARE(m_visitor->backend.session().accessToken, u"t"_s);
            QVERIFY(m_seen.isEmpty());
            QCOMPARE(m_visitor->remembered()->email, u" A@b.fr"_s);
        }
    }

    void aLostConnectionLeavesTheSession()
    {
        QCOMPARE(m_visitor->signedIn(HttpAnswer::whole(200, "{\"access_token\":\"t\"}")),
                 QString());
        m_seen.clear();
        m_visitor->server.answer(HttpAnswer::fin());
        const auto outcome = outcomeOf(m_visitor->backend.signIn(u"x"_s, u"y"_s));
        QVERIFY(outcome.errorAs<TransportError>() != nullptr);
        QCOMPARE(m_visitor->backend.session().accessToken, u"t"_s);
        QVERIFY(m_seen.isEmpty());
    }

    void aMissingConfigurationIsSaid()
    {
        LocalBackend unconfigured({});
        QCOMPARE(outcomeOf(unconfigured.signIn(u"a"_s, u"b"_s)).failure(),
                 u"Missing SUPABASE_URL or SUPABASE_KEY."_s);
        QCOMPARE(outcomeOf(unconfigured.signUp(u"a"_s, u"b"_s)).failure(),
                 u"Missing SUPABASE_URL or SUPABASE_KEY."_s);
    }
};

QTEST_GUILESS_MAIN(TestBackendRefusals)
#include "test_backend_refusals.moc"
