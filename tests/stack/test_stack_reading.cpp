#include "backend/SupabaseClient.h"
#include "support/LocalService.h"
#include "support/OwnHome.h"
#include "support/WindowTest.h"

#include "browse/EventRow.h"

#include <QApplication>

using namespace Qt::StringLiterals;

using namespace WindowTest;

/// The real window on the local service and its real database.
class TestStackReading : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theVillagesEventsComeOutOfTheDatabaseIntoTwoTabs();
};

void TestStackReading::theVillagesEventsComeOutOfTheDatabaseIntoTwoTabs()
{
    const auto window = shownWindow();
    const auto rows = [&] {
        QList<EventRow *> visible;
        const auto all = window->findChildren<EventRow *>();
        for (EventRow *row : all) {
            if (row->isVisible())
                visible.append(row);
        }
        return visible;
    };
    QTRY_VERIFY(!rows().isEmpty());
    const QString firstComing = rows().first()->accessibleName();
    QVERIFY(!firstComing.isEmpty());
    QTest::mouseClick(named(window.get(), u"Passés"_s), Qt::LeftButton);
    QTRY_VERIFY(!rows().isEmpty());
    for (const EventRow *row : rows())
        QVERIFY(row->accessibleName() != firstComing);
    // Signed out, somebody's event cannot be changed; both kinds are in the seed.
    QVERIFY(button(window.get(), u"Ajouter un compte"_s));
}

int main(int argc, char *argv[])
{
    const OwnHome home;
    const QApplication application(argc, argv);
    const SupabaseClient::Lifetime client(home.path() + u"/reply.json"_s);
    LocalService service;
    if (!service.isRunning())
        qFatal("the local service did not start:\n%s", qPrintable(service.output()));
    qputenv("SUPABASE_URL", service.url().toLatin1());
    qputenv("SUPABASE_KEY", service.key().toLatin1());
    TestStackReading test;
    return QTest::qExec(&test, argc, argv);
}
#include "test_stack_reading.moc"
