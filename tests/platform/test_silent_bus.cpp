// The session bus of a desktop that has got stuck: it is there, and says nothing until it goes.

#include "platform/DesktopAppearance.h"

#include <QCoreApplication>
#include <QLocalServer>
#include <QLocalSocket>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

class TestSilentBus : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theProgramGoesOnWithoutIt();
};

void TestSilentBus::theProgramGoesOnWithoutIt()
{
    const QTemporaryDir folder;
    QLocalServer bus;
    QVERIFY(bus.listen(folder.filePath(u"bus"_s)));
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + bus.fullServerName().toUtf8());

    // This thread is the bus too: were it waited for, nothing would ever come next.
    const DesktopAppearance appearance;
    QSignalSpy settled(&appearance, &DesktopAppearance::settled);
    QTRY_VERIFY(bus.hasPendingConnections());
    QLocalSocket *const client = bus.nextPendingConnection();
    QTRY_VERIFY(client->bytesAvailable() > 0);
    QCOMPARE(settled.count(), 0);

    // It ends at last.
    bus.close();
    client->abort();
    QVERIFY(settled.wait());
    QCOMPARE(appearance.prefersDark(), std::nullopt);
}

QTEST_GUILESS_MAIN(TestSilentBus)
#include "test_silent_bus.moc"
