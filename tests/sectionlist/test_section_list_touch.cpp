#include "support/Finger.h"
#include "support/SectionListFixture.h"

using namespace Qt::StringLiterals;

class TestSectionListTouch : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aFingerScrollsTheList();
    void aThrowCarriesOnThroughRowsNotSeenYet();
    void aTapOpensTheRow();
    void aTapOnAButtonPressesIt();
    void aDragOpensNothing();
    void aShortListStillTakesTaps();
    void aDragWithTheMouseOpensNothing();
    void aMouseThatTremblesStillOpens();
};

void TestSectionListTouch::aFingerScrollsTheList()
{
    ListWindow window;
    window.setRows(200);
    Finger finger(&window);
    finger.drag({200, 400}, {200, 100});
    const int value = window.list->scrollBar()->value();
    QVERIFY2(value > 270 && value <= 300, qPrintable(QString::number(value)));
    QVERIFY(window.isSeamless());
    finger.drag({200, 100}, {200, 480});
    QCOMPARE(window.list->scrollBar()->value(), 0);
}

void TestSectionListTouch::aThrowCarriesOnThroughRowsNotSeenYet()
{
    ListWindow window;
    window.setRows(2000);
    Finger finger(&window);
    finger.flick({200, 480}, {200, 80});
    QTRY_VERIFY(window.list->scrollBar()->value() > 1200); // the finger went 400
    QVERIFY(window.isSeamless());
    QCOMPARE(window.activated, QStringList());
}

void TestSectionListTouch::aTapOpensTheRow()
{
    ListWindow window;
    window.setRows(200);
    Finger finger(&window);
    finger.tap(window.inWindow(1, {60, 40}));
    QCOMPARE(window.activated, QStringList{u"1"_s});
    QCOMPARE(QApplication::focusWidget(), window.row(1));
    QVERIFY(!window.row(1)->showsFocus());
    QVERIFY(!window.row(1)->isHovered());
    QVERIFY(!window.row(1)->isPressed());
}

void TestSectionListTouch::aTapOnAButtonPressesIt()
{
    ListWindow window;
    window.setRows(200);
    int pressed = 0;
    connect(window.row(2)->button(), &QPushButton::clicked, this, [&pressed] { ++pressed; });
    Finger finger(&window);
    finger.tap(window.inWindow(2, window.row(2)->button()->geometry().center()));
    QCOMPARE(pressed, 1);
    QCOMPARE(window.activated, QStringList());
}

void TestSectionListTouch::aDragOpensNothing()
{
    ListWindow window;
    window.setRows(200);
    Finger finger(&window);
    const QPoint row = window.inWindow(1, {60, 40});
    finger.drag(row, row + QPoint(0, 25));
    finger.drag(row, row + QPoint(200, 0));
    finger.drag(row, row - QPoint(0, 25));
    QCOMPARE(window.activated, QStringList());
}

void TestSectionListTouch::aShortListStillTakesTaps()
{
    ListWindow window;
    window.setRows(2);
    Finger finger(&window);
    finger.tap(window.inWindow(1, {60, 40}));
    QCOMPARE(window.activated, QStringList{u"1"_s});
    const QPoint row = window.inWindow(1, {60, 40});
    finger.drag(row, row + QPoint(200, 0));
    QCOMPARE(window.activated.size(), 1);
}

void TestSectionListTouch::aDragWithTheMouseOpensNothing()
{
    ListWindow window;
    window.setSections({{u"A"_s, {{u"a"_s, 200}, {u"b"_s, 200}}}});
    const QPoint from = window.inWindow(0, {60, 40});
    const QPoint to = window.inWindow(0, {300, 150});
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, from);
    QTest::mouseMove(window.windowHandle(), to);
    QVERIFY(!window.row(0)->isPressed());
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, to);
    // There and back is a drag as well.
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, from);
    QTest::mouseMove(window.windowHandle(), to);
    QTest::mouseMove(window.windowHandle(), from);
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, from);
    QCOMPARE(window.activated, QStringList());
}

void TestSectionListTouch::aMouseThatTremblesStillOpens()
{
    ListWindow window;
    window.setRows(5);
    const QPoint from = window.inWindow(0, {60, 40});
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, from);
    QTest::mouseMove(window.windowHandle(), from + QPoint(3, -2));
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, from + QPoint(3, -2));
    QCOMPARE(window.activated, QStringList{u"0"_s});
}

QTEST_MAIN(TestSectionListTouch)
#include "test_section_list_touch.moc"
