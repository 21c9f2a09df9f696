#include "controls/Menu.h"
#include "controls/PopupButton.h"
#include "controls/PopupCard.h"
#include "look/Accessibility.h"
#include "look/Colors.h"
#include "look/Compositing.h"
#include "look/Symbols.h"
#include "support/Choosing.h"
#include "support/LabelledHeight.h"
#include "support/MenuScene.h"
#include "support/Picture.h"
#include "support/Typing.h"

#include <QApplication>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>

#include <utility>

using namespace Qt::StringLiterals;

class TestMenu : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { installAccessibility(); }
    void init() { QApplication::setPalette(applicationPalette(ColorScheme::Light)); }

    void aClickOpensTheMenuBelowTheLabel();
    void theMenuIsAsWideAsItsLabelAndAsHighAsItsItems();
    void keysOpenTheMenuAtTheChosenItem_data();
    void keysOpenTheMenuAtTheChosenItem();
    void aKeyHeldOnTheLabelChoosesNothing_data();
    void aKeyHeldOnTheLabelChoosesNothing();
    void otherKeysAreLeftToTheForm();
    void anItemIsChosenByClick();
    void anItemIsChosenByKey_data();
    void anItemIsChosenByKey();
    void anItemIsFoundByTyping();
    void escapeClosesTheMenuAndChoosesNothing();
    void aClickElsewhereOrOnTheShadowChoosesNothing();
    void aClickOnTheLabelClosesItsMenu();
    void aMenuClearOfTheScreensEndOpensAbove();
    void textsAreShownAsTheyAre();
    void theMenuLooksAsDrawn_data();
    void theMenuLooksAsDrawn();
    void theLabelLooksAsDrawn_data();
    void theLabelLooksAsDrawn();
    void aLongLabelIsCutAndToldInFull();
    void anEnormousLabelDoesNotWidenAnything();
    void theWheelScrollsTheFormAndChangesNothing();
    void theRingShowsForTheKeyboardOnlyAndStaysUnderTheMenu();
    void screenReadersHearWhatIsChosenAndOpenTheMenu();
};

void TestMenu::aClickOpensTheMenuBelowTheLabel()
{
    const MenuScene it;
    QTest::mouseClick(it.picker, Qt::LeftButton);
    QVERIFY(it.menu()->isVisible());
    const QRect label(it.picker->mapToGlobal(QPoint()), it.picker->size());
    QCOMPARE(it.card().topLeft(), label.bottomLeft() + QPoint(0, 1 + 4));
    QVERIFY(!it.menu()->activeAction());
}

void TestMenu::theMenuIsAsWideAsItsLabelAndAsHighAsItsItems()
{
    const MenuScene it;
    QTest::mouseClick(it.picker, Qt::LeftButton);
    QCOMPARE(it.card().size(), QSize(220, 4 + 3 * 26 + 4));
    QCOMPARE(it.picker->size(), QSize(220, labelledHeight()));
}

void TestMenu::keysOpenTheMenuAtTheChosenItem_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Space") << Qt::Key_Space;
    QTest::newRow("Return") << Qt::Key_Return;
    QTest::newRow("Enter") << Qt::Key_Enter;
    QTest::newRow("Down") << Qt::Key_Down;
}

void TestMenu::keysOpenTheMenuAtTheChosenItem()
{
    QFETCH(Qt::Key, key);
    const MenuScene it;
    QTest::keyClick(it.picker, key);
    QVERIFY(it.menu()->isVisible());
    QCOMPARE(it.menu()->activeAction(), it.menu()->actions().at(1));
}

void TestMenu::aKeyHeldOnTheLabelChoosesNothing_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Space") << Qt::Key_Space;
    QTest::newRow("Return") << Qt::Key_Return;
}

void TestMenu::aKeyHeldOnTheLabelChoosesNothing()
{
    QFETCH(Qt::Key, key);
    MenuScene it;
    QTest::keyPress(it.picker, key);
    repeat(it.menu(), key);
    QTest::keyRelease(it.menu(), key);
    QVERIFY(it.menu()->isVisible());
    QCOMPARE(it.chosen.count(), 0);
    QTest::keyClick(it.menu(), key);
    QVERIFY(!it.menu()->isVisible());
    QCOMPARE(it.chosen.count(), 1);
    // The menu is gone while the key that chose is still down.
    repeat(it.picker, key);
    QVERIFY(!it.menu()->isVisible());
}

void TestMenu::otherKeysAreLeftToTheForm()
{
    const MenuScene it;
    for (const auto key : {Qt::Key_Up, Qt::Key_Left, Qt::Key_Escape, Qt::Key_A})
        QTest::keyClick(it.picker, key);
    QVERIFY(!it.menu()->isVisible());
    QVERIFY(it.picker->hasFocus());
}

void TestMenu::anItemIsChosenByClick()
{
    const MenuScene it;
    chooseByClick(it.picker, u"<b>Causarium</b>"_s);
    QVERIFY(!it.menu()->isVisible());
    QCOMPARE(it.chosen, QList<QVariantList>{{u"<b>Causarium</b>"_s}});
    // What is chosen is for the owner to show.
    QCOMPARE(it.picker->label(), u"Amis & Cie"_s);
    it.picker->setValue(u"<b>Causarium</b>"_s);
    QCOMPARE(it.picker->label(), u"<b>Causarium</b>"_s);
    QVERIFY(it.menu()->actions().at(2)->isChecked());
    QVERIFY(!it.menu()->actions().at(1)->isChecked());
}

void TestMenu::anItemIsChosenByKey_data()
{
    QTest::addColumn<QList<Qt::Key>>("keys");
    QTest::addColumn<QString>("chosen");
    QTest::newRow("the same again") << QList{Qt::Key_Return} << u"Amis & Cie"_s;
    QTest::newRow("the next") << QList{Qt::Key_Down, Qt::Key_Return} << u"<b>Causarium</b>"_s;
    QTest::newRow("the one before, by Space") << QList{Qt::Key_Up, Qt::Key_Space} << u"La Grange"_s;
    QTest::newRow("round the end")
        << QList{Qt::Key_Down, Qt::Key_Down, Qt::Key_Enter} << u"La Grange"_s;
}

void TestMenu::anItemIsChosenByKey()
{
    QFETCH(QList<Qt::Key>, keys);
    QFETCH(QString, chosen);
    const MenuScene it;
    QTest::keyClick(it.picker, Qt::Key_Space);
    for (const auto key : std::as_const(keys))
        QTest::keyClick(it.menu(), key);
    QVERIFY(!it.menu()->isVisible());
    QCOMPARE(it.chosen, QList<QVariantList>{{chosen}});
}

void TestMenu::anItemIsFoundByTyping()
{
    const MenuScene it;
    QTest::keyClick(it.picker, Qt::Key_Space);
    QTest::keyClicks(it.menu(), u"la"_s);
    QCOMPARE(it.menu()->activeAction(), it.menu()->actions().at(0));
}

void TestMenu::escapeClosesTheMenuAndChoosesNothing()
{
    const MenuScene it;
    QTest::keyClick(it.picker, Qt::Key_Space);
    QTest::keyClick(it.menu(), Qt::Key_Escape);
    QVERIFY(!it.menu()->isVisible());
    QVERIFY(it.window.isVisible());
    QVERIFY(it.picker->hasFocus());
    QCOMPARE(it.chosen.count(), 0);
}

void TestMenu::aClickElsewhereOrOnTheShadowChoosesNothing()
{
    const MenuScene it;
    const QMargins margins = popupMargins(isComposited());
    for (const QPoint at : {QPoint(-30, -30), QPoint(margins.left() - 3, 60)}) {
        QTest::mouseClick(it.picker, Qt::LeftButton);
        QTest::mouseClick(it.menu(), Qt::LeftButton, {}, at);
        QVERIFY(!it.menu()->isVisible());
    }
    QCOMPARE(it.chosen.count(), 0);
}

void TestMenu::aClickOnTheLabelClosesItsMenu()
{
    const MenuScene it;
    QTest::mouseClick(it.picker, Qt::LeftButton);
    const QPoint onLabel = it.picker->mapToGlobal(it.picker->rect().center());
    QTest::mousePress(it.menu(), Qt::LeftButton, {}, it.menu()->mapFromGlobal(onLabel));
    QVERIFY(!it.menu()->isVisible());
    QVERIFY(!it.picker->isDown());
    QTest::mouseClick(it.picker, Qt::LeftButton);
    QVERIFY(it.menu()->isVisible());
}

void TestMenu::aMenuClearOfTheScreensEndOpensAbove()
{
    MenuScene it;
    const QRect screen = it.window.screen()->availableGeometry();
    it.window.move(50, screen.bottom() - 100);
    QTest::keyClick(it.picker, Qt::Key_Space);
    QCOMPARE(it.card().bottom(), it.picker->mapToGlobal(QPoint()).y() - 4 - 1);
    it.menu()->hide();
    // The card goes up to the very edge: only its shadow is cut off.
    it.window.move(screen.left() - 60, 50);
    QTest::keyClick(it.picker, Qt::Key_Space);
    QCOMPARE(it.card().left(), screen.left());
}

void TestMenu::textsAreShownAsTheyAre()
{
    const MenuScene it;
    QCOMPARE(it.menu()->actions().at(1)->text(), u"Amis && Cie"_s);
    QTest::keyClick(it.picker, Qt::Key_Space);
    auto *reader = QAccessible::queryAccessibleInterface(it.menu());
    QCOMPARE(reader->childCount(), 3);
    QCOMPARE(reader->child(1)->text(QAccessible::Name), u"Amis & Cie"_s);
    QCOMPARE(reader->child(2)->text(QAccessible::Name), u"<b>Causarium</b>"_s);
    QVERIFY(reader->child(1)->state().checked);
    QVERIFY(!reader->child(2)->state().checked);
}

void TestMenu::theMenuLooksAsDrawn_data()
{
    QTest::addColumn<ColorScheme>("scheme");
    QTest::newRow("light") << ColorScheme::Light;
    QTest::newRow("dark") << ColorScheme::Dark;
}

void TestMenu::theMenuLooksAsDrawn()
{
    QFETCH(ColorScheme, scheme);
    QApplication::setPalette(applicationPalette(scheme));
    const MenuScene it;
    QTest::keyClick(it.picker, Qt::Key_Down);
    QTest::keyClick(it.menu(), Qt::Key_Down);
    const QPalette palette = it.menu()->palette();
    const QPoint origin(popupMargins(isComposited()).left(), popupMargins(isComposited()).top());
    const QImage image = picture(*it.menu());
    const auto at = [&](int x, int y) { return image.pixelColor(origin + QPoint(x, y)); };
    COMPARE_COLORS(at(110, 2), popupColor(palette));
    COMPARE_COLORS(at(210, 4 + 13), popupColor(palette));
    COMPARE_COLORS(at(210, 4 + 2 * 26 + 13), blended(menuHover(palette), popupColor(palette)));
    COMPARE_COLORS(at(4, 4 + 2 * 26), popupColor(palette)); // its corners are round
    bool hasCheckmark = false;
    for (int y = 4 + 26; y < 4 + 52; ++y) {
        for (int x = 4; x < 32; ++x)
            hasCheckmark = hasCheckmark || alike(at(x, y), accentInk(palette));
    }
    QVERIFY(hasCheckmark);
    if (isComposited())
        QVERIFY(at(-1, 40) != at(-10, 40)); // the edge lies over the shadow
}

void TestMenu::theLabelLooksAsDrawn_data()
{
    theMenuLooksAsDrawn_data();
}

void TestMenu::theLabelLooksAsDrawn()
{
    QFETCH(ColorScheme, scheme);
    QApplication::setPalette(applicationPalette(scheme));
    MenuScene it;
    it.picker->clearFocus();
    const QPalette palette = it.window.palette();
    const QColor fill =
        blended(buttonFill(palette), blended(buttonLift(palette), windowColor(palette)));
    const auto at = [&it](int x, int y) {
        return picture(it.window).pixelColor(it.picker->pos() + QPoint(x, y));
    };
    COMPARE_COLORS(at(4, 14), fill);
    COMPARE_COLORS(at(0, 14), fill); // no line
    COMPARE_COLORS(at(0, 0), windowColor(palette));
    it.picker->setDown(true);
    COMPARE_COLORS(
        at(4, 14),
        blended(buttonPressed(palette), blended(buttonLift(palette), windowColor(palette))));
}

void TestMenu::aLongLabelIsCutAndToldInFull()
{
    MenuScene it;
    const QString longText = u"Association des amis de la bibliothèque et de ses environs"_s;
    it.picker->setValue(longText);
    QVERIFY(it.picker->toolTip().contains(longText));
    QCOMPARE(it.picker->accessibleDescription(), longText);
    QCOMPARE(it.picker->sizeHint().width(), 220);
    it.picker->setValue(u"La Grange"_s);
    QCOMPARE(it.picker->toolTip(), QString());
}

void TestMenu::anEnormousLabelDoesNotWidenAnything()
{
    PopupLabel label(u"Tags"_s);
    label.setLabel(u"a\nb"_s);
    QVERIFY(label.sizeHint().width() < 100);
    label.setLabel(QString(1'000'000, u'x'));
    QVERIFY(label.minimumSizeHint().width() < 100);
    QVERIFY(label.toolTip().size() < 10'000);
    QCOMPARE(label.label().size(), 1'000'000);
    label.resize(200, 28);
    QVERIFY(!label.grab().isNull());
}

void TestMenu::theWheelScrollsTheFormAndChangesNothing()
{
    QScrollArea area;
    auto *form = new QWidget;
    form->setFixedSize(300, 900);
    auto *picker = new PopupButton(u"Tags"_s, {u"a"_s, u"b"_s}, form);
    picker->setValue(u"a"_s);
    picker->setGeometry(10, 10, 220, 28);
    area.setWidget(form);
    area.resize(320, 200);
    area.show();
    area.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&area));
    picker->setFocus();
    const QSignalSpy chosen(picker, &PopupButton::chosen);
    turnWheel(picker);
    QVERIFY(area.verticalScrollBar()->value() > 0);
    QCOMPARE(chosen.count(), 0);
}

void TestMenu::theRingShowsForTheKeyboardOnlyAndStaysUnderTheMenu()
{
    MenuScene it;
    const QColor ink = accentInk(it.window.palette());
    const auto ring = [&it] {
        return picture(it.window).pixelColor(it.picker->pos() + QPoint(40, -2));
    };
    COMPARE_COLORS(ring(), ink);
    QTest::keyClick(it.picker, Qt::Key_Space);
    COMPARE_COLORS(ring(), ink);
    QTest::keyClick(it.menu(), Qt::Key_Escape);
    COMPARE_COLORS(ring(), ink);
    it.picker->setFocus(Qt::MouseFocusReason);
    it.picker->clearFocus();
    it.picker->setFocus(Qt::MouseFocusReason);
    COMPARE_COLORS(ring(), windowColor(it.window.palette()));
}

void TestMenu::screenReadersHearWhatIsChosenAndOpenTheMenu()
{
    const MenuScene it;
    auto *reader = QAccessible::queryAccessibleInterface(it.picker);
    QCOMPARE(reader->role(), QAccessible::ButtonMenu);
    QCOMPARE(reader->text(QAccessible::Name), u"Organisé par"_s);
    QCOMPARE(reader->text(QAccessible::Description), u"Amis & Cie"_s);
    reader->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QVERIFY(it.menu()->isVisible());
    auto *menu = QAccessible::queryAccessibleInterface(it.menu());
    QCOMPARE(menu->text(QAccessible::Name), u"Organisé par"_s);
    menu->child(2)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(it.chosen, QList<QVariantList>{{u"<b>Causarium</b>"_s}});
}

QTEST_MAIN(TestMenu)
#include "test_menu.moc"
