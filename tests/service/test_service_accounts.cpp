#include "support/LocalService.h"
#include "support/ServiceClient.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <cstring>

using namespace Qt::StringLiterals;

namespace {

QByteArray credentials(const QByteArray &email, const QByteArray &password)
{
    return "{\"email\":\"" + email + "\",\"password\":\"" + password + "\"}";
}

QJsonObject claimsOf(const QString &token)
{
    const QByteArray part = token.toLatin1().split('.').value(1);
    return QJsonDocument::fromJson(QByteArray::fromBase64(part, QByteArray::Base64UrlEncoding))
        .object();
}

QString text(const QJsonObject &object, const char *key)
{
    return object[QLatin1StringView(key)].toString();
}

} // namespace

class TestServiceAccounts : public QObject {
    Q_OBJECT

private:
    ServiceReply ask(LocalService &service, const QByteArray &verb, const QByteArray &operation,
                     const QByteArray &body = {}, const QString &token = {},
                     const Headers &more = {})
    {
        Headers headers{{"apikey", service.key().toLatin1()}, {"Content-Type", "application/json"}};
        headers += more;
        if (!token.isEmpty())
            headers += Headers{{"Authorization", "Bearer " + token.toLatin1()}};
        return exchange(service.url(), verb, "/auth/v1/" + operation, headers, body);
    }
    QJsonObject signedUp(LocalService &service, const QByteArray &email)
    {
        return ask(service, "POST", "signup", credentials(email, "motdepasse")).object();
    }
    ServiceReply signIn(LocalService &service, const QByteArray &email, const QByteArray &password)
    {
        return ask(service, "POST", "token?grant_type=password", credentials(email, password));
    }
    void compareBody(const ServiceReply &reply, int status, const QByteArray &body)
    {
        QCOMPARE(reply.body, body);
        QCOMPARE(reply.status, status);
        QCOMPARE(reply.header("Content-Type"), "application/json");
    }

    LocalService m_service{{u"--seed-password"_s, u"graine!"_s}};

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_service.isRunning()); }
    void cleanupTestCase() { QVERIFY2(m_service.stop(), qPrintable(m_service.output())); }

    void aLongAnswerIsPackedOnceAndAShortOneNotAtAll()
    {
        const Headers packed{{"Accept-Encoding", "gzip"}};
        const ServiceReply reply = ask(m_service, "POST", "signup",
                                       credentials("paul@test.example", "motdepasse"), {}, packed);
        QVERIFY2(reply.status == 200, reply.body);
        const auto isEncoding = [](const auto &header) {
            return header.first.compare("Content-Encoding", Qt::CaseInsensitive) == 0;
        };
        QCOMPARE(std::count_if(reply.headers.begin(), reply.headers.end(), isEncoding), 1);
        QCOMPARE(reply.header("Content-Encoding"), "gzip");
        // What it says of its own length is that of a session, not of a second wrapping.
        quint32 length = 0;
        memcpy(&length, reply.body.constData() + reply.body.size() - 4, 4);
        QVERIFY(length > static_cast<quint32>(reply.body.size()));

        const ServiceReply refused = ask(m_service, "POST", "token?grant_type=password",
                                         credentials("paul@test.example", "not it"), {}, packed);
        QCOMPARE(refused.header("Content-Encoding"), QByteArray());
        QVERIFY(!refused.object().isEmpty());
    }

    void aNewAccountIsSignedInAtOnce()
    {
        const ServiceReply reply =
            ask(m_service, "POST", "signup", credentials("Anne@Test.example", "motdepasse"));
        QVERIFY2(reply.status == 200, reply.body);
        const QJsonObject session = reply.object();
        QCOMPARE(text(session, "token_type"), u"bearer"_s);
        QCOMPARE(session[u"expires_in"_s].toInt(), 3600);
        QVERIFY(!text(session, "refresh_token").isEmpty());
        const QJsonObject user = session[u"user"_s].toObject();
        QCOMPARE(text(user, "email"), u"anne@test.example"_s);
        const QJsonObject claims = claimsOf(text(session, "access_token"));
        QCOMPARE(text(claims, "sub"), text(user, "id"));
        QCOMPARE(text(claims, "role"), u"authenticated"_s);
        QCOMPARE(text(claims, "email"), u"anne@test.example"_s);
        const qint64 rest = claims[u"exp"_s].toInteger() - QDateTime::currentSecsSinceEpoch();
        QVERIFY(rest > 3500 && rest <= 3600);
    }

    void anAccountSignsInHoweverItsAddressIsCapitalised()
    {
        const QJsonObject made = signedUp(m_service, "bruno@test.example");
        const ServiceReply reply = signIn(m_service, "Bruno@TEST.example", "motdepasse");
        QCOMPARE(reply.status, 200);
        QCOMPARE(reply.object()[u"user"_s][u"id"_s], made[u"user"_s][u"id"_s]);
    }

    void anAccountOfTheSeedSignsInAndOwnsItsEvents()
    {
        const ServiceReply reply = signIn(m_service, "camille@morvelle.example", "graine!");
        QVERIFY2(reply.status == 200, reply.body);
        const ServiceReply change = exchange(
            m_service.url(), "PATCH",
            "/rest/v1/events?id=eq.5eed0000-0000-4000-8000-000000000001&select=titre",
            {{"apikey", m_service.key().toLatin1()},
             {"Prefer", "return=representation"},
             {"Authorization", "Bearer " + text(reply.object(), "access_token").toLatin1()}},
            R"({"titre":"Nouveau titre"})");
        QCOMPARE(change.body, R"([{"titre":"Nouveau titre"}])");
    }

    void aRefusalIsExplained_data()
    {
        QTest::addColumn<QByteArray>("operation");
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("code");
        QTest::addColumn<QByteArray>("message");
        const auto row = [](const char *name, const QByteArray &operation, const QByteArray &body,
                            int status, const char *code, const char *message) {
            QTest::newRow(name) << operation << body << status << QByteArray(code)
                                << QByteArray(message);
        };
        const QByteArray signIn = "token?grant_type=password";
        signedUp(m_service, "chloe@test.example");
        row("wrong password", signIn, credentials("chloe@test.example", "autre"), 400,
            "invalid_credentials", "Invalid login credentials");
        row("unknown address", signIn, credentials("nobody@test.example", "motdepasse"), 400,
            "invalid_credentials", "Invalid login credentials");
        row("sign-in without an address", signIn, R"({"password":"motdepasse"})", 400,
            "validation_failed", "missing email or phone");
        row("no JSON", signIn, "email=x", 400, "bad_json", "Could not parse request body as JSON");
        row("no text", signIn, R"({"email":5})", 400, "bad_json",
            "Could not parse request body as JSON");
        row("unknown grant", "token?grant_type=magic", "{}", 400, "validation_failed",
            "unsupported_grant_type");
        row("taken address", "signup", credentials("CHLOE@test.example", "motdepasse"), 422,
            "user_already_exists", "User already registered");
        row("no password", "signup", R"({"email":"x@test.example"})", 400, "validation_failed",
            "Signup requires a valid password");
        row("long password", "signup", credentials("x@test.example", QByteArray(73, 'x')), 400,
            "validation_failed", "Password cannot be longer than 72 characters");
        const char *format = "Unable to validate email address: invalid format";
        for (const char *address :
             {"x", "@test.example", "x@", "x@test..example", "x@-test.example", "x y@test.example",
              "x@y@test.example", "é@test.example"}) {
            row(address, "signup", credentials(address, "motdepasse"), 400, "validation_failed",
                format);
        }
        row("long address", "signup",
            credentials(QByteArray(250, 'x') + "@test.example", "motdepasse"), 400,
            "validation_failed", "An email address is too long");
        row("a telephone", "signup", R"({"phone":"33600000000","password":"motdepasse"})", 400,
            "phone_provider_disabled", "Phone signups are disabled");
        row("no address", "signup", R"({"password":"motdepasse"})", 422,
            "anonymous_provider_disabled", "Anonymous sign-ins are disabled");
        row("nobody", "signup", "{}", 422, "anonymous_provider_disabled",
            "Anonymous sign-ins are disabled");
        row("unknown refresh token", "token?grant_type=refresh_token",
            R"({"refresh_token":"unknown"})", 400, "refresh_token_not_found",
            "Invalid Refresh Token: Refresh Token Not Found");
    }
    void aRefusalIsExplained()
    {
        QFETCH(QByteArray, operation);
        QFETCH(QByteArray, body);
        QFETCH(int, status);
        QFETCH(QByteArray, code);
        QFETCH(QByteArray, message);
        compareBody(ask(m_service, "POST", operation, body), status,
                    "{\"code\":" + QByteArray::number(status) + ",\"error_code\":\"" + code
                        + "\",\"msg\":\"" + message + "\"}");
    }

    void aWeakPasswordIsNamedAsSuch()
    {
        compareBody(
            ask(m_service, "POST", "signup", credentials("d@test.example", "12345")), 422,
            R"({"code":422,"error_code":"weak_password","msg":"Password should be at least )"
            R"(6 characters.","weak_password":{"reasons":["length"]}})");
        // Counted in bytes, as the hosted service does.
        QCOMPARE(ask(m_service, "POST", "signup", credentials("d@test.example", "ééé")).status,
                 200);
    }

    void anAddressNeedsNoDotAfterItsSign()
    {
        QCOMPARE(ask(m_service, "POST", "signup", credentials("x+y@village", "motdepasse")).status,
                 200);
    }

    void aRequestWithoutTheProjectsKeyIsTurnedAway()
    {
        const ServiceReply reply = exchange(m_service.url(), "POST", "/auth/v1/signup", {},
                                            credentials("e@test.example", "motdepasse"));
        QCOMPARE(reply.status, 401);
        QCOMPARE(text(reply.object(), "message"), u"No API key found in request"_s);
    }

    void anAccountIsShownToItsOwnerOnly()
    {
        const QJsonObject session = signedUp(m_service, "fanny@test.example");
        const ServiceReply shown = ask(m_service, "GET", "user", {}, text(session, "access_token"));
        QCOMPARE(shown.status, 200);
        QCOMPARE(shown.object(), session[u"user"_s].toObject());
        compareBody(
            ask(m_service, "GET", "user"), 401,
            R"({"code":401,"error_code":"no_authorization","msg":"This endpoint requires a )"
            R"(valid Bearer token"})");
        compareBody(ask(m_service, "GET", "user", {}, u"a.b.c"_s), 403,
                    R"({"code":403,"error_code":"bad_jwt","msg":"invalid JWT: unable to parse or )"
                    R"(verify signature, token signature is invalid: signature is invalid"})");
        compareBody(
            ask(m_service, "GET", "user", {}, m_service.key()), 403,
            R"({"code":403,"error_code":"bad_jwt","msg":"invalid claim: missing sub claim"})");
    }

    void aRefreshTokenServesOnce()
    {
        const QJsonObject session = signedUp(m_service, "gilles@test.example");
        const auto refresh = [&](const QJsonObject &from) {
            return ask(m_service, "POST", "token?grant_type=refresh_token",
                       "{\"refresh_token\":\"" + text(from, "refresh_token").toLatin1() + "\"}");
        };
        const ServiceReply second = refresh(session);
        QVERIFY2(second.status == 200, second.body);
        QCOMPARE(claimsOf(text(second.object(), "access_token"))[u"sub"_s],
                 session[u"user"_s][u"id"_s]);
        const ServiceReply reused = refresh(session);
        QCOMPARE(reused.status, 400);
        QCOMPARE(text(reused.object(), "error_code"), u"refresh_token_already_used"_s);
        QCOMPARE(refresh(second.object()).status, 400);
    }

    void signingOutEndsTheSession()
    {
        const QJsonObject session = signedUp(m_service, "helene@test.example");
        const QJsonObject other = signIn(m_service, "helene@test.example", "motdepasse").object();
        const auto isOpen = [&](const QJsonObject &which) {
            return ask(m_service, "GET", "user", {}, text(which, "access_token")).status == 200;
        };
        QCOMPARE(
            ask(m_service, "POST", "logout?scope=local", {}, text(session, "access_token")).status,
            204);
        QVERIFY(!isOpen(session));
        QVERIFY(isOpen(other));
        QCOMPARE(ask(m_service, "POST", "logout", {}, text(other, "access_token")).status, 204);
        QVERIFY(!isOpen(other));
    }

    void anAccountIsKeptBetweenRuns()
    {
        const QJsonObject session = signedUp(m_service, "ines@test.example");
        m_service.kill();
        QVERIFY(m_service.start());
        QCOMPARE(signIn(m_service, "ines@test.example", "motdepasse").status, 200);
        QCOMPARE(ask(m_service, "GET", "user", {}, text(session, "access_token")).status, 200);
    }

    void noPasswordIsKeptOrLogged()
    {
        signedUp(m_service, "jules@test.example");
        const QDir folder(m_service.dataFolder());
        QProcess search;
        search.start(u"grep"_s,
                     {u"-rlaE"_s, u"motdepasse|graine!"_s, folder.filePath(u"cluster"_s),
                      folder.filePath(u"postgres.log"_s)});
        QVERIFY(search.waitForFinished());
        QCOMPARE(QString::fromLocal8Bit(search.readAll()), QString());
        QVERIFY(m_service.output().contains(u"POST /auth/v1/signup 200 "));
        QVERIFY(!m_service.output().contains(u"motdepasse"));
    }

    void anAddressIsConfirmedBeforeTheFirstSignIn()
    {
        LocalService service({u"--confirm-email"_s});
        const QByteArray email = "karim@test.example";
        const QJsonObject user = signedUp(service, email);
        QVERIFY(!user.contains(u"access_token"_s));
        QCOMPARE(text(user, "email"), QString::fromLatin1(email));
        QVERIFY(user.contains(u"confirmation_sent_at"_s));
        compareBody(
            signIn(service, email, "motdepasse"), 400,
            R"({"code":400,"error_code":"email_not_confirmed","msg":"Email not confirmed"})");

        const QDir outbox(service.dataFolder() + u"/outbox"_s);
        QCOMPARE(outbox.entryList(QDir::Files).size(), 1);
        QFile mail(outbox.filePath(outbox.entryList(QDir::Files).first()));
        QVERIFY(mail.open(QIODevice::ReadOnly));
        const QString link = QRegularExpression(u"/auth/v1/verify\\?\\S+"_s)
                                 .match(QString::fromUtf8(mail.readAll()))
                                 .captured();
        QCOMPARE(exchange(service.url(), "GET", link.toLatin1()).status, 200);
        QCOMPARE(signIn(service, email, "motdepasse").status, 200);
        QCOMPARE(exchange(service.url(), "GET", link.toLatin1()).status, 403);
        QVERIFY(!service.output().contains(link.section(u"token="_s, 1)));

        // Who has an account already gets a reply that does not tell so.
        const QJsonObject again = signedUp(service, email);
        QVERIFY(text(again, "id") != text(user, "id"));
        QVERIFY(again[u"identities"_s].toArray().isEmpty());
        QVERIFY(!again.contains(u"email_confirmed_at"_s));
        QVERIFY(service.stop());
    }

    void theOlderShapeOfErrorsIsSpokenOnRequest()
    {
        LocalService service({u"--auth-errors"_s, u"older"_s, u"--token-seconds"_s, u"1"_s});
        compareBody(signIn(service, "nobody@test.example", "motdepasse"), 400,
                    R"({"error":"invalid_grant","error_description":"Invalid login credentials"})");
        const QJsonObject session = signedUp(service, "lea@test.example");
        compareBody(ask(service, "POST", "signup", credentials("lea@test.example", "motdepasse")),
                    422, R"({"code":422,"msg":"User already registered"})");

        // The token of this one second is refused as soon as it is over.
        const Headers headers{
            {"apikey", service.key().toLatin1()},
            {"Authorization", "Bearer " + text(session, "access_token").toLatin1()}};
        QTRY_COMPARE(exchange(service.url(), "GET", "/rest/v1/events?limit=1", headers).status,
                     401);
        const ServiceReply late =
            exchange(service.url(), "POST", "/rest/v1/events", headers, R"({"titre":"X"})");
        QCOMPARE(late.body,
                 R"({"code":"PGRST303","details":null,"hint":null,"message":"JWT expired"})");
        QVERIFY(service.stop());
    }

    void tooManyTriesAreSlowedDown()
    {
        LocalService service({u"--rate-limit"_s, u"3"_s});
        for (int attempt = 0; attempt < 3; ++attempt)
            QCOMPARE(signIn(service, "nobody@test.example", "motdepasse").status, 400);
        compareBody(
            signIn(service, "nobody@test.example", "motdepasse"), 429,
            R"({"code":429,"error_code":"over_request_rate_limit","msg":"Request rate limit reached"})");
        QVERIFY(service.stop());
    }
};

QTEST_GUILESS_MAIN(TestServiceAccounts)
#include "test_service_accounts.moc"
