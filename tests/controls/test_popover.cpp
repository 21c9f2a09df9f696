// A card that hangs from its anchor until the person is done with it.

#include "controls/Popover.h"
#include "controls/PopupCard.h"
#include "look/Accessibility.h"
#include "look/Colors.h"
#include "look/FocusRing.h"
#include "support/Picture.h"

#include <QApplication>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace {

/// A window with an anchor at its top right, another button, and a popover of two buttons.
struct Scene {
    QWidget window;
    QPushButton *other = new QPushButton(&window);
    QPushButton *anchor = new QPushButton(&window);
    Popover *popover = nullptr;
    QWidget *content = new QWidget;
    QPushButton *first = new QPushButton(content);
    QPushButton *second = new QPushButton(content);

    explicit Scene(QPoint place = {100, 40})
    {
        window.setGeometry({place, QSize(500, 300)});
        anchor->setGeometry(350, 20, 137, 26);
        anchor->setAccessibleName(u"Compte"_s);
        new FocusRing(anchor, 6);
        other->setGeometry(20, 200, 80, 26);
        auto *column = new QVBoxLayout(content);
        column->setContentsMargins(0, 0, 0, 0);
        column->addWidget(first);
        column->addWidget(second);
        popover = new Popover(anchor);
        popover->setContent(content);
        window.show();
        window.activateWindow();
    }

    QRect card() const { return popover->card().translated(popover->geometry().topLeft()); }
    QRect anchorPlace() const { return {anchor->mapToGlobal(QPoint()), anchor->size()}; }
    QRect screen() const { return window.screen()->availableGeometry(); }
    /// A press and a release where the person sees the window, whatever lies over it.
    void click(QPoint inWindow) const
    {
        QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, inWindow);
    }
};

QImage cardPicture(ColorScheme scheme, bool isComposited)
{
    const QSize card(100, 60);
    const QSize window = card.grownBy(popupMargins(isComposited));
    QImage image(window, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paintPopupCard(painter, QRect({}, window), applicationPalette(scheme), isComposited);
    return image;
}

} // namespace

class TestPopover : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        installAccessibility();
        QApplication::setPalette(applicationPalette(ColorScheme::Light));
    }

    void itHangsBelowItsAnchorRightEdgesInLine()
    {
        const Scene it;
        it.popover->open();
        QVERIFY(it.popover->isVisible());
        QCOMPARE(it.card().width(), 220);
        QCOMPARE(it.card().top(), it.anchorPlace().bottom() + 1 + 6);
        QCOMPARE(it.card().right(), it.anchorPlace().right());
    }

    void itsContentKeepsClearOfItsEdges()
    {
        const Scene it;
        it.popover->open();
        const QRect content(it.content->mapToGlobal(QPoint()), it.content->size());
        QCOMPARE(content, it.card().adjusted(12, 12, -12, -12));
    }

    void itStandsAboveWhereTheScreenEnds()
    {
        Scene it;
        it.window.move(100, it.screen().bottom() - 60);
        it.popover->open();
        QCOMPARE(it.card().bottom() + 1 + 6, it.anchorPlace().top());
    }

    void itGoesWhenItsAnchorWouldMoveAway()
    {
        Scene it;
        const QSignalSpy closed(it.popover, &Popover::closed);
        it.popover->open();
        it.window.resize(420, 300);
        QTRY_VERIFY(!it.popover->isVisible());
        QCOMPARE(closed.count(), 1);
        it.popover->open();
        it.window.move(it.window.pos() + QPoint(40, 30));
        QTRY_VERIFY(!it.popover->isVisible());
        QCOMPARE(closed.count(), 2);
        it.popover->open();
        QVERIFY(it.popover->isVisible());
        QCOMPARE(it.card().top(), it.anchorPlace().bottom() + 1 + 6);
    }

    void itStaysOnTheScreen()
    {
        Scene it;
        it.window.move(it.screen().left() - 330, 40);
        it.popover->open();
        QCOMPARE(it.card().left(), it.screen().left());
        it.popover->close();
        it.window.move(it.screen().right() - 400, 40);
        it.popover->open();
        QCOMPARE(it.card().right(), it.screen().right());
    }

    void escapeClosesItAndTheAnchorHasTheFocus()
    {
        Scene it;
        QVERIFY(QTest::qWaitForWindowActive(&it.window));
        it.other->setFocus();
        const QSignalSpy closed(it.popover, &Popover::closed);
        it.popover->open();
        QTest::keyClick(it.window.windowHandle(), Qt::Key_Escape);
        QVERIFY(!it.popover->isVisible());
        QCOMPARE(closed.count(), 1);
        QCOMPARE(it.window.focusWidget(), it.anchor);
    }

    void escapeClosesItFromAButtonInItToo()
    {
        Scene it;
        it.popover->open();
        it.first->setFocus(Qt::TabFocusReason);
        QTest::keyClick(it.first, Qt::Key_Escape);
        QVERIFY(!it.popover->isVisible());
    }

    void aClickElsewhereClosesItAndDoesNothingMore()
    {
        Scene it;
        QVERIFY(QTest::qWaitForWindowActive(&it.window));
        const QSignalSpy closed(it.popover, &Popover::closed);
        const QSignalSpy pressed(it.other, &QPushButton::clicked);
        it.popover->open();
        it.click(it.other->geometry().center());
        QVERIFY(!it.popover->isVisible());
        QCOMPARE(closed.count(), 1);
        QCoreApplication::processEvents();
        QCOMPARE(pressed.count(), 0);
        QCOMPARE(it.window.focusWidget(), it.anchor);
        it.click(it.other->geometry().center());
        QCOMPARE(pressed.count(), 1);
    }

    void aClickOnTheAnchorDoesNotOpenItAgain()
    {
        Scene it;
        QVERIFY(QTest::qWaitForWindowActive(&it.window));
        connect(it.anchor, &QPushButton::clicked, it.popover, &Popover::open);
        it.click(it.anchor->geometry().center());
        QVERIFY(it.popover->isVisible());
        it.click(it.anchor->geometry().center());
        QCoreApplication::processEvents();
        QVERIFY(!it.popover->isVisible());
    }

    void aClickOnItsShadowIsAClickElsewhere()
    {
        Scene it;
        it.popover->open();
        const QPoint beside(it.popover->card().left() - 1, it.popover->card().center().y());
        QVERIFY(it.popover->rect().contains(beside));
        QTest::mouseClick(it.popover, Qt::LeftButton, {}, beside);
        QVERIFY(!it.popover->isVisible());
    }

    void aClickInItLeavesItOpen()
    {
        Scene it;
        const QSignalSpy pressed(it.first, &QPushButton::clicked);
        it.popover->open();
        QTest::mouseClick(it.popover, Qt::LeftButton, {},
                          it.popover->card().topLeft() + QPoint(5, 5));
        QTest::mouseClick(it.first, Qt::LeftButton);
        QVERIFY(it.popover->isVisible());
        QCOMPARE(pressed.count(), 1);
    }

    void openedByKeyboardItsFirstButtonHasTheFocusAndTabWalksThroughIt()
    {
        Scene it;
        QVERIFY(QTest::qWaitForWindowActive(&it.window));
        connect(it.anchor, &QPushButton::clicked, it.popover, &Popover::open);
        it.other->setFocus();
        it.anchor->setFocus(Qt::TabFocusReason);
        QTest::keyClick(it.anchor, Qt::Key_Space);
        QVERIFY(it.popover->isVisible());
        QCOMPARE(it.popover->focusWidget(), it.first);
        QTest::keyClick(it.window.windowHandle(), Qt::Key_Tab);
        QCOMPARE(it.popover->focusWidget(), it.second);
        QTest::keyClick(it.window.windowHandle(), Qt::Key_Tab);
        QCOMPARE(it.popover->focusWidget(), it.first);
    }

    void openedByMouseNothingInItIsPressedByAccident()
    {
        Scene it;
        QVERIFY(QTest::qWaitForWindowActive(&it.window));
        connect(it.anchor, &QPushButton::clicked, it.popover, &Popover::open);
        const QSignalSpy pressed(it.first, &QPushButton::clicked);
        it.click(it.anchor->geometry().center());
        QVERIFY(it.popover->isVisible());
        QTest::keyClick(it.window.windowHandle(), Qt::Key_Space);
        QCOMPARE(pressed.count(), 0);
        QTest::keyClick(it.window.windowHandle(), Qt::Key_Tab);
        QCOMPARE(it.popover->focusWidget(), it.first);
    }

    void itSaysOnceForEachOpeningThatItClosed()
    {
        Scene it;
        const QSignalSpy closed(it.popover, &Popover::closed);
        it.popover->open();
        it.popover->close();
        it.popover->close();
        QCOMPARE(closed.count(), 1);
        it.popover->open();
        it.popover->close();
        QCOMPARE(closed.count(), 2);
    }

    void otherContentTakesItsPlaceWhileItIsOpen()
    {
        Scene it;
        it.popover->open();
        const int before = it.card().height();
        auto *one = new QPushButton;
        const QPointer<QWidget> old(it.content);
        it.popover->setContent(one);
        QTRY_VERIFY(one->isVisible());
        QTRY_VERIFY(it.card().height() < before);
        QCOMPARE(it.card().top(), it.anchorPlace().bottom() + 1 + 6);
        QTRY_VERIFY(!old);
    }

    void contentThatNeedsMoreRoomGetsIt()
    {
        Scene it;
        it.first->setMinimumWidth(300);
        it.popover->open();
        QCOMPARE(it.card().width(), 324);
        QCOMPARE(it.card().right(), it.anchorPlace().right());
    }

    void theReaderFindsADialogNamedAfterTheAnchor()
    {
        const Scene it;
        auto *interface = QAccessible::queryAccessibleInterface(it.popover);
        QCOMPARE(interface->role(), QAccessible::Dialog);
        QCOMPARE(interface->text(QAccessible::Name), u"Compte"_s);
    }

    void itFollowsTheScheme()
    {
        for (const auto scheme : {ColorScheme::Light, ColorScheme::Dark}) {
            QApplication::setPalette(applicationPalette(scheme));
            const Scene it;
            it.popover->open();
            QImage image(it.popover->size(), QImage::Format_ARGB32_Premultiplied);
            image.fill(Qt::transparent);
            it.popover->render(&image, {}, {}, QWidget::DrawChildren);
            COMPARE_COLORS(image.pixelColor(it.popover->card().topLeft() + QPoint(8, 8)),
                           popupColor(applicationPalette(scheme)));
        }
        QApplication::setPalette(applicationPalette(ColorScheme::Light));
    }

    void theCardIsRoundWithAnEdgeAndAShadow()
    {
        for (const auto scheme : {ColorScheme::Light, ColorScheme::Dark}) {
            const QImage image = cardPicture(scheme, true);
            const QRect card = image.rect().marginsRemoved(popupMargins(true));
            COMPARE_COLORS(image.pixelColor(card.center()), popupColor(applicationPalette(scheme)));
            QVERIFY(image.pixelColor(card.topLeft()).alphaF() < 0.7);
            const int middle = card.center().x();
            const qreal edge = image.pixelColor(middle, card.bottom() + 1).alphaF();
            const qreal near = image.pixelColor(middle, card.bottom() + 2).alphaF();
            QVERIFY(edge > near);
            QVERIFY(near > 0.1);
            QVERIFY(image.pixelColor(middle, image.height() - 1).alphaF() < 0.02);
            QVERIFY(image.pixelColor(0, card.center().y()).alphaF() < 0.02);
        }
    }

    void whereNothingIsSeenThroughTheCardIsSquareWithItsEdgeOnly()
    {
        const QImage image = cardPicture(ColorScheme::Light, false);
        QCOMPARE(image.size(), QSize(102, 62));
        const QColor popup = popupColor(applicationPalette(ColorScheme::Light));
        COMPARE_COLORS(image.pixelColor(1, 1), popup);
        const QColor edge = blended(cardEdge(applicationPalette(ColorScheme::Light)), popup);
        COMPARE_COLORS(image.pixelColor(0, 0), edge);
        COMPARE_COLORS(image.pixelColor(101, 30), edge);
        QCOMPARE(image.pixelColor(0, 0).alpha(), 255);
    }
};

QTEST_MAIN(TestPopover)

#include "test_popover.moc"
