#include "platform/DesktopColorScheme.h"
#include "support/StandInPortal.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class TestColorScheme : public QObject {
    Q_OBJECT

public:
    explicit TestColorScheme(const PrivateBus &bus)
        : m_bus(bus)
    {
    }

private Q_SLOTS:
    void aDarkDesktopIsKnownAsDark();
    void aLightDesktopIsKnownAsLight();
    void aDesktopWithoutPreferenceLeavesTheChoiceOpen();
    void aDesktopWithoutPortalIsNotWaitedFor();
    void switchingTheDesktopIsSeenAtOnce();
    void anotherSettingChangesNothing();
    void aSlowDesktopIsAskedWithoutWaiting();

private:
    const PrivateBus &m_bus;
};

void TestColorScheme::aDarkDesktopIsKnownAsDark()
{
    const StandInPortal portal(m_bus, 1);
    const DesktopColorScheme scheme;
    QSignalSpy settled(&scheme, &DesktopColorScheme::settled);
    QVERIFY(settled.wait());
    QCOMPARE(scheme.prefersDark(), std::optional(true));
    QCOMPARE(portal.questions(), 1);
}

void TestColorScheme::aLightDesktopIsKnownAsLight()
{
    const StandInPortal portal(m_bus, 2);
    const DesktopColorScheme scheme;
    QSignalSpy settled(&scheme, &DesktopColorScheme::settled);
    QVERIFY(settled.wait());
    QCOMPARE(scheme.prefersDark(), std::optional(false));
}

void TestColorScheme::aDesktopWithoutPreferenceLeavesTheChoiceOpen()
{
    const StandInPortal portal(m_bus, 0);
    const DesktopColorScheme scheme;
    QSignalSpy settled(&scheme, &DesktopColorScheme::settled);
    QVERIFY(settled.wait());
    QCOMPARE(scheme.prefersDark(), std::nullopt);
}

void TestColorScheme::aDesktopWithoutPortalIsNotWaitedFor()
{
    const DesktopColorScheme scheme;
    QSignalSpy settled(&scheme, &DesktopColorScheme::settled);
    QVERIFY(settled.wait());
    QCOMPARE(scheme.prefersDark(), std::nullopt);
}

void TestColorScheme::switchingTheDesktopIsSeenAtOnce()
{
    StandInPortal portal(m_bus, 2);
    const DesktopColorScheme scheme;
    QSignalSpy settled(&scheme, &DesktopColorScheme::settled);
    QVERIFY(settled.wait());

    QSignalSpy changed(&scheme, &DesktopColorScheme::changed);
    portal.change(1);
    QVERIFY(changed.wait());
    QCOMPARE(scheme.prefersDark(), std::optional(true));
    portal.change(2);
    QVERIFY(changed.wait());
    QCOMPARE(scheme.prefersDark(), std::optional(false));
    portal.change(0);
    QVERIFY(changed.wait());
    QCOMPARE(scheme.prefersDark(), std::nullopt);
}

void TestColorScheme::anotherSettingChangesNothing()
{
    StandInPortal portal(m_bus, 1);
    const DesktopColorScheme scheme;
    QSignalSpy settled(&scheme, &DesktopColorScheme::settled);
    QVERIFY(settled.wait());

    QSignalSpy changed(&scheme, &DesktopColorScheme::changed);
    Q_EMIT portal.SettingChanged(u"org.freedesktop.appearance"_s, u"contrast"_s, QDBusVariant(0U));
    Q_EMIT portal.SettingChanged(u"org.gnome.desktop.interface"_s, u"color-scheme"_s,
                                 QDBusVariant(0U));
    // A change that does count, sent after those, shows that they have arrived.
    portal.change(2);
    QVERIFY(changed.wait());
    QCOMPARE(changed.count(), 1);
    QCOMPARE(scheme.prefersDark(), std::optional(false));
}

void TestColorScheme::aSlowDesktopIsAskedWithoutWaiting()
{
    StandInPortal portal(m_bus, 1);
    portal.holdAnswers();
    const DesktopColorScheme scheme;
    QSignalSpy settled(&scheme, &DesktopColorScheme::settled);
    QTRY_COMPARE(portal.questions(), 1);
    QCOMPARE(settled.count(), 0);
    portal.answer();
    QVERIFY(settled.wait());
    QCOMPARE(scheme.prefersDark(), std::optional(true));
}

int main(int argc, char *argv[])
{
    const PrivateBus bus;
    const QCoreApplication application(argc, argv);
    TestColorScheme test(bus);
    return QTest::qExec(&test, argc, argv);
}
#include "test_color_scheme.moc"
