// The sign-in form of an application that was not told where its service is.

#include "backend/SupabaseClient.h"
#include "look/Accessibility.h"
#include "support/LoginForm.h"

using namespace Qt::StringLiterals;

class TestLoginViewUnconfigured : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theReasonIsShownAndTheFormStaysUsable()
    {
        const LoginForm form;
        form.submit();
        QTRY_COMPARE(form.shownError(), u"Missing SUPABASE_URL or SUPABASE_KEY."_s);
        QVERIFY(form.isOpen());
        QVERIFY(form.primary()->isEnabled());
        QCOMPARE(form.email()->text(), u"a@b.fr"_s);
        QCOMPARE(form.password()->text(), u"secret"_s);
    }
};

int main(int argc, char *argv[])
{
    qunsetenv("SUPABASE_URL");
    qunsetenv("SUPABASE_KEY");
    const QApplication application(argc, argv);
    const SupabaseClient::Lifetime client;
    installAccessibility();
    TestLoginViewUnconfigured test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_login_view_unconfigured.moc"
