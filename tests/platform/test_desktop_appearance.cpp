#include "platform/DesktopAppearance.h"
#include "support/PrivateBus.h"
#include "support/StandInPortal.h"
#include "support/WithoutBus.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

class TestDesktopAppearance : public QObject {
    Q_OBJECT

public:
    explicit TestDesktopAppearance(const PrivateBus &bus)
        : m_bus(bus)
    {
    }

private Q_SLOTS:
    // Nor is anybody who looks into the log sent after a fault that is none.
    void init() { QTest::failOnWarning(QRegularExpression(u"will not be seen"_s)); }

    // First: as in a program that has never had to do with the bus before.
    void switchingTheDesktopIsSeenAtOnce();
    void aDarkDesktopIsKnownAsDark();
    void aLightDesktopIsKnownAsLight();
    void aDesktopWithoutPreferenceLeavesTheChoiceOpen();
    void aDesktopWithoutPortalIsNotWaitedFor();
    void theWishForContrastIsKnownFromTheStart();
    void theWishForContrastIsSeenToComeAndToGo();
    void anotherSettingChangesNothing();
    void aSlowDesktopIsAskedWithoutWaiting();
    void whereThereIsNobodyToAskNothingIsAwaited();

private:
    const PrivateBus &m_bus;
};

void TestDesktopAppearance::switchingTheDesktopIsSeenAtOnce()
{
    StandInPortal portal(m_bus, 2);
    const DesktopAppearance appearance;
    QSignalSpy settled(&appearance, &DesktopAppearance::settled);
    QVERIFY(settled.wait());

    QSignalSpy changed(&appearance, &DesktopAppearance::changed);
    portal.change(1);
    QVERIFY(changed.wait());
    QCOMPARE(appearance.prefersDark(), std::optional(true));
    portal.change(2);
    QVERIFY(changed.wait());
    QCOMPARE(appearance.prefersDark(), std::optional(false));
    portal.change(0);
    QVERIFY(changed.wait());
    QCOMPARE(appearance.prefersDark(), std::nullopt);
}

void TestDesktopAppearance::aDarkDesktopIsKnownAsDark()
{
    const StandInPortal portal(m_bus, 1);
    const DesktopAppearance appearance;
    QSignalSpy settled(&appearance, &DesktopAppearance::settled);
    QVERIFY(settled.wait());
    QCOMPARE(appearance.prefersDark(), std::optional(true));
    QTRY_COMPARE(portal.questions(), (QStringList{u"color-scheme"_s, u"contrast"_s}));
}

void TestDesktopAppearance::aLightDesktopIsKnownAsLight()
{
    const StandInPortal portal(m_bus, 2);
    const DesktopAppearance appearance;
    QSignalSpy settled(&appearance, &DesktopAppearance::settled);
    QVERIFY(settled.wait());
    QCOMPARE(appearance.prefersDark(), std::optional(false));
}

void TestDesktopAppearance::aDesktopWithoutPreferenceLeavesTheChoiceOpen()
{
    const StandInPortal portal(m_bus, 0);
    const DesktopAppearance appearance;
    QSignalSpy settled(&appearance, &DesktopAppearance::settled);
    QVERIFY(settled.wait());
    QCOMPARE(appearance.prefersDark(), std::nullopt);
}

void TestDesktopAppearance::aDesktopWithoutPortalIsNotWaitedFor()
{
    const DesktopAppearance appearance;
    QSignalSpy settled(&appearance, &DesktopAppearance::settled);
    QVERIFY(settled.wait());
    QCOMPARE(appearance.prefersDark(), std::nullopt);
}

void TestDesktopAppearance::theWishForContrastIsKnownFromTheStart()
{
    const StandInPortal portal(m_bus, 1, 1);
    const DesktopAppearance appearance;
    QVERIFY(!appearance.wantsContrast());
    QSignalSpy settled(&appearance, &DesktopAppearance::settled);
    QVERIFY(settled.wait());
    QVERIFY(appearance.wantsContrast());
    QCOMPARE(appearance.prefersDark(), std::optional(true));
}

void TestDesktopAppearance::theWishForContrastIsSeenToComeAndToGo()
{
    StandInPortal portal(m_bus, 2);
    const DesktopAppearance appearance;
    QSignalSpy settled(&appearance, &DesktopAppearance::settled);
    QVERIFY(settled.wait());
    QVERIFY(!appearance.wantsContrast());

    QSignalSpy changed(&appearance, &DesktopAppearance::changed);
    portal.changeContrast(1);
    QVERIFY(changed.wait());
    QVERIFY(appearance.wantsContrast());
    portal.changeContrast(0);
    QVERIFY(changed.wait());
    QVERIFY(!appearance.wantsContrast());
    QCOMPARE(appearance.prefersDark(), std::optional(false));
}

void TestDesktopAppearance::anotherSettingChangesNothing()
{
    StandInPortal portal(m_bus, 1);
    const DesktopAppearance appearance;
    QSignalSpy settled(&appearance, &DesktopAppearance::settled);
    QVERIFY(settled.wait());

    QSignalSpy changed(&appearance, &DesktopAppearance::changed);
    portal.tell(u"org.freedesktop.appearance"_s, u"accent-color"_s, 0);
    portal.tell(u"org.gnome.desktop.interface"_s, u"color-scheme"_s, 0);
    portal.tell(u"org.gnome.desktop.interface"_s, u"contrast"_s, 1);
    // A change that does count, sent after those, shows that they have arrived.
    portal.change(2);
    QVERIFY(changed.wait());
    QCOMPARE(changed.count(), 1);
    QCOMPARE(appearance.prefersDark(), std::optional(false));
}

void TestDesktopAppearance::aSlowDesktopIsAskedWithoutWaiting()
{
    StandInPortal portal(m_bus, 1);
    portal.holdAnswers();
    const DesktopAppearance appearance;
    QSignalSpy settled(&appearance, &DesktopAppearance::settled);
    QTRY_COMPARE(portal.questions().size(), 2);
    QCOMPARE(settled.count(), 0);
    QVERIFY(!appearance.isSettled());
    portal.answer();
    QVERIFY(settled.wait());
    QVERIFY(appearance.isSettled());
    QCOMPARE(appearance.prefersDark(), std::optional(true));
}

void TestDesktopAppearance::whereThereIsNobodyToAskNothingIsAwaited()
{
    const WithoutBus without;
    const DesktopAppearance appearance;
    QVERIFY(appearance.isSettled());
    QCOMPARE(appearance.prefersDark(), std::nullopt);
}

int main(int argc, char *argv[])
{
    const PrivateBus bus;
    const QCoreApplication application(argc, argv);
    TestDesktopAppearance test(bus);
    return QTest::qExec(&test, argc, argv);
}
#include "test_desktop_appearance.moc"
