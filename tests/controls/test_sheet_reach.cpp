// What lies below a sheet is out of reach, and what is typed in it is not lost.

#include "look/Accessibility.h"
#include "look/Colors.h"
#include "support/Picture.h"
#include "support/SheetScene.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMimeData>
#include <QPointingDevice>
#include <QSignalSpy>
#include <QWheelEvent>
#include <QWindow>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

/// Counts what reaches it and its children.
class Below : public QWidget {
public:
    using QWidget::QWidget;
    QList<QEvent::Type> reached;

protected:
    bool event(QEvent *event) override
    {
        switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::Wheel:
        case QEvent::TouchBegin:
        case QEvent::ContextMenu:
        case QEvent::DragEnter:
        case QEvent::Drop:
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
            reached.append(event->type());
            break;
        default:
            break;
        }
        return QWidget::event(event);
    }
};

QAccessibleInterface *readerOf(QWidget *widget)
{
    return QAccessible::queryAccessibleInterface(widget);
}

void pressByReader(QWidget *widget)
{
    readerOf(widget)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
}

} // namespace

class TestSheetReach : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        installAccessibility();
        QApplication::setPalette(applicationPalette(ColorScheme::Light));
    }

    void noPointerReachesWhatLiesBelow()
    {
        Below window;
        auto *below = new Below(&window);
        below->setAcceptDrops(true);
        Sheet sheet(200, &window);
        window.resize(640, 400);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        below->setGeometry(0, 0, 640, 400);
        sheet.open();
        QWindow *handle = window.windowHandle();
        const QPoint at(20, 380);
        QTest::mouseClick(handle, Qt::LeftButton, {}, at);
        QTest::mouseClick(handle, Qt::RightButton, {}, at);
        QTest::mouseDClick(handle, Qt::LeftButton, {}, at);
        QWheelEvent turn(at, handle->mapToGlobal(at), {}, QPoint(0, -120), {}, {},
                         Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(handle, &turn);
        std::unique_ptr<QPointingDevice> screen(QTest::createTouchDevice());
        QTest::touchEvent(handle, screen.get()).press(0, at, handle);
        QTest::touchEvent(handle, screen.get()).release(0, at, handle);
        QMimeData text;
        text.setText(u"abc"_s);
        QDragEnterEvent enter(at, Qt::CopyAction, &text, Qt::LeftButton, {});
        QCoreApplication::sendEvent(window.childAt(at), &enter);
        QCOMPARE(below->reached, QList<QEvent::Type>());
        QCOMPARE(window.reached, QList<QEvent::Type>());
        QVERIFY(sheet.isVisible());
    }

    void noKeyReachesWhatLiesBelow()
    {
        Below window;
        auto *field = new QLineEdit(&window);
        auto *action = new QAction(field);
        action->setShortcut(Qt::Key_F5);
        field->addAction(action);
        const QSignalSpy acted(action, &QAction::triggered);
        Sheet sheet(200, &window);
        window.resize(640, 400);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        field->setFocus();
        sheet.open();
        for (const int key : {Qt::Key_X, Qt::Key_Return, Qt::Key_Space, Qt::Key_Down, Qt::Key_Tab,
                              Qt::Key_Backtab, Qt::Key_F5})
            QTest::keyClick(window.windowHandle(), Qt::Key(key));
        QCOMPARE(field->text(), QString());
        QCOMPARE(acted.count(), 0);
        QVERIFY(!window.reached.contains(QEvent::KeyPress));
    }

    void tabGoesRoundInsideTheSheet()
    {
        SheetScene it;
        it.sheet->open();
        QVERIFY(it.button->hasFocus());
        for (const bool forward : {true, false}) {
            for (QWidget *next :
                 {static_cast<QWidget *>(it.entry), static_cast<QWidget *>(it.button)}) {
                QTest::keyClick(QApplication::focusWidget(),
                                forward ? Qt::Key_Tab : Qt::Key_Backtab);
                QVERIFY(next->hasFocus());
            }
        }
    }

    void theFocusDoesNotLeaveWithAControlThatGoes()
    {
        SheetScene it;
        it.sheet->open();
        it.button->setEnabled(false);
        QVERIFY(it.entry->hasFocus());
        it.button->setEnabled(true);
        it.entry->hide();
        QVERIFY(it.button->hasFocus());
    }

    void noScreenReaderReachesWhatLiesBelow()
    {
        SheetScene it;
        const QSignalSpy pressed(it.below, &QPushButton::clicked);
        QAccessibleInterface *window = readerOf(&it.window);
        const int before = window->childCount();
        QVERIFY(before > 1);
        it.sheet->open();
        QCOMPARE(window->childCount(), 1);
        QCOMPARE(window->child(0), readerOf(it.sheet));
        QCOMPARE(window->indexOfChild(readerOf(it.sheet)), 0);
        QCOMPARE(window->indexOfChild(readerOf(it.below)), -1);
        const QPoint at = it.below->mapToGlobal(QPoint(5, 5));
        QCOMPARE(window->childAt(at.x(), at.y()), readerOf(it.sheet));

        // One that it has in hand from before.
        auto *held = readerOf(it.below)->actionInterface();
        QVERIFY(held->actionNames().isEmpty());
        held->doAction(QAccessibleActionInterface::pressAction());
        held->doAction(QAccessibleActionInterface::setFocusAction());
        QCOMPARE(pressed.count(), 0);
        QVERIFY(it.button->hasFocus());

        it.sheet->close();
        QCOMPARE(window->childCount(), before);
        pressByReader(it.below);
        QTRY_COMPARE(pressed.count(), 1);
    }

    void noScreenReaderScrollsWhatLiesBelow()
    {
        SheetScene it;
        ThinScrollBar bar(&it.window);
        bar.setRange(0, 100);
        bar.show();
        QAccessibleInterface *reader = readerOf(&bar);
        QCOMPARE(reader->role(), QAccessible::ScrollBar);
        QAccessibleValueInterface *held = reader->valueInterface();
        it.sheet->open();
        held->setCurrentValue(40);
        QCOMPARE(bar.value(), 0);
        it.sheet->close();
        held->setCurrentValue(40);
        QCOMPARE(bar.value(), 40);
        QCOMPARE(held->currentValue().toInt(), 40);
        QCOMPARE(held->maximumValue().toInt(), 100);
        QCOMPARE(reader->text(QAccessible::Value), u"40"_s);
    }

    void aReaderIsToldOfADialogThatIsModal()
    {
        SheetScene it;
        it.sheet->open();
        QCOMPARE(readerOf(it.sheet)->role(), QAccessible::Dialog);
        QVERIFY(readerOf(it.sheet)->state().modal);
        it.sheet->close();
        QVERIFY(!readerOf(it.sheet)->state().modal);
    }

    void theFocusIsWhereItWasWhenItCloses()
    {
        SheetScene it;
        it.field->setFocus(Qt::TabFocusReason);
        it.sheet->open();
        QVERIFY(it.button->hasFocus());
        it.sheet->close();
        QVERIFY(it.field->hasFocus());
    }

    void theRingThatShowedShowsAgainWhenItCloses()
    {
        for (const auto reason : {Qt::TabFocusReason, Qt::MouseFocusReason}) {
            SheetScene it;
            it.below->setFocus(reason);
            const QImage before = picture(it.window);
            it.sheet->open();
            it.sheet->close();
            QVERIFY(it.below->hasFocus());
            QCOMPARE(picture(it.window), before);
        }
    }

    void theFocusThatCannotGoBackStaysOnSomethingVisible()
    {
        SheetScene it;
        it.below->setFocus(Qt::TabFocusReason);
        it.sheet->open();
        it.below->hide();
        it.sheet->close();
        QVERIFY(QApplication::focusWidget());
        QVERIFY(QApplication::focusWidget()->isVisible());
    }

    void whatHasTheFocusAtOpeningShowsItsRing()
    {
        SheetScene it;
        it.sheet->open();
        QVERIFY(it.button->hasFocus());
        const QPoint place = it.button->mapTo(&it.window, QPoint(20, -2));
        COMPARE_COLORS(picture(it.window).pixelColor(place), accentInk(it.sheet->palette()));
    }

    void openingBringsNothingToTheFront()
    {
        SheetScene it;
        QWidget other;
        other.resize(200, 100);
        other.show();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        it.sheet->open();
        QCoreApplication::processEvents();
        QVERIFY(other.isActiveWindow());
        it.sheet->close();
        QCoreApplication::processEvents();
        QVERIFY(other.isActiveWindow());
    }

    void theSecondHalfOfADoubleClickClosesNothing()
    {
        SheetScene it;
        it.sheet->setInitialFocus(nullptr);
        // Where the button of the sheet will be is the one that opens it.
        it.sheet->open();
        const QRect place(it.button->mapTo(&it.window, QPoint()), it.button->size());
        it.sheet->close();
        it.below->setGeometry(place);
        connect(it.below, &QPushButton::clicked, it.sheet, &Sheet::open);
        connect(it.button, &QPushButton::clicked, it.sheet, &QWidget::close);
        QTest::mouseDClick(it.window.windowHandle(), Qt::LeftButton, {}, place.center());
        QVERIFY(it.sheet->isVisible());
        QVERIFY(!it.button->hasFocus());
        // The next one means it.
        QTest::mouseClick(it.window.windowHandle(), Qt::LeftButton, {}, place.center());
        QVERIFY(!it.sheet->isVisible());
    }

    void cancelClosesASheetThatHoldsNothingAndSaysSoOnce()
    {
        SheetScene it;
        const QSignalSpy closed(it.sheet, &Sheet::closed);
        it.sheet->open();
        QTest::keyClick(it.button, Qt::Key_Escape);
        QVERIFY(!it.sheet->isVisible());
        QCOMPARE(closed.count(), 1);
        it.sheet->open();
        QVERIFY(it.sheet->isVisible());
        it.sheet->close();
        QCOMPARE(closed.count(), 2);
    }

    void cancelLeavesOpenWhatHoldsSomething()
    {
        SheetScene it;
        const QSignalSpy closed(it.sheet, &Sheet::closed);
        it.sheet->setHolds(true);
        it.sheet->open();
        QTest::keyClick(it.button, Qt::Key_Escape);
        QVERIFY(it.sheet->isVisible());
        QCOMPARE(closed.count(), 0);
    }

    void cancelInAMenuOfTheSheetClosesTheMenuOnly()
    {
        SheetScene it;
        it.sheet->open();
        QMenu menu(it.button);
        menu.addAction(u"a"_s);
        menu.popup(it.button->mapToGlobal(QPoint()));
        QTest::keyClick(&menu, Qt::Key_Escape);
        QVERIFY(!menu.isVisible());
        QVERIFY(it.sheet->isVisible());
    }

    void aWindowWhoseSheetHoldsSomethingDoesNotClose()
    {
        SheetScene it;
        it.sheet->setHolds(true);
        it.sheet->setInitialFocus(it.entry);
        it.sheet->open();
        it.entry->setText(u"à garder"_s);
        QVERIFY(!it.window.close());
        QVERIFY(!it.window.windowHandle()->close());
        QApplication::closeAllWindows();
        QVERIFY(it.window.isVisible());
        QVERIFY(it.sheet->isVisible());
        QCOMPARE(it.entry->text(), u"à garder"_s);
        // The way out is shown.
        QVERIFY(it.button->hasFocus());
        const QPoint place = it.button->mapTo(&it.window, QPoint(20, -2));
        COMPARE_COLORS(picture(it.window).pixelColor(place), accentInk(it.sheet->palette()));
        it.sheet->close();
        QVERIFY(it.window.close());
    }

    void aSheetThatHoldsNothingClosesWithItsWindow()
    {
        SheetScene it;
        const QSignalSpy closed(it.sheet, &Sheet::closed);
        it.sheet->open();
        QVERIFY(it.window.close());
        QCOMPARE(closed.count(), 1);
        it.window.show();
        QVERIFY(!it.sheet->isVisible());
        QVERIFY(it.field->isEnabled());
    }

    void twoWindowsEachHaveASheet()
    {
        SheetScene one;
        SheetScene two;
        one.sheet->open();
        two.sheet->open();
        QVERIFY(one.sheet->isVisible());
        QVERIFY(two.sheet->isVisible());
        two.sheet->close();
        QVERIFY(one.sheet->isVisible());
        QVERIFY(!one.field->isEnabled());
        QVERIFY(two.field->isEnabled());
    }

    void aSheetThatGoesLeavesItsWindowWithinReach()
    {
        SheetScene it;
        it.field->setFocus();
        it.sheet->open();
        delete it.sheet;
        QVERIFY(it.field->isEnabled());
        QVERIFY(it.field->hasFocus());
        QVERIFY(readerOf(&it.window)->childCount() > 1);
    }

    void anOpenSheetGoesWithItsWindow()
    {
        auto it = std::make_unique<SheetScene>();
        it->field->setFocus();
        it->sheet->open();
        it.reset();
        QVERIFY(!QApplication::focusWidget());
    }
};

QTEST_MAIN(TestSheetReach)
#include "test_sheet_reach.moc"
