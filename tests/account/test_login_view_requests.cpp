// The sign-in form and the service: what is sent, how often, and what each answer does to the form.

#include "account/CredentialsStore.h"
#include "backend/SupabaseClient.h"
#include "look/Accessibility.h"
#include "look/Colors.h"
#include "look/Fonts.h"
#include "support/EventLoopChecker.h"
#include "support/HttpServer.h"
#include "support/LoginForm.h"
#include "support/Picture.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {

const QString creation = u"Créer un compte"_s;

HttpAnswer granting()
{
    return HttpAnswer::whole(200, R"({"access_token":"jeton","user":{"id":"moi"}})");
}

HttpAnswer refusing()
{
    return HttpAnswer::whole(
        400, R"({"error":"invalid_grant","error_description":"Invalid login credentials"})");
}

const QString refusal = u"Invalid login credentials"_s;

QList<QObject *> alerts;

void note(QAccessibleEvent *event)
{
    if (event->type() == QAccessible::ObjectShow && event->accessibleInterface()
        && event->accessibleInterface()->role() == QAccessible::AlertMessage)
        alerts.append(event->object());
}

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
        m_before = m_server.requests().size();
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
        QCOMPARE(sent(), 1);
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
        QCOMPARE(request().method, "POST");
        QCOMPARE(request().target, target);
    }

    void aModeChosenInTheFormCounts()
    {
        const LoginForm form(AuthMode::signIn);
        QTest::mouseClick(form.segment(creation), Qt::LeftButton);
        form.submit();
        QTRY_VERIFY(!form.isOpen());
        QCOMPARE(request().target, "/auth/v1/signup");
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
        const auto body = QJsonDocument::fromJson(request().body).object();
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
        QCOMPARE(sent(), 1);
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
        QCOMPARE(sent(), 1);
    }

    void aDoubleClickSendsOneRequest()
    {
        m_server.answer(granting().late(50));
        const LoginForm form;
        form.type(u"a@b.fr"_s, u"secret"_s);
        const QPoint place = form.primary()->mapTo(form.view.data(), QPoint(20, 10));
        QTest::mouseDClick(form.view->windowHandle(), Qt::LeftButton, {}, place);
        QTRY_VERIFY(!form.isOpen());
        QCOMPARE(sent(), 1);
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
        QCOMPARE(sent(), 1);
    }

    void theWindowStaysAliveWhileTheServiceThinks()
    {
        m_server.answer(granting().late(100));
        const LoginForm form;
        form.submit();
        QTRY_COMPARE(sent(), 1);
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

    void aRefusalKeepsBothTextsAndShowsTheReason_data()
    {
        QTest::addColumn<bool>("createsAccount");
        QTest::addColumn<HttpAnswer>("answer");
        QTest::addColumn<QString>("reason");
        const auto current = HttpAnswer::whole(
            400, R"({"code":400,"error_code":"invalid_credentials","msg":"Invalid"})");
        QTest::newRow("older shape") << false << refusing() << refusal;
        QTest::newRow("older shape, no description")
            << false << HttpAnswer::whole(400, R"({"error":"invalid_grant"})")
            << u"invalid_grant"_s;
        QTest::newRow("current shape") << false << current << u"Authentication failed."_s;
        QTest::newRow("current shape, sign up") << true << current << u"Sign up failed."_s;
        QTest::newRow("plain text")
            << false << HttpAnswer::whole(429, "Too many requests") << u"Too many requests"_s;
        QTest::newRow("nothing") << false << HttpAnswer::whole(500, {})
                                 << u"Authentication failed."_s;
        QTest::newRow("late") << false << refusing().late(100) << refusal;
        QTest::newRow("markup") << true
                                << HttpAnswer::whole(400, "<b>non</b> &amp; <a href='x'>y</a>")
                                << u"<b>non</b> &amp; <a href='x'>y</a>"_s;
    }

    void aRefusalKeepsBothTextsAndShowsTheReason()
    {
        QFETCH(bool, createsAccount);
        QFETCH(HttpAnswer, answer);
        QFETCH(QString, reason);
        m_server.answer(answer);
        const LoginForm form(createsAccount ? AuthMode::signUp : AuthMode::signIn);
        form.submit();
        QTRY_COMPARE(form.shownError(), reason);
        QVERIFY(form.isOpen());
        QCOMPARE(form.email()->text(), u"a@b.fr"_s);
        QCOMPARE(form.password()->text(), u"secret"_s);
        QVERIFY(form.primary()->isEnabled());
        QCOMPARE(form.segment(creation)->isChecked(), createsAccount);
        QVERIFY(!CredentialsStore::loadCredentials());
        QVERIFY(!SupabaseClient::session().accessToken);
        QCOMPARE(sent(), 1);
    }

    void aWrongAnswerIsToldAndChangesNothing()
    {
        m_server.answer(HttpAnswer::whole(200, R"({"access_token":"t","user":{}})"));
        const LoginForm form;
        form.submit();
        QTRY_VERIFY(!form.shownError().isEmpty());
        QVERIFY(!SupabaseClient::session().accessToken);
        QVERIFY(form.primary()->isEnabled());
    }

    void anAccountToBeConfirmedIsToldAndTheFormStays()
    {
        m_server.answer(HttpAnswer::whole(200, R"({"user":{"id":"moi"}})"));
        const LoginForm form(AuthMode::signUp);
        form.submit();
        QTRY_COMPARE(form.shownError(),
                     u"Compte créé. Vérifiez votre email pour confirmer la connexion."_s);
        QVERIFY(form.segment(creation)->isChecked());
        QCOMPARE(form.primary()->label(), creation);
        QVERIFY(!CredentialsStore::loadCredentials());
    }

    void theReasonIsRed()
    {
        for (const auto scheme : {ColorScheme::Light, ColorScheme::Dark}) {
            QApplication::setPalette(applicationPalette(scheme));
            m_server.answer(refusing());
            const LoginForm form;
            form.submit();
            QTRY_COMPARE(form.shownError(), refusal);
            QVERIFY(hasColor(*form.error(), red(applicationPalette(scheme))));
        }
    }

    void theReasonStandsBetweenThePasswordAndTheButtons()
    {
        m_server.answer(refusing());
        const LoginForm form;
        const int before = form.view->card().height();
        form.submit();
        QTRY_COMPARE(form.view->card().height(), before + lineHeight(appFont(13)) + 12);
        const auto top = [&form](const QWidget *widget) {
            return widget->mapTo(form.view.data(), QPoint()).y();
        };
        QCOMPARE(top(form.error()), top(form.password()) + form.password()->height() + 12);
        QCOMPARE(top(form.cancel()), top(form.error()) + form.error()->height() + 12);
    }

    void theNextPressClearsTheReasonFirst()
    {
        m_server.answerInTurn({refusing(), granting().late(50)});
        const LoginForm form;
        const int before = form.view->card().height();
        form.submit();
        QTRY_COMPARE(form.shownError(), refusal);
        form.press();
        QCOMPARE(form.shownError(), QString());
        QTRY_COMPARE(form.view->card().height(), before);
        QTRY_VERIFY(!form.isOpen());
    }

    void theReasonIsSpokenEachTime()
    {
        // Announcements begin some time after the program, and never without a display.
        const bool offscreen = QGuiApplication::platformName() == u"offscreen"_s;
        if (offscreen || !QTest::qWaitFor([] { return QAccessible::isActive(); }))
            QSKIP("needs a display and QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1");
        m_server.answer(refusing());
        const LoginForm form;
        const auto before = QAccessible::installUpdateHandler(note);
        alerts.clear();
        form.submit();
        QTRY_COMPARE(form.shownError(), refusal);
        QVERIFY(alerts.contains(form.error()));
        QCOMPARE(QAccessible::queryAccessibleInterface(form.error())->text(QAccessible::Name),
                 refusal);
        // The same reason again is news again.
        alerts.clear();
        form.press();
        QTRY_COMPARE(form.shownError(), refusal);
        QAccessible::installUpdateHandler(before);
        QVERIFY(alerts.contains(form.error()));
    }

    void aLongReasonScrollsWithinFourLines()
    {
        const QByteArray reason = QByteArray("mot ").repeated(5000);
        m_server.answer(HttpAnswer::whole(400, reason));
        const LoginForm form;
        form.submit();
        QTRY_VERIFY(!form.shownError().isEmpty());
        QTRY_COMPARE(form.error()->height(), 4 * lineHeight(appFont(13)));
        QVERIFY(form.primary()->isVisible());
        QVERIFY(form.view->card().height() < 400);
    }

    void aReasonOfOneLongWordWraps()
    {
        m_server.answer(HttpAnswer::whole(400, QByteArray(100, 'x')));
        const LoginForm form;
        form.submit();
        QTRY_COMPARE(form.error()->width(), 320);
        QTRY_VERIFY(form.error()->height() >= 2 * lineHeight(appFont(13)));
    }

    void aRefusalLeavesTheKeyboardOnTheButton()
    {
        m_server.answer(refusing().late(20));
        const LoginForm form;
        form.type(u"a@b.fr"_s, u"secret"_s);
        QTRY_VERIFY(form.email()->hasFocus());
        form.primary()->setFocus(Qt::TabFocusReason);
        QTest::keyClick(form.primary(), Qt::Key_Space);
        // Nothing else is pressed by an impatient key meanwhile.
        QTest::keyClick(form.view->windowHandle(), Qt::Key_Space);
        QVERIFY(form.isOpen());
        QTRY_COMPARE(form.shownError(), refusal);
        QVERIFY(form.primary()->hasFocus());
        const QPoint ring = form.primary()->mapTo(form.view.data(), QPoint(20, -2));
        COMPARE_COLORS(picture(*form.view).pixelColor(ring), accentInk(form.view->palette()));
        QCOMPARE(sent(), 1);
    }

    void aRefusalDoesNotTakeTheKeyboardFromWhereThePersonWent()
    {
        m_server.answer(refusing().late(20));
        const LoginForm form;
        form.submit();
        form.password()->setFocus(Qt::MouseFocusReason);
        QTRY_COMPARE(form.shownError(), refusal);
        QVERIFY(form.password()->hasFocus());
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
        QCOMPARE(request().target, "/auth/v1/signup");
        QCOMPARE(form.primary()->label(), u"Se connecter"_s);
        QCOMPARE(sent(), 1);
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
        QCOMPARE(sent(), 0);
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
        QCOMPARE(sent(), 1);
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
        QCOMPARE(sent(), 1);
    }

    void escapeInFlightDoesNotLoseWhatWasTyped()
    {
        m_server.answer(refusing().late(20));
        const LoginForm form;
        form.submit();
        QTest::keyClick(form.view, Qt::Key_Escape);
        QVERIFY(form.isOpen());
        QTRY_COMPARE(form.shownError(), refusal);
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
        QCOMPARE(sent(), 1);
    }

    // The last two: nobody is behind the service's port any more, then somebody who hangs up.
    void aServiceThatIsNotThereIsTold()
    {
        m_server.close();
        const LoginForm form;
        form.submit();
        QTRY_VERIFY(!form.shownError().isEmpty());
        QVERIFY(form.primary()->isEnabled());
        QCOMPARE(sent(), 0);
    }

    void aConnectionLostBeforeReadingIsToldAndNothingIsSentAgain()
    {
        m_server.close();
        QTcpServer deaf;
        QVERIFY(deaf.listen(QHostAddress::LocalHost, m_port));
        int calls = 0;
        connect(&deaf, &QTcpServer::newConnection, this, [&] {
            ++calls;
            QTcpSocket *caller = deaf.nextPendingConnection();
            caller->abort();
            caller->deleteLater();
        });
        const LoginForm form;
        form.submit();
        QTRY_VERIFY(!form.shownError().isEmpty());
        QVERIFY(form.primary()->isEnabled());
        QTest::qWait(30);
        QCOMPARE(calls, 1);
    }

private:
    int sent() const { return static_cast<int>(m_server.requests().size() - m_before); }
    const HttpRequest &request() const { return m_server.requests().at(m_before); }

    static bool hasColor(QWidget &widget, const QColor &color)
    {
        const QImage image = picture(widget, 2);
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (alike(image.pixelColor(x, y), color))
                    return true;
            }
        }
        return false;
    }

    HttpServer &m_server;
    const quint16 m_port = m_server.port();
    qsizetype m_before = 0;
};

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    installAccessibility();
    const QTemporaryDir folder;
    HttpServer server;
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(folder.path()));
    qputenv("SUPABASE_URL", server.base().toLatin1());
    qputenv("SUPABASE_KEY", "public-key");
    TestLoginViewRequests test(server);
    const int result = QTest::qExec(&test, argc, argv);
    server.hangUp();
    return result;
}

#include "test_login_view_requests.moc"
