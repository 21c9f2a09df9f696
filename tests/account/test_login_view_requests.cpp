// The sign-in form and the service: what is sent and how often, also when the form is closed or the
// connection lost meanwhile. How a refusal is shown is in test_login_view_refusals.cpp.

#include "account/CredentialsStore.h"
#include "backend/SupabaseClient.h"
#include "look/Colors.h"
#include "support/EventLoopChecker.h"
#include "support/HttpServer.h"
#include "support/LoginForm.h"
#include "support/Sent.h"
#include "support/ViewMain.h"

#include <QJsonObject>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>

#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QString creation = u"Créer un compte"_s;

} // namespace

class TestLoginViewRequests : public QObject {
    Q_OBJECT

public:
    explicit TestLoginViewRequests(HttpServer &server)
        : m_server(server)
    {
    }

private Q_SLOTS:
    void init()
    {
        QApplication::setPalette(applicationPalette(ColorScheme::Light));
        SupabaseClient::signOut();
        SupabaseClient::clearSavedCredentials();
        m_server.answer(granting());
        m_sent = Sent(m_server);
    }

    void aSuccessClosesTheForm()
    {
        const LoginForm form;
        const QSignalSpy closed(form.view, &Sheet::closed);
        form.submit();
        QTRY_VERIFY(!form.isOpen());
        QCOMPARE(closed.count(), 1);
        QCOMPARE(SupabaseClient::session().accessToken, u"jeton"_s);
        QCOMPARE(CredentialsStore::loadCredentials(), (Credentials{u"a@b.fr"_s, u"secret"_s}));
        QCOMPARE(m_sent.count(), 1);
    }

    void aSuccessWithoutASessionClosesASignInToo()
    {
        m_server.answer(HttpAnswer::whole(200, "{}"));
        const LoginForm form;
        form.submit();
        QTRY_VERIFY(!form.isOpen());
        QVERIFY(!SupabaseClient::session().accessToken);
    }

    void theModeSaysWhatIsAsked_data()
    {
        QTest::addColumn<bool>("createsAccount");
        QTest::addColumn<QByteArray>("target");
        QTest::newRow("sign in") << false << QByteArray("/auth/v1/token?grant_type=password");
        QTest::newRow("sign up") << true << QByteArray("/auth/v1/signup");
    }

    void theModeSaysWhatIsAsked()
    {
        QFETCH(bool, createsAccount);
        QFETCH(QByteArray, target);
        const LoginForm form(createsAccount ? AuthMode::signUp : AuthMode::signIn);
        form.submit();
        QTRY_VERIFY(!form.isOpen());
        QCOMPARE(m_sent.request().method, "POST");
        QCOMPARE(m_sent.request().target, target);
    }

    void aModeChosenInTheFormCounts()
    {
        const LoginForm form(AuthMode::signIn);
        QTest::mouseClick(form.segment(creation), Qt::LeftButton);
        form.submit();
        QTRY_VERIFY(!form.isOpen());
        QCOMPARE(m_sent.request().target, "/auth/v1/signup");
    }

    void whatWasTypedIsSentLetterByLetter_data()
    {
        QTest::addColumn<QString>("email");
        QTest::addColumn<QString>("password");
        QTest::newRow("a blank in each") << u" "_s << u" "_s;
        QTest::newRow("blanks around") << u"  A@B.fr "_s << u"\u00A0 mot de passe \u00A0"_s;
        QTest::newRow("quotes and backslashes") << uR"("a\b"@c.fr)"_s << uR"(\"\\u0041&<b>)"_s;
        QTest::newRow("beyond ASCII") << u"élodie@été.fr"_s << u"пароль\U0001F511e\u0301"_s;
    }

    void whatWasTypedIsSentLetterByLetter()
    {
        QFETCH(QString, email);
        QFETCH(QString, password);
        const LoginForm form;
        // Pasted: a key event holds one letter of the keyboard's.
        form.email()->insert(email);
        form.password()->insert(password);
        form.press();
        QTRY_VERIFY(!form.isOpen());
        const auto body = m_sent.body();
        QCOMPARE(body.value(u"email"_s).toString(), email);
        QCOMPARE(body.value(u"password"_s).toString(), password);
        QCOMPARE(body.size(), 2);
        QCOMPARE(CredentialsStore::loadCredentials(), (Credentials{email, password}));
    }

    void spaceAndReturnPressTheFocusedButton_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::newRow("Space") << Qt::Key_Space;
        QTest::newRow("Return") << Qt::Key_Return;
    }

    void spaceAndReturnPressTheFocusedButton()
    {
        QFETCH(Qt::Key, key);
        const LoginForm form;
        form.type(u"a@b.fr"_s, u"secret"_s);
        form.primary()->setFocus(Qt::TabFocusReason);
        QTest::keyClick(form.primary(), key);
        QTRY_VERIFY(!form.isOpen());
        QCOMPARE(m_sent.count(), 1);
    }

    void pressingTwiceSendsOneRequest()
    {
        m_server.answer(granting().late(50));
        const LoginForm form;
        form.submit();
        QVERIFY(!form.primary()->isEnabled());
        form.press();
        QTest::keyClick(form.primary(), Qt::Key_Space);
        QTRY_VERIFY(!form.isOpen());
        QCOMPARE(m_sent.count(), 1);
    }

    void aDoubleClickSendsOneRequest()
    {
        m_server.answer(granting().late(50));
        const LoginForm form;
        form.type(u"a@b.fr"_s, u"secret"_s);
        const QPoint place = form.primary()->mapTo(form.view.data(), QPoint(20, 10));
        QTest::mouseDClick(form.window.windowHandle(), Qt::LeftButton, {}, place);
        QTRY_VERIFY(!form.isOpen());
        QCOMPARE(m_sent.count(), 1);
    }

    void returnInAFieldSendsNothing()
    {
        const LoginForm form;
        form.type(u"a@b.fr"_s, u"secret"_s);
        QTest::keyClick(form.email(), Qt::Key_Return);
        QTest::keyClick(form.password(), Qt::Key_Return);
        QVERIFY(form.primary()->isEnabled());
        // The one request is the one pressed for.
        form.press();
        QTRY_VERIFY(!form.isOpen());
        QCOMPARE(m_sent.count(), 1);
    }

    void theWindowStaysAliveWhileTheServiceThinks()
    {
        m_server.answer(granting().late(100));
        const LoginForm form;
        form.submit();
        QTRY_COMPARE(m_sent.count(), 1);
        const EventLoopChecker loop;
        QTest::keyClicks(form.email(), u"x"_s);
        QCOMPARE(form.email()->text(), u"a@b.frx"_s);
        QVERIFY(!form.primary()->isEnabled());
        QVERIFY(form.cancel()->isEnabled());
        QTRY_VERIFY(!form.isOpen());
        QVERIFY(loop.ticks() > 10);
        // What was typed after the press is not what was sent.
        QCOMPARE(CredentialsStore::loadCredentials()->email, u"a@b.fr"_s);
    }

    void changingTheModeInFlightChangesTheButtonAndNothingElse()
    {
        m_server.answer(HttpAnswer::whole(200, R"({"user":{"id":"moi"}})").late(50));
        const LoginForm form(AuthMode::signUp);
        form.submit();
        QTest::mouseClick(form.segment(u"Connexion"_s), Qt::LeftButton);
        QCOMPARE(form.primary()->label(), u"Se connecter"_s);
        QVERIFY(!form.primary()->isEnabled());
        // Answered as the sign-up that it was.
        QTRY_VERIFY(form.shownError().startsWith(u"Compte créé."_s));
        QCOMPARE(m_sent.request().target, "/auth/v1/signup");
        QCOMPARE(form.primary()->label(), u"Se connecter"_s);
        QCOMPARE(m_sent.count(), 1);
    }

    void cancelSendsNothingAndForgetsNothing()
    {
        const Credentials remembered{u"a@b.fr"_s, u"p"_s};
        CredentialsStore::save(remembered);
        const LoginForm form;
        form.type(u"c@d.fr"_s, u"q"_s);
        QTest::mouseClick(form.cancel(), Qt::LeftButton);
        QVERIFY(!form.isOpen());
        QCOMPARE(CredentialsStore::loadCredentials(), remembered);
        QCOMPARE(m_sent.count(), 0);
    }

    void cancelClosesAtOnceAndLetsTheRequestGoOn()
    {
        m_server.answer(granting().late(50));
        const LoginForm form;
        const QSignalSpy closed(form.view, &Sheet::closed);
        form.submit();
        QTest::mouseClick(form.cancel(), Qt::LeftButton);
        QVERIFY(!form.isOpen());
        QTRY_COMPARE(SupabaseClient::session().accessToken, u"jeton"_s);
        QTRY_VERIFY(CredentialsStore::loadCredentials());
        QCOMPARE(closed.count(), 1);
        QCOMPARE(m_sent.count(), 1);
    }

    void aClosedFormIsLeftAsItWas()
    {
        m_server.answer(refusing().late(20));
        const LoginForm form;
        form.submit();
        QTest::mouseClick(form.cancel(), Qt::LeftButton);
        QSignalSpy answered(&m_server, &HttpServer::answered);
        QVERIFY(answered.wait());
        // A second exchange is over after the first one was.
        const LoginForm other;
        other.submit();
        QTRY_COMPARE(other.shownError(), refusal);
        QCOMPARE(form.error()->text(), QString());
        QVERIFY(!form.isOpen());
    }

    void aFormThatIsGoneIsNotMissed()
    {
        m_server.answer(refusing().late(20));
        const LoginForm form;
        form.submit();
        delete form.view;
        QSignalSpy answered(&m_server, &HttpServer::answered);
        QVERIFY(answered.wait());
        const LoginForm other;
        other.submit();
        QTRY_COMPARE(other.shownError(), refusal);
    }

    void aWindowThatIsGoneLetsTheRequestGoOn()
    {
        m_server.answer(granting().late(20));
        auto form = std::make_unique<LoginForm>();
        form->submit();
        form.reset();
        QTRY_COMPARE(SupabaseClient::session().accessToken, u"jeton"_s);
        QCOMPARE(m_sent.count(), 1);
    }

    void aLostConnectionIsToldAndNothingIsSentAgain_data()
    {
        QTest::addColumn<HttpAnswer>("answer");
        QTest::newRow("ended after reading") << HttpAnswer::fin();
        QTest::newRow("torn down after reading") << HttpAnswer::rst();
        QTest::newRow("ended later") << HttpAnswer::fin().late(50);
        QTest::newRow("ended in the head") << HttpAnswer::raw("HTTP/1.1 200 OK\r\nCon").thenFin();
        QTest::newRow("ended in the body") << HttpAnswer::cut(200, "{", 99);
        QTest::newRow("no HTTP") << HttpAnswer::raw("%\r\n\r\n").thenFin();
    }

    void aLostConnectionIsToldAndNothingIsSentAgain()
    {
        QFETCH(HttpAnswer, answer);
        m_server.answer(answer);
        const LoginForm form;
        form.submit();
        QTRY_COMPARE(form.shownError(),
                     u"The connection was lost before the reply was complete."_s);
        QVERIFY(form.isOpen());
        QVERIFY(form.primary()->isEnabled());
        QVERIFY(!SupabaseClient::session().accessToken);
        // Long enough for a repetition to arrive.
        QTest::qWait(30);
        QCOMPARE(m_sent.count(), 1);
    }

    // The last two: nobody is behind the service's port any more, then somebody who hangs up.
    void aServiceThatIsNotThereIsTold()
    {
        m_server.close();
        const LoginForm form;
        form.submit();
        QTRY_VERIFY(!form.shownError().isEmpty());
        QVERIFY(form.primary()->isEnabled());
        QCOMPARE(m_sent.count(), 0);
    }

    void aConnectionLostBeforeReadingIsToldAndNothingIsSentAgain()
    {
        m_server.close();
        QTcpServer deaf;
        QVERIFY(deaf.listen(QHostAddress::LocalHost, m_port));
        // The first caller is hung up on; who calls again is listened to.
        QByteArray heardAgain;
        bool isHungUp = false;
        connect(&deaf, &QTcpServer::newConnection, this, [&] {
            QTcpSocket *caller = deaf.nextPendingConnection();
            if (std::exchange(isHungUp, true)) {
                connect(caller, &QTcpSocket::readyRead, this,
                        [&heardAgain, caller] { heardAgain += caller->readAll(); });
                return;
            }
            caller->abort();
            caller->deleteLater();
        });
        const LoginForm form;
        form.submit();
        QTRY_VERIFY(!form.shownError().isEmpty());
        QVERIFY(form.primary()->isEnabled());
        // Newer toolkits connect again before they find that they cannot ask again.
        QTest::qWait(30);
        QCOMPARE(heardAgain, QByteArray());
    }

private:
    HttpServer &m_server;
    const quint16 m_port = m_server.port();
    Sent m_sent{m_server};
};

int main(int argc, char *argv[])
{
    return runWithService<TestLoginViewRequests>(argc, argv);
}

#include "test_login_view_requests.moc"
