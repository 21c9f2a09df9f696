#include "controls/FingerScroll.h"
#include "support/Finger.h"

#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

/// Forty buttons in a window that has room for ten.
class Area : public QScrollArea {
    Q_OBJECT

public:
    explicit Area(int count = 40)
    {
        auto *content = new QWidget;
        for (int i = 0; i < count; ++i) {
            auto *button = new QPushButton(QString::number(i), content);
            button->setGeometry(0, 40 * i, 300, 40);
            connect(button, &QPushButton::clicked, this,
                    [this, button] { pressed.append(button->text()); });
        }
        content->setFixedSize(300, 40 * count);
        setFrameShape(QFrame::NoFrame);
        setWidget(content);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        resize(320, 400);
        new FingerScroll(this);
        show();
    }

    QStringList pressed;
    int value() const { return verticalScrollBar()->value(); }
};

} // namespace

class TestFingerScroll : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theContentFollowsTheFinger();
    void aTapPressesWhatIsUnderIt();
    void aFingerThatRollsALittleStillTaps();
    void aDragPressesNothing();
    void theContentGoesOnAfterAThrow();
    void aTouchStopsAThrowAndPressesNothing();
    void somebodyElseWhoScrollsStopsAThrow();
    void aThrowEndsAtTheEnd();
    void twoFingersPressNothing();
    void whereNothingScrollsATapIsAClick();
    void theScrollBarIsPulledAsWithAMouse();
    void aTapPutsTheCursorIntoAField();
};

void TestFingerScroll::theContentFollowsTheFinger()
{
    Area area;
    Finger finger(&area);
    finger.drag({100, 300}, {100, 100});
    const int down = area.value();
    QVERIFY2(down > 170 && down <= 200, qPrintable(QString::number(down)));
    finger.drag({100, 100}, {100, 200});
    QVERIFY2(area.value() >= down - 100 && area.value() < down - 70,
             qPrintable(QString::number(area.value())));
}

void TestFingerScroll::aTapPressesWhatIsUnderIt()
{
    Area area;
    Finger finger(&area);
    finger.tap({100, 100});
    QCOMPARE(area.pressed, QStringList{u"2"_s});
    finger.drag({100, 300}, {100, 100});
    const QWidget *under = area.childAt(100, 100);
    QVERIFY(under);
    finger.tap({100, 100});
    QCOMPARE(area.pressed.last(), qobject_cast<const QPushButton *>(under)->text());
    QCOMPARE(area.pressed.size(), 2);
    QVERIFY(!under->underMouse());
}

void TestFingerScroll::aFingerThatRollsALittleStillTaps()
{
    Area area;
    Finger finger(&area);
    finger.press({100, 100});
    finger.move({103, 105});
    finger.release({103, 105});
    QCOMPARE(area.pressed, QStringList{u"2"_s});
    QCOMPARE(area.value(), 0);
}

void TestFingerScroll::aDragPressesNothing()
{
    Area area;
    Finger finger(&area);
    finger.drag({100, 300}, {100, 100});
    finger.drag({100, 100}, {250, 100}); // sideways, within one button
    finger.drag({100, 100}, {100, 102 + 30});
    QCOMPARE(area.pressed, QStringList());
}

void TestFingerScroll::theContentGoesOnAfterAThrow()
{
    Area area;
    Finger finger(&area);
    finger.flick({100, 380}, {100, 180});
    QTRY_VERIFY(area.value() > 700); // the finger went 200
    QCOMPARE(area.pressed, QStringList());
}

void TestFingerScroll::aTouchStopsAThrowAndPressesNothing()
{
    Area area(4000);
    Finger finger(&area);
    finger.flick({100, 380}, {100, 20});
    QTRY_VERIFY(area.value() > 400);
    finger.press({100, 100});
    const int stopped = area.value();
    QTest::qWait(60);
    QCOMPARE(area.value(), stopped);
    finger.release({100, 100});
    QCOMPARE(area.pressed, QStringList());
    finger.tap({100, 100});
    QCOMPARE(area.pressed.size(), 1);
}

void TestFingerScroll::somebodyElseWhoScrollsStopsAThrow()
{
    Area area(4000);
    Finger finger(&area);
    finger.flick({100, 380}, {100, 20});
    area.verticalScrollBar()->setValue(5000);
    QTest::qWait(60);
    QCOMPARE(area.value(), 5000);
}

void TestFingerScroll::aThrowEndsAtTheEnd()
{
    Area area;
    Finger finger(&area);
    for (int i = 0; i < 4; ++i)
        finger.flick({100, 380}, {100, 20});
    QTRY_COMPARE(area.value(), area.verticalScrollBar()->maximum());
    for (int i = 0; i < 8; ++i)
        finger.flick({100, 20}, {100, 380});
    QTRY_COMPARE(area.value(), 0);
}

void TestFingerScroll::twoFingersPressNothing()
{
    Area area;
    const std::unique_ptr<QPointingDevice> device(QTest::createTouchDevice());
    QWindow *window = area.windowHandle();
    QTest::touchEvent(window, device.get()).press(0, {100, 100}, window);
    QTest::touchEvent(window, device.get()).stationary(0).press(1, {100, 200}, window);
    QTest::touchEvent(window, device.get()).stationary(0).release(1, {100, 200}, window);
    QTest::touchEvent(window, device.get()).release(0, {100, 100}, window);
    QCOMPARE(area.pressed, QStringList());
}

void TestFingerScroll::whereNothingScrollsATapIsAClick()
{
    Area area(5);
    Finger finger(&area);
    finger.tap({100, 100});
    QCOMPARE(area.pressed, QStringList{u"2"_s});
}

void TestFingerScroll::theScrollBarIsPulledAsWithAMouse()
{
    QWidget area;
    area.resize(320, 400);
    auto *bar = new QScrollBar(Qt::Vertical, &area);
    bar->setRange(0, 100);
    bar->setGeometry(280, 0, 20, 400);
    new FingerScroll(&area, bar);
    area.show();
    Finger finger(&area);
    finger.drag({290, 30}, {290, 200});
    QVERIFY2(bar->value() > 20, qPrintable(QString::number(bar->value())));
}

void TestFingerScroll::aTapPutsTheCursorIntoAField()
{
    Area area;
    auto *field = new QLineEdit(area.widget());
    field->setGeometry(0, 0, 300, 40);
    field->show();
    area.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&area));
    area.setFocus();
    Finger finger(&area);
    finger.drag({100, 20}, {100, 60});
    QVERIFY(!field->hasFocus());
    finger.tap({100, 20});
    QVERIFY(field->hasFocus());
}

QTEST_MAIN(TestFingerScroll)
#include "test_finger_scroll.moc"
