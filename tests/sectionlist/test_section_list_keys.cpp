// The list and the keyboard: where the focus goes, and what keys open and scroll.

#include "support/SectionListFixture.h"

#include <memory>

using namespace Qt::StringLiterals;

class TestSectionListKeys : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void enterReturnAndSpaceOpenTheRow();
    void tabStopsAtTheCurrentRowAndItsButtonsOnly();
    void arrowsWalkTheRowsAndKeepThemInView();
    void pageKeysMoveByAPageWithoutSkippingRows();
    void homeAndEndReachTheFirstAndLastRow();
    void nothingOfARowThatTheKeyboardLeftStaysOverTheList_data();
    void nothingOfARowThatTheKeyboardLeftStaysOverTheList();
    void arrowsOnAButtonMoveTheRow();
    void theRingShowsForTheKeyboardOnly();
    void aFocusedRowScrolledAwayKeepsTheFocusAndComesBack();
    void nothingIsKeptOfARowOutOfViewThatLostTheFocus();
    void theFocusComesBackAfterASheet();
    void aSheetOverARowThatIsGoneGivesTheFocusToTheCurrentRow();
    void aHiddenButtonLeavesTheFocusToItsRow();
    void aListDestroyedWithTheFocusInItIsJustGone();
};

void TestSectionListKeys::enterReturnAndSpaceOpenTheRow()
{
    ListWindow window;
    window.setRows(50);
    window.key(Qt::Key_Tab);
    window.key(Qt::Key_Down);
    window.key(Qt::Key_Return);
    window.key(Qt::Key_Enter, Qt::KeypadModifier);
    window.key(Qt::Key_Space);
    window.key(Qt::Key_Return, Qt::ControlModifier);
    QCOMPARE(window.activated, QStringList(3, u"1"_s));
}

void TestSectionListKeys::tabStopsAtTheCurrentRowAndItsButtonsOnly()
{
    ListWindow window;
    window.setRows(100000);
    window.key(Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), window.row(0));
    window.key(Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), window.row(0)->button());
    window.key(Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), window.after);
    window.key(Qt::Key_Backtab);
    QCOMPARE(QApplication::focusWidget(), window.row(0)->button());
    window.key(Qt::Key_Backtab);
    QCOMPARE(QApplication::focusWidget(), window.row(0));
    window.key(Qt::Key_Backtab);
    QCOMPARE(QApplication::focusWidget(), window.before);
    window.key(Qt::Key_Tab);
    for (int row = 0; row < 30; ++row)
        window.key(Qt::Key_Down);
    window.key(Qt::Key_Backtab);
    QCOMPARE(QApplication::focusWidget(), window.before);
    window.key(Qt::Key_Tab); // to the row it left
    QCOMPARE(QApplication::focusWidget(), window.row(30));
}

void TestSectionListKeys::arrowsWalkTheRowsAndKeepThemInView()
{
    ListWindow window;
    window.setRows(200, 6);
    window.key(Qt::Key_Tab);
    const auto isInView = [&window](int row) {
        const int top = window.topOf(row);
        return top >= (row % 6 == 0 ? 0 : 30)
            && top + window.row(row)->height() <= window.list->height();
    };
    for (int row = 1; row < 60; ++row) {
        window.key(Qt::Key_Down);
        QCOMPARE(QApplication::focusWidget(), window.row(row));
        QVERIFY2(isInView(row), qPrintable(QString::number(row)));
    }
    for (int row = 58; row >= 0; --row) {
        window.key(Qt::Key_Up);
        QCOMPARE(QApplication::focusWidget(), window.row(row));
        QVERIFY2(isInView(row), qPrintable(QString::number(row)));
    }
    QCOMPARE(window.list->scrollBar()->value(), 0); // with the heading above the first row
    window.key(Qt::Key_Up);
    QCOMPARE(QApplication::focusWidget(), window.row(0));
}

void TestSectionListKeys::pageKeysMoveByAPageWithoutSkippingRows()
{
    ListWindow window;
    window.setRows(300, 9);
    window.key(Qt::Key_Tab);
    int row = 0;
    while (row < 299) {
        int bottom = window.list->height() - 3;
        while (!window.list->rowAt({50, bottom})) // a heading
            --bottom;
        const int lastSeen = *window.list->rowAt({50, bottom});
        const bool cutOff =
            window.topOf(lastSeen) + window.row(lastSeen)->height() > window.list->height();
        window.key(Qt::Key_PageDown);
        const int next = *window.list->currentRow();
        QCOMPARE(QApplication::focusWidget(), window.row(next));
        QVERIFY2(next > row && next - row < 12, qPrintable(QString::number(next)));
        // What was cut off at the bottom comes into view.
        QVERIFY(!cutOff || window.topOf(lastSeen) + window.row(lastSeen)->height() > 30);
        row = next;
    }
    while (row > 0) {
        window.key(Qt::Key_PageUp);
        const int next = *window.list->currentRow();
        QVERIFY2(next < row && row - next < 12, qPrintable(QString::number(next)));
        row = next;
    }
    QCOMPARE(window.list->scrollBar()->value(), 0);
}

void TestSectionListKeys::homeAndEndReachTheFirstAndLastRow()
{
    ListWindow window;
    window.setRows(100000);
    window.key(Qt::Key_Tab);
    window.key(Qt::Key_End);
    QCOMPARE(QApplication::focusWidget(), window.row(99999));
    QCOMPARE(window.topOf(99999) + window.row(99999)->height(), window.list->height() - 1);
    window.key(Qt::Key_Home);
    QCOMPARE(QApplication::focusWidget(), window.row(0));
    QCOMPARE(window.list->scrollBar()->value(), 0);
}

void TestSectionListKeys::nothingOfARowThatTheKeyboardLeftStaysOverTheList_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<int>("presses");
    QTest::newRow("Page Down") << Qt::Key_PageDown << 12;
    QTest::newRow("Down") << Qt::Key_Down << 30;
    QTest::newRow("End") << Qt::Key_End << 1;
}

void TestSectionListKeys::nothingOfARowThatTheKeyboardLeftStaysOverTheList()
{
    QFETCH(Qt::Key, key);
    QFETCH(int, presses);
    ListWindow window;
    QList<TestItem> items;
    for (int row = 0; row < 60; ++row)
        items.append({QString::number(row), row % 4 == 3 ? 420 : 40});
    window.setSections({{u"A"_s, items}});
    window.key(Qt::Key_Tab);
    for (int press = 0; press < presses; ++press) {
        if (press % 5 == 4)
            window.wheel({0, press % 2 == 0 ? 600 : -600}); // away from the row with the focus
        window.key(key);
        QCOMPARE(window.leftovers(), QStringList());
        QCOMPARE(QApplication::focusWidget(), window.row(*window.list->currentRow()));
    }
    // Out of the list, and back from a place far off.
    window.list->scrollBar()->setValue(0);
    window.key(Qt::Key_Backtab);
    QCOMPARE(window.leftovers(), QStringList());
    window.key(Qt::Key_Tab);
    QCOMPARE(window.leftovers(), QStringList());
}

void TestSectionListKeys::arrowsOnAButtonMoveTheRow()
{
    ListWindow window;
    window.setRows(50);
    window.key(Qt::Key_Tab);
    window.key(Qt::Key_Right);
    QCOMPARE(QApplication::focusWidget(), window.row(0)->button());
    window.key(Qt::Key_Right); // stays: the list is left by the tab key
    QCOMPARE(QApplication::focusWidget(), window.row(0)->button());
    window.key(Qt::Key_Down);
    QCOMPARE(QApplication::focusWidget(), window.row(1));
    window.key(Qt::Key_Right);
    window.key(Qt::Key_Left);
    QCOMPARE(QApplication::focusWidget(), window.row(1));
}

void TestSectionListKeys::theRingShowsForTheKeyboardOnly()
{
    ListWindow window;
    window.setRows(50);
    const auto ringed = [&window] {
        QStringList rows;
        for (auto *row : window.findChildren<TestRow *>()) {
            if (row->showsFocus())
                rows.append(row->id());
        }
        return rows;
    };
    window.click(1);
    QCOMPARE(QApplication::focusWidget(), window.row(1));
    QVERIFY(ringed().isEmpty());
    window.key(Qt::Key_Down);
    QCOMPARE(ringed(), QStringList{u"2"_s});
    const QImage image = window.picture();
    const QPoint side(4, window.topOf(2) + 50);
    QCOMPARE(image.pixel(side), accentInk(window.palette()).rgb());
    QCOMPARE(image.pixel(side + QPoint(1, 0)), accentInk(window.palette()).rgb());
    QCOMPARE(image.pixel(side + QPoint(2, 0)), qRgb(255, 255, 255));
    window.key(Qt::Key_Tab); // on the button, the button shows it
    QVERIFY(ringed().isEmpty());
    window.key(Qt::Key_Backtab);
    QCOMPARE(ringed(), QStringList{u"2"_s});
    window.click(2);
    QVERIFY(ringed().isEmpty());
}

void TestSectionListKeys::aFocusedRowScrolledAwayKeepsTheFocusAndComesBack()
{
    ListWindow window;
    window.setRows(100000);
    window.key(Qt::Key_Tab);
    window.key(Qt::Key_Down);
    window.key(Qt::Key_Down);
    auto *focused = window.row(2);
    window.list->scrollBar()->setValue(3'000'000);
    QCoreApplication::processEvents();
    QCOMPARE(QApplication::focusWidget(), focused);
    QCOMPARE(window.row(2), focused);
    QCOMPARE(focused->id(), u"2"_s);
    QVERIFY(!focused->geometry().intersects(focused->parentWidget()->rect()));
    for (int step = 0; step < 20; ++step)
        window.wheel({0, -120});
    QCOMPARE(QApplication::focusWidget(), focused);
    QVERIFY(window.isSeamless());
    window.key(Qt::Key_Down);
    QCOMPARE(QApplication::focusWidget(), window.row(3));
    QVERIFY(window.topOf(3) >= 30 && window.topOf(3) < 400);
    QVERIFY(window.isSeamless());
}

void TestSectionListKeys::theFocusComesBackAfterASheet()
{
    ListWindow window;
    window.setRows(1000);
    window.list->showRow(500);
    window.click(500);
    window.after->setFocus();
    window.list->scrollBar()->setValue(0);
    window.list->focusRow(u"500"_s);
    QCOMPARE(QApplication::focusWidget(), window.row(500));
    QVERIFY(!window.row(500)->showsFocus()); // the mouse was used last
    QVERIFY(window.topOf(500) >= 0 && window.topOf(500) < window.list->height());
    window.key(Qt::Key_Up);
    window.after->setFocus();
    window.list->focusRow(u"499"_s);
    QVERIFY(window.row(499)->showsFocus());
    window.after->setFocus();
    window.list->focusRow(u"gone"_s);
    QCOMPARE(QApplication::focusWidget(), window.row(499));
}

/// A reader was told that it stands just above the list's upper edge.
void TestSectionListKeys::nothingIsKeptOfARowOutOfViewThatLostTheFocus()
{
    ListWindow window;
    window.setRows(1000);
    window.key(Qt::Key_Tab);
    window.list->scrollBar()->setValue(30'000);
    QVERIFY(window.row(0));
    const int seen = window.list->rowAt({50, 200}).value_or(-1);
    QVERIFY(seen > 0);
    window.click(seen);
    QCOMPARE(QApplication::focusWidget(), window.row(seen));
    QCOMPARE(window.row(0), nullptr);

    window.list->scrollBar()->setValue(0);
    QVERIFY(window.row(seen));
    window.after->setFocus();
    QCOMPARE(window.row(seen), nullptr);
}

/// Whoever gives the focus back finds the row hidden, and goes up from there.
void TestSectionListKeys::aSheetOverARowThatIsGoneGivesTheFocusToTheCurrentRow()
{
    ListWindow window;
    window.setRows(1000);
    window.key(Qt::Key_Tab);
    window.key(Qt::Key_Down);
    QWidget *rows = window.row(1)->parentWidget();
    window.after->setFocus();
    window.list->scrollBar()->setValue(30'000);
    QCOMPARE(window.row(1), nullptr);
    rows->setFocus(Qt::OtherFocusReason);
    QVERIFY(window.row(1));
    QCOMPARE(QApplication::focusWidget(), window.row(1));
    QVERIFY(window.row(1)->showsFocus());
    QVERIFY(window.topOf(1) >= 0 && window.topOf(1) < window.list->height());
}

void TestSectionListKeys::aHiddenButtonLeavesTheFocusToItsRow()
{
    ListWindow window;
    window.setSections({{u"A"_s, {{u"a"_s}, {u"b"_s}}}});
    window.key(Qt::Key_Tab);
    window.key(Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), window.row(0)->button());
    TestItem plain{u"a"_s, 100, false, false};
    window.setSections({{u"A"_s, {plain, {u"b"_s}}}});
    QCOMPARE(QApplication::focusWidget(), window.row(0));
    window.key(Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), window.after);
}

void TestSectionListKeys::aListDestroyedWithTheFocusInItIsJustGone()
{
    for (int tabs = 1; tabs <= 2; ++tabs) {
        auto window = std::make_unique<ListWindow>();
        window->setRows(50);
        for (int tab = 0; tab < tabs; ++tab)
            window->key(Qt::Key_Tab);
        QVERIFY(window->list->isAncestorOf(QApplication::focusWidget()));
        window.reset();
        QCOMPARE(QApplication::focusWidget(), nullptr);
    }
}

QTEST_MAIN(TestSectionListKeys)
#include "test_section_list_keys.moc"
