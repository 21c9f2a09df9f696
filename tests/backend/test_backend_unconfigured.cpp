// The program without any configuration.

#include "backend/SupabaseClient.h"
#include "model/Event.h"
#include "support/Await.h"

#include <QCoreApplication>
#include <QTest>

using namespace Qt::StringLiterals;

class TestBackendUnconfigured : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theFirstRequestSaysWhatIsMissing()
    {
        QCOMPARE(outcomeOf(SupabaseClient::fetchEvents()).failure(),
                 u"Missing SUPABASE_URL or SUPABASE_KEY."_s);
    }

    void aConfigurationThatComesLaterIsNotSeen()
    {
        outcomeOf(SupabaseClient::fetchEvents());
        qputenv("SUPABASE_URL", "http://127.0.0.1:1");
        qputenv("SUPABASE_KEY", "k");
        QCOMPARE(outcomeOf(SupabaseClient::fetchEvents()).failure(),
                 u"Missing SUPABASE_URL or SUPABASE_KEY."_s);
    }

    void nobodyIsSignedIn() { QCOMPARE(SupabaseClient::session(), Session()); }
};

int main(int argc, char **argv)
{
    qunsetenv("SUPABASE_URL");
    qunsetenv("SUPABASE_KEY");
    QCoreApplication application(argc, argv);
    const SupabaseClient::Lifetime client;
    TestBackendUnconfigured test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_backend_unconfigured.moc"
