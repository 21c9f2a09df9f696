// One value chosen among a few: by mouse, by keys, by screen reader, and as it looks.

#include "controls/SegmentedControl.h"
#include "controls/TextLabel.h"
#include "look/Accessibility.h"
#include "look/Colors.h"
#include "look/Fonts.h"
#include "support/Announcements.h"
#include "support/Picture.h"

#include <QApplication>
#include <QLineEdit>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

/// A form with a choice between two fields.
struct Form {
    QWidget window;
    QLineEdit *before = new QLineEdit(&window);
    SegmentedControl *choice =
        new SegmentedControl(u"Mode"_s, {u"Thé"_s, u"Café & <b>lait</b>"_s}, &window);
    QLineEdit *after = new QLineEdit(&window);

    explicit Form(int width = 400)
    {
        auto *column = new QVBoxLayout(&window);
        column->addWidget(before);
        column->addWidget(choice);
        column->addWidget(after);
        window.resize(width, 160);
        window.show();
        window.activateWindow();
    }

    QRadioButton *segment(int index) const
    {
        return choice->findChildren<QRadioButton *>().at(index);
    }
    QWidget *track() const { return segment(0)->parentWidget(); }
};

} // namespace

class TestSegmentedControl : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { installAccessibility(); }
    void init() { QApplication::setPalette(applicationPalette(ColorScheme::Light)); }

    void theFirstIsChosenAtFirst()
    {
        Form form;
        QCOMPARE(form.choice->count(), 2);
        QCOMPARE(form.choice->currentIndex(), 0);
        QVERIFY(form.segment(0)->isChecked());
        QVERIFY(!form.segment(1)->isChecked());
    }

    void theLabelIsSeenBesideTheSegments()
    {
        Form form;
        const auto *label = form.choice->findChild<TextLabel *>();
        QCOMPARE(label->text(), u"Mode"_s);
        QVERIFY(label->isVisible());
        QVERIFY(label->geometry().right() < form.track()->geometry().left());
        const int offMiddle =
            label->geometry().center().y() - form.track()->geometry().center().y();
        QVERIFY(qAbs(offMiddle) <= 1);
    }

    void aClickChooses()
    {
        Form form;
        const QSignalSpy changed(form.choice, &SegmentedControl::currentChanged);
        QTest::mouseClick(form.segment(1), Qt::LeftButton);
        QCOMPARE(form.choice->currentIndex(), 1);
        QVERIFY(!form.segment(0)->isChecked());
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed.at(0).at(0).toInt(), 1);
        QTest::mouseClick(form.segment(1), Qt::LeftButton);
        QCOMPARE(changed.count(), 1);
    }

    void allOfASegmentTakesTheClick()
    {
        Form form;
        QTest::mouseClick(form.segment(1), Qt::LeftButton, {}, {form.segment(1)->width() - 1, 1});
        QCOMPARE(form.choice->currentIndex(), 1);
    }

    void leftAndRightMoveTheChoice()
    {
        Form form;
        QVERIFY(QTest::qWaitForWindowActive(&form.window));
        form.segment(0)->setFocus(Qt::TabFocusReason);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
        QCOMPARE(form.choice->currentIndex(), 1);
        QVERIFY(form.segment(1)->hasFocus());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Left);
        QCOMPARE(form.choice->currentIndex(), 0);
        QVERIFY(form.segment(0)->hasFocus());
    }

    void theChosenOneIsTheOneStopOnTabsWay()
    {
        Form form;
        QVERIFY(QTest::qWaitForWindowActive(&form.window));
        form.choice->setCurrentIndex(1);
        form.before->setFocus();
        QTest::keyClick(form.before, Qt::Key_Tab);
        QVERIFY(form.segment(1)->hasFocus());
        QTest::keyClick(form.segment(1), Qt::Key_Tab);
        QVERIFY(form.after->hasFocus());
        QTest::keyClick(form.after, Qt::Key_Backtab);
        QVERIFY(form.segment(1)->hasFocus());
        QTest::keyClick(form.segment(1), Qt::Key_Backtab);
        QVERIFY(form.before->hasFocus());
    }

    void theReaderFindsAGroupOfRadioButtons()
    {
        Form form;
        QCOMPARE(read(form.choice)->role(), QAccessible::Grouping);
        QCOMPARE(read(form.choice)->text(QAccessible::Name), u"Mode"_s);
        auto *second = read(form.segment(1));
        QCOMPARE(second->role(), QAccessible::RadioButton);
        QCOMPARE(second->text(QAccessible::Name), u"Café & <b>lait</b>"_s);
        QVERIFY(second->state().checkable);
        QVERIFY(!second->state().checked);
        QVERIFY(read(form.segment(0))->state().checked);
    }

    void theReaderChooses()
    {
        Form form;
        auto *second = read(form.segment(1));
        const auto actions = second->actionInterface()->actionNames();
        QVERIFY(actions.contains(QAccessibleActionInterface::toggleAction()));
        second->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
        QCOMPARE(form.choice->currentIndex(), 1);
        QVERIFY(second->state().checked);
    }

    void theReaderIsToldOfAChoice()
    {
        if (!Announcements::areMade())
            QSKIP("needs a display and QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1");
        const Form form;
        const Announcements told;
        QTest::mouseClick(form.segment(1), Qt::LeftButton);
        QVERIFY(told.contains(QAccessible::StateChanged, form.segment(1)));
    }

    void theChosenOneStandsOutInBothSchemes()
    {
        for (const auto scheme : {ColorScheme::Light, ColorScheme::Dark}) {
            QApplication::setPalette(applicationPalette(scheme));
            Form form;
            QTRY_COMPARE(schemeOf(form.window.palette()), scheme);
            const QPalette palette = form.window.palette();
            const QImage image = picture(form.window);
            const auto at = [&](const QWidget *segment) {
                return image.pixelColor(
                    segment->mapTo(&form.window, QPoint(4, segment->height() / 2)));
            };
            COMPARE_COLORS(at(form.segment(0)), segmentFill(palette));
            const QColor lifted = blended(accountLift(palette), windowColor(palette));
            COMPARE_COLORS(at(form.segment(1)), blended(buttonFill(palette), lifted));
        }
    }

    void theTrackIsAsHighAsOtherControlsAndInsetByTwo()
    {
        Form form;
        QCOMPARE(form.track()->height(), scaled(28));
        QCOMPARE(form.segment(0)->y(), 2);
        QCOMPARE(form.segment(0)->x(), 2);
        QCOMPARE(form.segment(1)->x(), form.segment(0)->geometry().right() + 1);
        QCOMPARE(form.track()->width(), form.segment(1)->geometry().right() + 1 + 2);
    }

    void choosingMovesNothing()
    {
        Form form;
        const QRect first = form.segment(0)->geometry();
        const QRect second = form.segment(1)->geometry();
        form.choice->setCurrentIndex(1);
        QCoreApplication::sendPostedEvents();
        QCOMPARE(form.segment(0)->geometry(), first);
        QCOMPARE(form.segment(1)->geometry(), second);
    }

    void theRingShowsForTheKeyboardOnly()
    {
        Form form;
        QVERIFY(QTest::qWaitForWindowActive(&form.window));
        const auto ring = [&form] {
            const QPoint beside = form.segment(1)->mapTo(&form.window, QPoint(20, -3));
            return picture(form.window).pixelColor(beside);
        };
        QTest::mouseClick(form.segment(1), Qt::LeftButton);
        QVERIFY(!alike(ring(), accentInk(form.window.palette())));
        QTest::keyClick(form.segment(1), Qt::Key_Left);
        QTest::keyClick(form.segment(0), Qt::Key_Right);
        COMPARE_COLORS(ring(), accentInk(form.window.palette()));
    }

    void whereThereIsNoRoomTheTextsAreCutAndToldInFull()
    {
        Form form(160);
        QVERIFY(form.track()->geometry().right() <= form.choice->width());
        QVERIFY(form.segment(1)->toolTip().contains(u"lait"_s));
        QVERIFY(form.segment(1)->toolTip().contains(u"&lt;b&gt;"_s));
        form.window.resize(600, 160);
        QTRY_VERIFY(form.segment(1)->toolTip().isEmpty());
    }

    void anIndexThatIsNoneIsIgnored()
    {
        Form form;
        form.choice->setCurrentIndex(2);
        form.choice->setCurrentIndex(-1);
        QCOMPARE(form.choice->currentIndex(), 0);
    }
};

QTEST_MAIN(TestSegmentedControl)

#include "test_segmented_control.moc"
