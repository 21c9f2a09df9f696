#include "controls/BusyIndicator.h"
#include "controls/ErrorText.h"
#include "controls/IconButton.h"
#include "controls/LinkLabel.h"
#include "controls/TabStrip.h"
#include "controls/TabView.h"
#include "controls/TextLabel.h"
#include "look/Accessibility.h"
#include "look/Colors.h"
#include "look/FocusRing.h"
#include "look/Fonts.h"
#include "look/KeyboardFocus.h"
#include "support/Announcements.h"
#include "support/Picture.h"
#include "support/Typing.h"

#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

struct TwoTabs {
    QWidget window;
    TabView *tabs = new TabView;
    QLineEdit *after = new QLineEdit;

    TwoTabs()
    {
        auto *column = new QVBoxLayout(&window);
        column->addWidget(tabs);
        column->addWidget(after);
        tabs->addTab(u"À venir"_s, new QWidget);
        tabs->addTab(u"Passés"_s, new QWidget);
        window.resize(400, 300);
        window.show();
        window.activateWindow();
    }

    QWidget *first() { return tabs->strip()->findChildren<QWidget *>().at(0); }
    QWidget *second() { return tabs->strip()->findChildren<QWidget *>().at(1); }
};

} // namespace

class TestControlsKeys : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        installAccessibility();
        QApplication::setPalette(applicationPalette(ColorScheme::Light));
    }

    void aClickOnATabShowsItsPage()
    {
        TwoTabs it;
        QSignalSpy changed(it.tabs, &TabView::currentChanged);
        QTest::mouseClick(it.second(), Qt::LeftButton);
        QCOMPARE(it.tabs->currentIndex(), 1);
        QVERIFY(it.tabs->page(1)->isVisible());
        QVERIFY(!it.tabs->page(0)->isVisible());
        QTest::mouseClick(it.second(), Qt::LeftButton);
        QCOMPARE(changed.count(), 1);
    }

    void arrowsHomeAndEndMoveTheChoiceAndTheFocus()
    {
        TwoTabs it;
        QTRY_VERIFY(it.window.isActiveWindow());
        it.first()->setFocus(Qt::TabFocusReason);
        const auto press = [](Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); };
        press(Qt::Key_Right);
        QCOMPARE(it.tabs->currentIndex(), 1);
        QVERIFY(it.second()->hasFocus());
        press(Qt::Key_Right);
        QCOMPARE(it.tabs->currentIndex(), 1);
        press(Qt::Key_Home);
        QCOMPARE(it.tabs->currentIndex(), 0);
        press(Qt::Key_End);
        QCOMPARE(it.tabs->currentIndex(), 1);
        press(Qt::Key_Left);
        QCOMPARE(it.tabs->currentIndex(), 0);
        QVERIFY(it.first()->hasFocus());
    }

    void theTabsAreOneStopOnTheTabKeysWay()
    {
        TwoTabs it;
        QTRY_VERIFY(it.window.isActiveWindow());
        it.tabs->setCurrentIndex(1);
        it.after->setFocus(Qt::TabFocusReason);
        QTest::keyClick(it.after, Qt::Key_Backtab);
        QVERIFY(it.second()->hasFocus());
        QTest::keyClick(it.second(), Qt::Key_Tab);
        QVERIFY(it.after->hasFocus());
    }

    void theTabsAreTabsToAScreenReader()
    {
        TwoTabs it;
        auto *list = read(it.tabs->strip());
        QCOMPARE(list->role(), QAccessible::PageTabList);
        QCOMPARE(list->childCount(), 2);
        auto *first = list->child(0);
        auto *second = list->child(1);
        QCOMPARE(second->role(), QAccessible::PageTab);
        QCOMPARE(second->text(QAccessible::Name), u"Passés"_s);
        QVERIFY(first->state().selected);
        QVERIFY(!second->state().selected);
        second->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(it.tabs->currentIndex(), 1);
        QVERIFY(second->state().selected);
    }

    void anIconButtonPressesByMouseByKeysAndByScreenReader()
    {
        IconButton button(Symbol::Trash, u"Supprimer"_s, red);
        button.resize(button.sizeHint());
        button.show();
        QSignalSpy clicked(&button, &QAbstractButton::clicked);
        QTest::mouseClick(&button, Qt::LeftButton);
        QTest::keyClick(&button, Qt::Key_Space);
        QTest::keyClick(&button, Qt::Key_Return);
        QTest::keyClick(&button, Qt::Key_Enter);
        QCOMPARE(clicked.count(), 4);
        auto *interface = read(&button);
        QCOMPARE(interface->role(), QAccessible::Button);
        QCOMPARE(interface->text(QAccessible::Name), u"Supprimer"_s);
        const QString press = QAccessibleActionInterface::pressAction();
        QVERIFY(interface->actionInterface()->actionNames().contains(press));
        interface->actionInterface()->doAction(press);
        QCOMPARE(clicked.count(), 5);

        button.setEnabled(false);
        interface->actionInterface()->doAction(press);
        QTest::mouseClick(&button, Qt::LeftButton);
        QCOMPARE(clicked.count(), 5);
    }

    void aHeldKeyPressesOnce_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::newRow("Return") << Qt::Key_Return;
        QTest::newRow("Enter") << Qt::Key_Enter;
        QTest::newRow("Space") << Qt::Key_Space;
    }

    void aHeldKeyPressesOnce()
    {
        QFETCH(Qt::Key, key);
        QWidget window;
        const QList<QAbstractButton *> buttons = {
            new IconButton(Symbol::Trash, u"Supprimer"_s, red, &window),
            new LinkLabel(u"Ouvrir le lien"_s, QUrl(u"file:///"_s), &window)};
        window.show();
        for (QAbstractButton *button : buttons) {
            QSignalSpy clicked(button, &QAbstractButton::clicked);
            hold(button, key);
            QCOMPARE(clicked.count(), 1);
            hold(button, key);
            QCOMPARE(clicked.count(), 2);
        }
    }

    void aHeldKeyReachesNothingBehindWhatItPresses()
    {
        struct Behind : QWidget {
            int keys = 0;
            void keyPressEvent(QKeyEvent *) override { ++keys; }
        };
        Behind behind;
        IconButton button(Symbol::Trash, u"Supprimer"_s, red, &behind);
        behind.show();
        hold(&button, Qt::Key_Space);
        hold(&button, Qt::Key_Return);
        QCOMPARE(behind.keys, 0);
        QTest::keyClick(&button, Qt::Key_A);
        QCOMPARE(behind.keys, 1);
    }

    void theRingShowsForTheKeyboardOnly_data()
    {
        QTest::addColumn<Qt::FocusReason>("reason");
        QTest::addColumn<bool>("shown");
        QTest::newRow("tab") << Qt::TabFocusReason << true;
        QTest::newRow("back") << Qt::BacktabFocusReason << true;
        QTest::newRow("shortcut") << Qt::ShortcutFocusReason << true;
        QTest::newRow("mouse") << Qt::MouseFocusReason << false;
        QTest::newRow("program") << Qt::OtherFocusReason << false;
    }

    void theRingShowsForTheKeyboardOnly()
    {
        QFETCH(Qt::FocusReason, reason);
        QFETCH(bool, shown);
        QWidget window;
        auto *column = new QVBoxLayout(&window);
        auto *other = new QLineEdit;
        auto *button = new IconButton(Symbol::Pencil, u"Modifier"_s);
        column->addWidget(other);
        column->addWidget(button);
        window.show();
        window.activateWindow();
        QTRY_VERIFY(window.isActiveWindow());
        other->setFocus();
        button->setFocus(reason);
        const QColor edge = picture(*button).pixelColor(12, 1);
        QCOMPARE(alike(edge, accentInk(window.palette())), shown);
        other->setFocus();
        COMPARE_COLORS(picture(*button).pixelColor(12, 1), windowColor(window.palette()));
    }

    void aFieldsRingShowsHoweverItGotTheFocus()
    {
        QWidget window;
        QLineEdit field(&window);
        auto *ring = new FocusRing(&field, 6, 0, KeyboardFocus::Shown::Always);
        field.setGeometry(20, 20, 100, 28);
        window.resize(200, 100);
        window.show();
        window.activateWindow();
        QTRY_VERIFY(window.isActiveWindow());
        window.setFocus();
        QVERIFY(!ring->isVisible());
        QTest::mouseClick(&field, Qt::LeftButton);
        QVERIFY(ring->isVisible());
        QCOMPARE(ring->geometry(), QRect(18, 18, 104, 32));
    }

    void aRingFollowsItsControlAndFindsRoomInAnAncestor()
    {
        QWidget window;
        auto *box = new QWidget(&window);
        auto *button = new IconButton(Symbol::Plus, u"Ajouter"_s, primaryText, box);
        auto *ring = new FocusRing(button, 6);
        box->setGeometry(30, 30, 24, 24);
        button->setGeometry(0, 0, 24, 24);
        window.resize(200, 100);
        window.show();
        window.activateWindow();
        QTRY_VERIFY(window.isActiveWindow());
        KeyboardFocus::give(button);
        QVERIFY(ring->isVisible());
        QCOMPARE(ring->parentWidget(), &window);
        QCOMPARE(ring->geometry(), QRect(27, 27, 30, 30));
        COMPARE_COLORS(picture(window).pixelColor(42, 28), accentInk(window.palette()));
        COMPARE_COLORS(picture(window).pixelColor(42, 29), windowColor(window.palette()));
        box->move(60, 40);
        QCOMPARE(ring->geometry(), QRect(57, 37, 30, 30));
        QTest::mouseClick(&window, Qt::LeftButton, {}, {58, 50});
        button->hide();
        QVERIFY(!ring->isVisible());
        delete button;
        QVERIFY(window.findChildren<FocusRing *>().isEmpty());
    }

    void aWindowThatComesBackBringsTheRingBack()
    {
        QWidget window;
        auto *button = new IconButton(Symbol::Plus, u"Ajouter"_s, primaryText, &window);
        auto *focus = button->findChild<KeyboardFocus *>();
        auto *before = new QLineEdit(&window);
        window.show();
        window.activateWindow();
        QTRY_VERIFY(window.isActiveWindow());
        before->setFocus();
        button->setFocus(Qt::TabFocusReason);
        QVERIFY(focus->isVisible());
        QWidget other;
        other.show();
        other.activateWindow();
        QTRY_VERIFY(!focus->isVisible());
        window.activateWindow();
        QTRY_VERIFY(focus->isVisible());
    }

    void textsAreReadWithTheRoleThatTheyHave()
    {
        TextLabel label(u"Novembre 2026"_s, appFont(13));
        QCOMPARE(read(&label)->role(), QAccessible::StaticText);
        setAccessibleRole(&label, QAccessible::Heading);
        QCOMPARE(read(&label)->role(), QAccessible::Heading);
        QCOMPARE(read(&label)->text(QAccessible::Name), u"Novembre 2026"_s);
    }

    void tooltipsAreForTheEyeAlone()
    {
        IconButton button(Symbol::Trash, u"Supprimer"_s);
        QVERIFY(!button.toolTip().isEmpty());
        QCOMPARE(read(&button)->text(QAccessible::Description), QString());
        TextLabel label(u"Une phrase qui ne tient pas sur une ligne"_s, appFont(13));
        label.setMaximumLines(1);
        label.resize(60, label.heightForWidth(60));
        label.show();
        QVERIFY(!label.toolTip().isEmpty());
        QCOMPARE(read(&label)->text(QAccessible::Description), QString());
    }

    void aLinkTellsWhereItLeads()
    {
        const QString address = u"https://exemple.fr/?a=<b>&c=2"_s;
        LinkLabel link(u"Ouvrir le lien"_s, QUrl(address));
        QCOMPARE(read(&link)->role(), QAccessible::Link);
        QCOMPARE(read(&link)->text(QAccessible::Description), QUrl(address).toDisplayString());
    }

    void aWindowIsReadAsAWindowAndWhatIsInItIsNot()
    {
        QWidget window;
        auto *within = new QWidget(&window);
        QCOMPARE(read(&window)->role(), QAccessible::Window);
        QVERIFY(read(within)->role() != QAccessible::Window);
        QWidget popup(nullptr, Qt::Popup);
        QVERIFY(read(&popup)->role() != QAccessible::Window);
    }

    void whatIsBusySaysSo()
    {
        BusyIndicator busy(u"Loading events…"_s);
        QCOMPARE(read(&busy)->role(), QAccessible::Notification);
        QCOMPARE(read(&busy)->text(QAccessible::Name), u"Loading events…"_s);
    }

    void anErrorAnnouncesItselfWhenItAppearsAndWhenItChanges()
    {
        if (!Announcements::areMade())
            QSKIP("needs a display and QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1");
        const Announcements told;
        ErrorText error;
        QCOMPARE(read(&error)->role(), QAccessible::Notification);
        error.setText(u"un"_s);
        Announcements::forget();
        error.show();
        QVERIFY(told.contains(QAccessible::ObjectShow, &error));
        Announcements::forget();
        error.setText(u"deux"_s);
        QVERIFY(told.contains(QAccessible::ObjectShow, &error));
        QCOMPARE(read(&error)->text(QAccessible::Name), u"deux"_s);
        Announcements::forget();
        error.setText(u"deux"_s);
        QVERIFY(!told.contains(QAccessible::ObjectShow, &error));
    }
};

QTEST_MAIN(TestControlsKeys)
#include "test_controls_keys.moc"
