// The sign-in form of an application that was not told where its service is.

#include "controls/Accessibility.h"
#include "support/LoginForm.h"

class TestLoginViewUnconfigured : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theReasonIsShownAndTheFormStaysUsable()
    {
        const LoginForm form;
        form.submit();
        QTRY_COMPARE(form.shownError(), QStringLiteral("Missing SUPABASE_URL or SUPABASE_KEY."));
        QVERIFY(form.isOpen());
        QVERIFY(form.primary()->isEnabled());
        QCOMPARE(form.email()->text(), QStringLiteral("a@b.fr"));
        QCOMPARE(form.password()->text(), QStringLiteral("secret"));
    }
};

int main(int argc, char *argv[])
{
    qunsetenv("SUPABASE_URL");
    qunsetenv("SUPABASE_KEY");
    const QApplication application(argc, argv);
    installAccessibility();
    TestLoginViewUnconfigured test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_login_view_unconfigured.moc"
