#include "support/SectionListFixture.h"

#include <QAccessible>

using namespace Qt::StringLiterals;

class TestSectionListReader : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theReaderFindsAListOfHeadingsAndRows();
    void theReaderWalksThroughRowsThatHaveNoWidget();
    void nothingOfARowThatWasReadWhileTheListWasHiddenStaysOverIt();
    void theFocusedRowReadsAsOutOfViewOnceItWasScrolledAway();
    void givingAFarRowTheFocusScrollsToIt();
    void aRowThatComesIntoViewIsStillTheOneInHand();
    void rowsArePressedThroughTheReader();
    void theSelectedRowReadsAsSelected();
};

namespace {

QAccessibleInterface *interfaceOf(QObject *object)
{
    return QAccessible::queryAccessibleInterface(object);
}

} // namespace

void TestSectionListReader::theReaderFindsAListOfHeadingsAndRows()
{
    ListWindow window;
    window.setRows(30, 10);
    auto *list = interfaceOf(window.list);
    QCOMPARE(list->role(), QAccessible::List);
    QCOMPARE(list->childCount(), 33);
    QCOMPARE(list->child(0)->role(), QAccessible::Heading);
    QCOMPARE(list->child(0)->text(QAccessible::Name), u"Section 0"_s);
    QCOMPARE(list->child(1)->role(), QAccessible::ListItem);
    QCOMPARE(list->child(1)->text(QAccessible::Name), u"0"_s);
    QCOMPARE(list->child(1)->object(), window.row(0));
    QCOMPARE(list->child(11)->role(), QAccessible::Heading);
    QCOMPARE(list->child(12)->text(QAccessible::Name), u"10"_s);
    QCOMPARE(interfaceOf(window.row(2))->parent(), list);
    QCOMPARE(list->indexOfChild(interfaceOf(window.row(2))), 3);
    QCOMPARE(list->child(33), nullptr);
    const QPoint at = window.list->mapToGlobal(QPoint(60, window.topOf(1) + 5));
    QCOMPARE(list->childAt(at.x(), at.y())->object(), window.row(1));
}

void TestSectionListReader::theReaderWalksThroughRowsThatHaveNoWidget()
{
    ListWindow window;
    window.setRows(100000, 100);
    auto *list = interfaceOf(window.list);
    const int alive = TestRow::alive;
    for (int index = 50000; index < 50300; ++index) {
        auto *item = list->child(index);
        QVERIFY(item && item->isValid());
        QCOMPARE(list->indexOfChild(item), index);
        QCOMPARE(item->parent(), list);
        const int section = index / 101;
        const int row = index - section - 1;
        const bool isHeading = index % 101 == 0;
        QCOMPARE(item->role(), isHeading ? QAccessible::Heading : QAccessible::ListItem);
        QCOMPARE(item->text(QAccessible::Name),
                 isHeading ? u"Section %1"_s.arg(section) : QString::number(row));
        QVERIFY(item->state().offscreen);
    }
    QVERIFY(TestRow::alive <= alive + 1);
    window.setRows(20);
    QCOMPARE(list->child(16)->text(QAccessible::Name), u"14"_s);
}

void TestSectionListReader::nothingOfARowThatWasReadWhileTheListWasHiddenStaysOverIt()
{
    ListWindow window;
    window.setRows(100);
    window.list->hide();
    QCOMPARE(interfaceOf(window.list)->child(98)->text(QAccessible::Name), u"89"_s);
    window.list->show();
    QCoreApplication::processEvents();
    QCOMPARE(window.leftovers(), QStringList());
    QVERIFY(window.isSeamless());
}

void TestSectionListReader::theFocusedRowReadsAsOutOfViewOnceItWasScrolledAway()
{
    ListWindow window;
    window.setRows(100);
    window.list->focusRow(u"0"_s);
    QVERIFY(!interfaceOf(window.row(0))->state().offscreen);
    window.list->scrollBar()->setValue(window.list->scrollBar()->maximum());
    QCOMPARE(QApplication::focusWidget(), window.row(0));
    QVERIFY(interfaceOf(window.row(0))->state().offscreen);
    QVERIFY(!interfaceOf(window.row(99))->state().offscreen);
}

void TestSectionListReader::givingAFarRowTheFocusScrollsToIt()
{
    ListWindow window;
    window.setRows(100000, 100);
    auto *item = interfaceOf(window.list)->child(50005);
    const QString name = item->text(QAccessible::Name);
    item->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
    auto *focus = qobject_cast<TestRow *>(QApplication::focusWidget());
    QVERIFY(focus);
    QCOMPARE(focus->accessibleName(), name);
    QVERIFY(focus->parentWidget()->rect().contains(focus->geometry()));
    QVERIFY(interfaceOf(focus)->state().focused);
    // From there to the next one, which is near and has a widget.
    QCOMPARE(interfaceOf(window.list)->child(50006)->text(QAccessible::Name),
             QString::number(name.toInt() + 1));
}

void TestSectionListReader::aRowThatComesIntoViewIsStillTheOneInHand()
{
    ListWindow window;
    window.setRows(1000);
    auto *item = interfaceOf(window.list)->child(552);
    QCOMPARE(item->childCount(), 0);
    QVERIFY(!item->state().focused);

    item->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
    QVERIFY(item->state().focused);
    QVERIFY(!item->state().offscreen);
    QCOMPARE(item->childCount(), 1);
    QCOMPARE(item->child(0)->object(), window.row(501)->button());
    window.list->setSelectedRow(u"501"_s);
    QVERIFY(item->state().selected);
}

void TestSectionListReader::rowsArePressedThroughTheReader()
{
    ListWindow window;
    window.setRows(1000);
    auto *list = interfaceOf(window.list);
    auto *near = list->child(2)->actionInterface();
    QVERIFY(near->actionNames().contains(QAccessibleActionInterface::pressAction()));
    near->doAction(QAccessibleActionInterface::pressAction());
    list->child(552)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(window.activated, (QStringList{u"1"_s, u"501"_s}));
    QCOMPARE(list->child(0)->actionInterface(), nullptr);
}

void TestSectionListReader::theSelectedRowReadsAsSelected()
{
    ListWindow window;
    window.setRows(10);
    window.list->setSelectedRow(u"1"_s);
    QVERIFY(interfaceOf(window.row(1))->state().selected);
    QVERIFY(!interfaceOf(window.row(2))->state().selected);
    QVERIFY(interfaceOf(window.row(2))->state().selectable);
}

QTEST_MAIN(TestSectionListReader)
#include "test_section_list_reader.moc"
