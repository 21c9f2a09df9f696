// The sign-in form when the service refuses: what it says and where, and what stays as it was.

#include "account/CredentialsStore.h"
#include "backend/SupabaseClient.h"
#include "look/Colors.h"
#include "look/Fonts.h"
#include "support/Announcements.h"
#include "support/HttpServer.h"
#include "support/LoginForm.h"
#include "support/Picture.h"
#include "support/Sent.h"
#include "support/ViewMain.h"

using namespace Qt::StringLiterals;

namespace {

const QString creation = u"Créer un compte"_s;

} // namespace

class TestLoginViewRefusals : public QObject {
    Q_OBJECT

public:
    explicit TestLoginViewRefusals(HttpServer &server)
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
        QCOMPARE(m_sent.count(), 1);
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
            QVERIFY(hasColor(picture(*form.error(), 2), red(applicationPalette(scheme))));
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
        if (!Announcements::areMade())
            QSKIP("needs a display and QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1");
        m_server.answer(refusing());
        const LoginForm form;
        QCOMPARE(read(form.error())->role(), QAccessible::Notification);
        const Announcements told;
        form.submit();
        QTRY_COMPARE(form.shownError(), refusal);
        QVERIFY(told.contains(QAccessible::ObjectShow, form.error()));
        QCOMPARE(read(form.error())->text(QAccessible::Name), refusal);
        // The same reason again is news again.
        Announcements::forget();
        form.press();
        QTRY_COMPARE(form.shownError(), refusal);
        QVERIFY(told.contains(QAccessible::ObjectShow, form.error()));
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
        QTest::keyClick(form.window.windowHandle(), Qt::Key_Space);
        QVERIFY(form.isOpen());
        QTRY_COMPARE(form.shownError(), refusal);
        QVERIFY(form.primary()->hasFocus());
        const QPoint ring = form.primary()->mapTo(form.view.data(), QPoint(20, -2));
        COMPARE_COLORS(picture(*form.view).pixelColor(ring), accentInk(form.view->palette()));
        QCOMPARE(m_sent.count(), 1);
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

    void escapeInFlightDoesNotLoseWhatWasTyped()
    {
        m_server.answer(refusing().late(20));
        const LoginForm form;
        form.submit();
        QTest::keyClick(form.view, Qt::Key_Escape);
        QVERIFY(form.isOpen());
        QTRY_COMPARE(form.shownError(), refusal);
    }

private:
    HttpServer &m_server;
    Sent m_sent{m_server};
};

int main(int argc, char *argv[])
{
    return runWithService<TestLoginViewRefusals>(argc, argv);
}

#include "test_login_view_refusals.moc"
