#include "support/SectionListFixture.h"

#include <optional>

using namespace Qt::StringLiterals;

namespace {

QList<TestItem> itemsFrom(int first, int count)
{
    QList<TestItem> items;
    for (int row = first; row < first + count; ++row)
        items.append({QString::number(row), ListWindow::heightOf(row), false, true});
    return items;
}

} // namespace

class TestSectionListContent : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void rowsAddedAboveDoNotMoveWhatIsRead();
    void aRowRemovedAboveDoesNotMoveWhatIsRead();
    void whenTheRowReadIsRemovedTheNextOneStays();
    void whenNothingInViewIsLeftTheListStaysWithinItsEnds();
    void aListAtItsTopStaysThere();
    void aRowThatGrowsAboveTheEyeDoesNotMoveWhatIsRead();
    void theFocusFollowsItsRow();
    void aRemovedRowLeavesTheFocusToTheOneInItsPlace();
    void nothingOfARemovedRowThatHadTheFocusStaysOverTheList();
    void anEmptiedListKeepsTheFocusForWhatComes();
    void theSelectionFollowsItsRow();
    void refreshingFillsTheRowsInViewOnly();
    void aLargerFontMeasuresTheRowsAgain();
    void aRowKeepsItsWidgetAndItsPress();
    void contentIsAskedForFewRowsOnly();
    void aListThatNobodyHasSeenYetMakesNoRows();
};

void TestSectionListContent::rowsAddedAboveDoNotMoveWhatIsRead()
{
    ListWindow window;
    window.setSections({{u"A"_s, itemsFrom(100, 900)}});
    window.list->showRow(400);
    window.wheel({0, -120});
    const QString eye = window.eyeRow();
    const int top = window.topOf(eye);
    window.setSections({{u"New"_s, itemsFrom(0, 100)}, {u"A"_s, itemsFrom(100, 900)}});
    QCOMPARE(window.eyeRow(), eye);
    QCOMPARE(window.topOf(eye), top);
    QVERIFY(window.isSeamless());
}

void TestSectionListContent::aRowRemovedAboveDoesNotMoveWhatIsRead()
{
    ListWindow window;
    auto items = itemsFrom(0, 500);
    window.setSections({{u"A"_s, items}});
    window.list->showRow(200);
    const QString eye = window.eyeRow();
    const int top = window.topOf(eye);
    items.removeAt(3);
    items.removeAt(90);
    window.setSections({{u"A"_s, items}});
    QCOMPARE(window.eyeRow(), eye);
    QCOMPARE(window.topOf(eye), top);
}

void TestSectionListContent::whenTheRowReadIsRemovedTheNextOneStays()
{
    ListWindow window;
    auto items = itemsFrom(0, 500);
    window.setSections({{u"A"_s, items}});
    window.list->showRow(200);
    window.wheel({0, -40});
    const int eye = window.eyeRow().toInt();
    const int next = window.topOf(eye + 1);
    items.removeAt(eye);
    window.setSections({{u"A"_s, items}});
    QCOMPARE(window.topOf(QString::number(eye + 1)), next);
    QVERIFY(window.isSeamless());
}

void TestSectionListContent::whenNothingInViewIsLeftTheListStaysWithinItsEnds()
{
    ListWindow window;
    window.setSections({{u"A"_s, itemsFrom(0, 500)}});
    window.list->showRow(400);
    window.setSections({{u"B"_s, itemsFrom(1000, 20)}});
    QVERIFY(window.isSeamless());
    QCOMPARE(window.topOf(19) + window.row(19)->height(), window.list->height() - 1);
    window.setSections({{u"C"_s, itemsFrom(2000, 2)}}); // shorter than the view
    QCOMPARE(window.topOf(0), 34);
    QCOMPARE(window.list->scrollBar()->maximum(), 0);
}

void TestSectionListContent::aListAtItsTopStaysThere()
{
    ListWindow window;
    window.setSections({{u"A"_s, itemsFrom(10, 100)}});
    window.setSections({{u"A"_s, itemsFrom(5, 105)}});
    QCOMPARE(window.list->scrollBar()->value(), 0);
    QCOMPARE(window.topOf(u"5"_s), 34);
}

void TestSectionListContent::aRowThatGrowsAboveTheEyeDoesNotMoveWhatIsRead()
{
    ListWindow window;
    auto items = itemsFrom(0, 300);
    window.setSections({{u"A"_s, items}});
    window.list->showRow(100);
    const QString eye = window.eyeRow();
    const int top = window.topOf(eye);
    for (int row = 90; row < eye.toInt(); ++row)
        items[row].height += 70;
    window.setSections({{u"A"_s, items}});
    QCOMPARE(window.topOf(eye), top);
}

void TestSectionListContent::theFocusFollowsItsRow()
{
    ListWindow window;
    window.setSections({{u"A"_s, itemsFrom(10, 300)}});
    window.key(Qt::Key_Tab);
    for (int row = 0; row < 5; ++row)
        window.key(Qt::Key_Down);
    auto *focused = window.row(u"15"_s);
    QCOMPARE(QApplication::focusWidget(), focused);
    window.setSections({{u"A"_s, itemsFrom(0, 310)}});
    QCOMPARE(QApplication::focusWidget(), window.row(u"15"_s));
    QCOMPARE(window.row(u"15"_s)->id(), u"15"_s);
    QVERIFY(window.row(u"15"_s)->showsFocus());
    QCOMPARE(window.list->currentRow(), 15);
    // Also far out of view, and on a button.
    window.key(Qt::Key_Tab);
    window.list->scrollBar()->setValue(10000);
    window.setSections({{u"A"_s, itemsFrom(3, 310)}});
    QCOMPARE(QApplication::focusWidget(), window.row(u"15"_s)->button());
    window.key(Qt::Key_Down);
    QCOMPARE(QApplication::focusWidget(), window.row(u"16"_s));
}

void TestSectionListContent::aRemovedRowLeavesTheFocusToTheOneInItsPlace()
{
    ListWindow window;
    auto items = itemsFrom(0, 20);
    window.setSections({{u"A"_s, items}});
    window.key(Qt::Key_Tab);
    window.key(Qt::Key_Down);
    window.key(Qt::Key_Tab); // on its button, as for a deletion
    items.removeAt(1);
    window.setSections({{u"A"_s, items}});
    QCOMPARE(QApplication::focusWidget(), window.row(u"2"_s));
    window.key(Qt::Key_End);
    items.removeLast();
    window.setSections({{u"A"_s, items}});
    QCOMPARE(QApplication::focusWidget(), window.row(u"18"_s));
}

void TestSectionListContent::nothingOfARemovedRowThatHadTheFocusStaysOverTheList()
{
    ListWindow window;
    window.setSections({{u"A"_s, itemsFrom(0, 20)}});
    window.key(Qt::Key_Tab);
    window.key(Qt::Key_Down);
    window.key(Qt::Key_Tab); // on its button
    window.setSections({{u"A"_s, itemsFrom(100, 20)}});
    QCOMPARE(window.leftovers(), QStringList());
    QCOMPARE(QApplication::focusWidget(), window.row(1));

    // The same by far, and while another window has the keyboard.
    window.list->scrollBar()->setValue(800);
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    window.setSections({{u"A"_s, itemsFrom(200, 20)}});
    QCOMPARE(window.leftovers(), QStringList());
    QCOMPARE(window.focusWidget(), window.row(1));
    QCOMPARE(window.row(1)->id(), u"201"_s);
}

void TestSectionListContent::anEmptiedListKeepsTheFocusForWhatComes()
{
    ListWindow window;
    window.setRows(10);
    window.key(Qt::Key_Tab);
    window.setSections({});
    QCOMPARE(QApplication::focusWidget(), window.list);
    QCOMPARE(window.list->currentRow(), std::nullopt);
    window.setRows(10);
    QCOMPARE(QApplication::focusWidget(), window.row(0));
}

void TestSectionListContent::theSelectionFollowsItsRow()
{
    ListWindow window;
    window.setSections({{u"A"_s, itemsFrom(10, 100)}});
    window.list->setSelectedRow(u"12"_s);
    QVERIFY(window.row(2)->isSelected());
    window.setSections({{u"A"_s, itemsFrom(9, 100)}});
    QVERIFY(window.row(u"12"_s)->isSelected());
    QVERIFY(!window.row(2)->isSelected());
    window.list->setSelectedRow({});
    QVERIFY(!window.row(u"12"_s)->isSelected());
}

void TestSectionListContent::refreshingFillsTheRowsInViewOnly()
{
    ListWindow window;
    window.setRows(100000);
    window.list->showRow(5000);
    const QString eye = window.eyeRow();
    const int top = window.topOf(eye);
    TestRow::fills = 0;
    window.list->refreshRows();
    QVERIFY(TestRow::fills > 3 && TestRow::fills < 20);
    QCOMPARE(window.topOf(eye), top);
}

void TestSectionListContent::aLargerFontMeasuresTheRowsAgain()
{
    ListWindow window;
    window.setRows(100);
    TestRow::measures = 0;
    QFont font = window.list->font();
    font.setPixelSize(30);
    window.list->setFont(font);
    QTRY_VERIFY(TestRow::measures > 3);
}

void TestSectionListContent::aRowKeepsItsWidgetAndItsPress()
{
    ListWindow window;
    window.setRows(100);
    auto *widget = window.row(2);
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, window.inWindow(2, {60, 40}));
    window.setRows(101);
    QCOMPARE(window.row(2), widget);
    QVERIFY(widget->isPressed());
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, window.inWindow(2, {60, 40}));
    QCOMPARE(window.activated, QStringList{u"2"_s});
}

void TestSectionListContent::contentIsAskedForFewRowsOnly()
{
    ListWindow window;
    int asked = 0;
    const auto contentOf = [&asked](int count) {
        SectionListContent content;
        content.sections.append({u"A"_s, count});
        content.rowId = [&asked](int row) {
            ++asked;
            return QString::number(row);
        };
        content.fill = [](SectionListRow &row, int index) {
            static_cast<TestRow &>(row).show({QString::number(index)});
        };
        return content;
    };
    window.list->setContent(contentOf(100000));
    window.list->setContent(contentOf(100001));
    window.list->showRow(70000);
    QVERIFY2(asked < 200, qPrintable(QString::number(asked)));
}

void TestSectionListContent::aListThatNobodyHasSeenYetMakesNoRows()
{
    int made = 0;
    QWidget window;
    window.resize(400, 300);
    SectionList list(
        [&made] {
            ++made;
            return new TestRow;
        },
        &window);
    list.resize(400, 300);
    list.hide();
    window.show();
    SectionListContent content;
    content.sections.append({u"A"_s, 100});
    content.rowId = [](int row) { return QString::number(row); };
    content.fill = [](SectionListRow &row, int index) {
        static_cast<TestRow &>(row).show({QString::number(index)});
    };
    list.setContent(content);
    list.setSelectedRow(u"3"_s);
    QCOMPARE(made, 0);
    list.show();
    QVERIFY(made > 0);
    QVERIFY(list.rowAt({50, 200}));
    QVERIFY(list.widgetOf(*list.rowAt({50, 200}))->isVisible());
}

QTEST_MAIN(TestSectionListContent)
#include "test_section_list_content.moc"
