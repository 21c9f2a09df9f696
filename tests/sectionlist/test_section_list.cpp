#include "support/SectionListFixture.h"

#include "sectionlist/SectionListOffsets.h"

#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

class TestSectionList : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void placesAgreeWithAPlainSum();
    void aHundredThousandRowsTakeAFewWidgets();
    void rowsFollowOneAnotherWithoutGap();
    void wheelStepsMoveTheRowsByExactlyTheirWay();
    void scrollingUpIntoRowsNeverSeenMovesNothingInView();
    void theEndShowsTheLastRowWhole();
    void askingForARowThatIsNotThereMovesNothing();
    void aSmallScrollRepaintsOnlyTheStripThatComesIntoView();
    void draggingTheThumbReachesBothEnds();
    void whileTheThumbIsHeldItsRangeStandsStill();
    void aHeadingSticksWhileItsSectionIsThere();
    void theNextHeadingPushesTheStuckOneOut();
    void narrowerRowsKeepThePlace();
    void emptyContentPaintsTheSurfaceOnly();
    void rowsStandWhereTheDesignPutsThem();
};

void TestSectionList::placesAgreeWithAPlainSum()
{
    SectionListOffsets offsets;
    const QList<int> counts{3, 1, 7, 5, 1, 16};
    offsets.setSections(counts, 4, 30);
    QCOMPARE(offsets.rowCount(), 33);
    std::vector<int> heights(33, offsets.estimate());
    unsigned seed = 1;
    for (int change = 0; change < 300; ++change) {
        seed = seed * 1103515245u + 12345u;
        const int row = int(seed >> 16) % 33;
        heights[size_t(row)] = 20 + int(seed >> 8) % 200;
        offsets.setHeight(row, heights[size_t(row)]);
        int y = 4;
        int index = 0;
        for (int section = 0; section < counts.size(); ++section) {
            QCOMPARE(offsets.headingTop(section), y);
            QCOMPARE(offsets.rowAt(y), index);
            y += 30;
            for (int i = 0; i < counts[section]; ++i, ++index) {
                QCOMPARE(offsets.sectionOf(index), section);
                QCOMPARE(offsets.top(index), y);
                QCOMPARE(offsets.rowAt(y), index);
                y += heights[size_t(index)];
                QCOMPARE(offsets.rowAt(y - 1), index);
            }
        }
        QCOMPARE(offsets.total(), y);
    }
    QCOMPARE(offsets.rowAt(-1000), 0);
    QCOMPARE(offsets.rowAt(1000000), 32);
}

void TestSectionList::aHundredThousandRowsTakeAFewWidgets()
{
    ListWindow window;
    window.setRows(100000, 30);
    const auto few = 20;
    QVERIFY2(TestRow::alive < few, qPrintable(QString::number(TestRow::alive)));
    for (int step = 0; step < 300; ++step)
        window.wheel({0, -120});
    QVERIFY2(TestRow::alive < few, qPrintable(QString::number(TestRow::alive)));
    window.list->showRow(70000);
    window.list->showRow(3);
    window.list->scrollBar()->setValue(5'000'000);
    QCoreApplication::processEvents();
    QVERIFY2(TestRow::alive < few, qPrintable(QString::number(TestRow::alive)));
    QVERIFY(window.isSeamless());
}

void TestSectionList::rowsFollowOneAnotherWithoutGap()
{
    ListWindow window;
    window.setRows(500, 7);
    for (int step = 0; step < 120; ++step) {
        window.wheel({0, step % 5 == 0 ? 240 : -120 - step});
        QVERIFY2(window.isSeamless(), qPrintable(QString::number(step)));
    }
    for (const int value : {20000, 100, 43000, 31111, 0}) {
        window.list->scrollBar()->setValue(value);
        QVERIFY2(window.isSeamless(), qPrintable(QString::number(value)));
    }
}

void TestSectionList::wheelStepsMoveTheRowsByExactlyTheirWay()
{
    ListWindow window;
    window.setRows(200);
    window.wheel({0, -120});
    QCOMPARE(window.list->scrollBar()->value(), 60);
    const int top = window.topOf(2);
    window.wheel({0, -120});
    QCOMPARE(window.topOf(2), top - 60);
    // High resolution: eight eighths are a step.
    for (int part = 0; part < 8; ++part)
        window.wheel({0, -15});
    QCOMPARE(window.topOf(2), top - 120);
    window.wheel({}, {0, -7});
    QCOMPARE(window.topOf(2), top - 127);
    window.wheel({0, 30}, {0, 11}); // pixels count where both are given
    QCOMPARE(window.topOf(2), top - 116);
}

void TestSectionList::scrollingUpIntoRowsNeverSeenMovesNothingInView()
{
    ListWindow window;
    window.setRows(3000);
    window.list->showRow(1500);
    for (int step = 0; step < 60; ++step) {
        const QString eye = window.eyeRow();
        const int top = window.topOf(eye);
        window.wheel({0, 120});
        QVERIFY(window.row(eye));
        QCOMPARE(window.topOf(eye), top + 60);
    }
}

void TestSectionList::theEndShowsTheLastRowWhole()
{
    ListWindow window;
    window.setRows(5000);
    auto *bar = window.list->scrollBar();
    bar->setSliderDown(true);
    bar->setSliderPosition(bar->maximum());
    bar->setSliderDown(false);
    QCoreApplication::processEvents();
    QVERIFY(window.row(4999));
    QCOMPARE(window.topOf(4999) + window.row(4999)->height(), window.list->height() - 1);
    QCOMPARE(bar->value(), bar->maximum());
    for (int step = 0; step < 40; ++step)
        window.wheel({0, 120});
    for (int step = 0; step < 60; ++step)
        window.wheel({0, -120});
    QCOMPARE(window.topOf(4999) + window.row(4999)->height(), window.list->height() - 1);
}

void TestSectionList::askingForARowThatIsNotThereMovesNothing()
{
    ListWindow window;
    window.list->showRow(0);
    QCOMPARE(window.list->scrollBar()->value(), 0);
    window.setRows(100);
    window.list->showRow(50);
    const int place = window.list->scrollBar()->value();
    QVERIFY(place > 0);
    window.list->showRow(-1);
    window.list->showRow(100);
    QCOMPARE(window.list->scrollBar()->value(), place);
    QVERIFY(window.isSeamless());
}

void TestSectionList::aSmallScrollRepaintsOnlyTheStripThatComesIntoView()
{
    ListWindow window;
    window.setRows(300);
    for (int step = 0; step < 5; ++step)
        window.wheel({0, -120});
    auto *body = window.row(window.eyeRow())->parentWidget();
    body->repaint();
    PaintCounter counter(body);
    for (int step = 0; step < 20; ++step) {
        const bool down = step % 7 != 3;
        counter.area = 0;
        window.wheel({0, down ? -40 : 40}); // 20 px
        if (step % 2 == 0)
            window.wheel({0, down ? -40 : 40}); // a second one before the screen shows the first
        QTRY_VERIFY(counter.area > 0);
        // The strip, and what a heading at the top and the pane's corners cover.
        const int steps = step % 2 == 0 ? 2 : 1;
        QVERIFY2(counter.area <= steps * body->width() * (20 + 30 + 8),
                 qPrintable(u"%1: %2 px"_s.arg(step).arg(counter.area)));
        QTest::qWait(10);
        const QImage moved = window.screen()->grabWindow(window.winId()).toImage();
        QVERIFY(!moved.isNull());
        body->repaint();
        QCOMPARE(window.screen()->grabWindow(window.winId()).toImage(), moved);
    }
}

void TestSectionList::draggingTheThumbReachesBothEnds()
{
    ListWindow window;
    window.setRows(20000);
    auto *bar = window.list->scrollBar();
    const QPoint thumb = bar->mapTo(&window, QPoint(6, 10));
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, thumb);
    QVERIFY(bar->isSliderDown());
    for (int y = 0; y < bar->height() + 100; y += 23) {
        QTest::mouseMove(window.windowHandle(), thumb + QPoint(0, y));
        QCoreApplication::processEvents();
        QVERIFY(window.isSeamless());
    }
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {},
                        thumb + QPoint(0, bar->height() + 100));
    QCoreApplication::processEvents();
    QVERIFY(window.row(19999));
    QCOMPARE(window.topOf(19999) + window.row(19999)->height(), window.list->height() - 1);

    const QPoint end = bar->mapTo(&window, QPoint(6, bar->height() - 10));
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, end);
    for (int y = 0; y < bar->height() + 100; y += 41) {
        QTest::mouseMove(window.windowHandle(), end - QPoint(0, y));
        QCoreApplication::processEvents();
    }
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {},
                        end - QPoint(0, bar->height() + 100));
    QCoreApplication::processEvents();
    QCOMPARE(bar->value(), 0);
    QCOMPARE(window.topOf(0), 34);
}

void TestSectionList::whileTheThumbIsHeldItsRangeStandsStill()
{
    ListWindow window;
    window.setRows(20000);
    auto *bar = window.list->scrollBar();
    bar->setSliderDown(true);
    const int maximum = bar->maximum();
    const int target = maximum / 2;
    bar->setSliderPosition(target);
    const QString first = window.eyeRow();
    for (const int away : {40000, 300000, -200000, 0}) {
        bar->setSliderPosition(target + away);
        QCOMPARE(bar->maximum(), maximum);
        QCOMPARE(bar->value(), target + away);
    }
    // Back at the same place of the thumb: about the same rows, heights seen since then apart.
    QVERIFY(std::abs(window.eyeRow().toInt() - first.toInt()) < 100);
    const QString eye = window.eyeRow();
    const int top = window.topOf(eye);
    bar->setSliderDown(false);
    QCOMPARE(window.topOf(eye), top);
}

namespace {

/// The first and last row of pixels with the heading's text colour, left of x = 100.
std::pair<int, int> inkRows(const QImage &image, int from, int to)
{
    std::pair ink{-1, -1};
    for (int y = from; y < to; ++y) {
        for (int x = 10; x < 100; ++x) {
            if (qGray(image.pixel(x, y)) < 160) {
                ink = {ink.first < 0 ? y : ink.first, y};
                break;
            }
        }
    }
    return ink;
}

/// The first column of pixels with the heading's text colour.
int inkLeft(const QImage &image, int from, int to)
{
    for (int x = 0; x < 100; ++x) {
        for (int y = from; y < to; ++y) {
            if (qGray(image.pixel(x, y)) < 160)
                return x;
        }
    }
    return -1;
}

const QRgb surface = qRgb(255, 255, 255);
const QRgb line = qRgb(0xE2, 0xE2, 0xE6);

} // namespace

void TestSectionList::aHeadingSticksWhileItsSectionIsThere()
{
    ListWindow window;
    window.setRows(40);
    const auto natural = inkRows(window.picture(), 4, 34);
    QVERIFY(natural.first > 4);
    const int left = inkLeft(window.picture(), 4, 34);
    QVERIFY(left >= 12);
    QVERIFY(window.picture().pixel(300, 33) != line);
    window.wheel({}, {0, -4}); // exactly at the top: not stuck yet
    QCOMPARE(inkRows(window.picture(), 0, 30).first, natural.first - 4);
    QVERIFY(window.picture().pixel(300, 29) != line);
    window.wheel({}, {0, -36});
    const QImage stuck = window.picture();
    QCOMPARE(inkRows(stuck, 0, 29).first, natural.first - 4 - 2);
    QCOMPARE(inkLeft(stuck, 0, 29), left);
    for (int x = 0; x < stuck.width() - 12; ++x)
        QCOMPARE(stuck.pixel(x, 29), line);
    QCOMPARE(stuck.pixel(stuck.width() - 1, 29), line); // the whole width, beside the thumb
    QCOMPARE(stuck.pixel(300, 28), surface);
    QCOMPARE(stuck.pixel(400, 2), surface); // over the rows
}

void TestSectionList::theNextHeadingPushesTheStuckOneOut()
{
    ListWindow window;
    window.setRows(40, 5);
    int second = 4 + 30;
    for (int row = 0; row < 5; ++row)
        second += ListWindow::heightOf(row) + 8;
    window.list->scrollBar()->setValue(second - 30);
    QCOMPARE(window.picture().pixel(500, 29), line);
    window.list->scrollBar()->setValue(second - 18);
    QCOMPARE(window.picture().pixel(500, 17), line); // pushed by 12
    QVERIFY(inkRows(window.picture(), 18, 48).first > 18);
    window.list->scrollBar()->setValue(second);
    QVERIFY(window.picture().pixel(500, 29) != line);
    window.list->scrollBar()->setValue(second + 1);
    QCOMPARE(window.picture().pixel(500, 29), line);
}

void TestSectionList::narrowerRowsKeepThePlace()
{
    ListWindow window;
    QList<TestItem> items;
    for (int row = 0; row < 3000; ++row)
        items.append({QString::number(row), 40 + (row * 13) % 50, true, true});
    window.setSections({{u"All"_s, items}});
    window.list->showRow(2000);
    window.wheel({0, -180});
    const QString eye = window.eyeRow();
    for (const int width : {520, 900, 530, 728}) {
        window.resize(width, window.height());
        QCoreApplication::processEvents();
        QCOMPARE(window.eyeRow(), eye);
        QVERIFY(window.isSeamless());
        QCOMPARE(window.row(eye)->width(), width - 13);
        QCOMPARE(window.row(eye)->height(), window.row(eye)->heightFor(width - 32) + 8);
    }
    for (const int height : {300, 900, 200}) {
        window.resize(728, height);
        QCoreApplication::processEvents();
        QCOMPARE(window.eyeRow(), eye);
        QVERIFY(window.isSeamless());
    }
}

void TestSectionList::emptyContentPaintsTheSurfaceOnly()
{
    ListWindow window;
    window.setRows(20);
    window.wheel({0, -240});
    window.setSections({{u"None"_s, {}}});
    QCOMPARE(window.list->rowCount(), 0);
    const QImage image = window.picture();
    for (int y = 0; y < image.height(); y += 3) {
        for (int x = 0; x < image.width(); x += 3)
            QCOMPARE(image.pixel(x, y), surface);
    }
    window.wheel({0, -120});
    window.key(Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), window.after);
    window.setRows(20);
    QVERIFY(window.row(0));
}

void TestSectionList::rowsStandWhereTheDesignPutsThem()
{
    ListWindow window;
    window.setSections(
        {{u"Novembre 2026"_s, {{u"a"_s, 104, false, false}, {u"b"_s, 104, false, false}}}});
    QCOMPARE(window.topOf(0), 34);
    QCOMPARE(window.topOf(1), 34 + 112);
    const QRect content =
        window.row(0)->contentRect().translated(window.row(0)->mapTo(window.list, QPoint()));
    QCOMPARE(content, QRect(12, 38, 696, 104));

    window.list->setSelectedRow(u"a"_s);
    const QImage image = window.picture();
    const QRgb fill = image.pixel(300, 60);
    QVERIFY(fill != surface);
    const QRect filled(4, 37, 712, 107); // in the pane: up to the gutter of 12
    QCOMPARE(image.pixel(filled.left(), 90), fill);
    QCOMPARE(image.pixel(filled.left() - 1, 90), surface);
    QCOMPARE(image.pixel(filled.right(), 90), fill);
    QCOMPARE(image.pixel(filled.right() + 1, 90), surface);
    QCOMPARE(image.pixel(300, filled.top()), fill);
    QCOMPARE(image.pixel(300, filled.top() - 1), surface);
    QCOMPARE(image.pixel(300, filled.bottom()), fill);
    QCOMPARE(image.pixel(300, filled.bottom() + 1), surface);
    QVERIFY(image.pixel(filled.left(), filled.top()) != fill); // round
    QCOMPARE(image.pixel(300, 34), surface); // no hairline below the heading
    QCOMPARE(image.pixel(12, 146), line);
    QCOMPARE(image.pixel(11, 146), surface);
    QCOMPARE(image.pixel(707, 146), line);
    QCOMPARE(image.pixel(708, 146), surface);
    QCOMPARE(image.pixel(300, 147), surface);
}

QTEST_MAIN(TestSectionList)
#include "test_section_list.moc"
