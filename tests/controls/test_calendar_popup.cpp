// The calendar that a day is chosen in.

#include "controls/CalendarPopup.h"
#include "controls/DateField.h"
#include "controls/PopupCard.h"
#include "controls/TimeField.h"
#include "look/Accessibility.h"
#include "look/Colors.h"
#include "look/Compositing.h"
#include "support/DateTimeForm.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QCalendarWidget>
#include <QLocale>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

class TestCalendarPopup : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { installAccessibility(); }
    void init() { QApplication::setPalette(applicationPalette(ColorScheme::Light)); }

    void theCalendarOpensByClickAndByKey();
    void aDayIsChosenInTheCalendarByClick();
    void aDayIsChosenInTheCalendarByKeys();
    void escapeClosesTheCalendarFirstAndChoosesNothing();
    void aClickElsewhereClosesTheCalendar();
    void theCalendarGoesFromMonthToMonth();
    void theCalendarIsNamedAndReadable();
    void theCalendarsCardFollowsTheScheme();
};

void TestCalendarPopup::theCalendarOpensByClickAndByKey()
{
    const DateTimeForm form;
    form.date->setFocus(Qt::TabFocusReason);
    QTest::keyClick(form.date, Qt::Key_F4);
    QVERIFY(form.calendar()->isVisible());
    form.calendar()->close();
    QTest::keyClick(form.date, Qt::Key_Down, Qt::AltModifier);
    QVERIFY(form.calendar()->isVisible());
    form.calendar()->close();
    QTest::mouseClick(form.date->childAt(124 - 15, 14), Qt::LeftButton);
    QVERIFY(form.calendar()->isVisible());
    QCOMPARE(form.date->date(), QDate(2026, 11, 14));
    const QRect card = form.calendar()->geometry().marginsRemoved(popupMargins(isComposited()));
    QCOMPARE(card.topLeft(), form.date->mapToGlobal(QPoint(0, 28 + 4)));
}

void TestCalendarPopup::aDayIsChosenInTheCalendarByClick()
{
    const DateTimeForm form;
    const QSignalSpy changed(form.date, &QDateEdit::dateChanged);
    form.date->openCalendar();
    auto *month = form.calendar()->findChild<QCalendarWidget *>();
    QWidget *days = month->findChild<QAbstractItemView *>()->viewport();
    // The first line holds the names of the days; the second begins on Monday, 26 October.
    QTest::mouseClick(days, Qt::LeftButton, {}, {32 * 2 + 16, 26 * 2 + 13});
    QVERIFY(!form.calendar()->isVisible());
    QCOMPARE(form.date->date(), QDate(2026, 11, 4));
    QCOMPARE(changed.count(), 1);
}

void TestCalendarPopup::aDayIsChosenInTheCalendarByKeys()
{
    const DateTimeForm form;
    form.date->setFocus(Qt::TabFocusReason);
    QTest::keyClick(form.date, Qt::Key_F4);
    QWidget *days = form.calendar()->focusWidget();
    QVERIFY(days);
    QTest::keyClick(days, Qt::Key_Right);
    QTest::keyClick(days, Qt::Key_Down);
    QTest::keyClick(days, Qt::Key_PageDown);
    QCOMPARE(form.date->date(), QDate(2026, 11, 14));
    QTest::keyClick(days, Qt::Key_Return);
    QVERIFY(!form.calendar()->isVisible());
    QCOMPARE(form.date->date(), QDate(2026, 12, 22));
    QVERIFY(form.date->hasFocus());
}

void TestCalendarPopup::escapeClosesTheCalendarFirstAndChoosesNothing()
{
    const DateTimeForm form;
    form.date->setFocus(Qt::TabFocusReason);
    QTest::keyClick(form.date, Qt::Key_F4);
    QTest::keyClick(form.calendar()->focusWidget(), Qt::Key_Right);
    QTest::keyClick(form.calendar()->focusWidget(), Qt::Key_Escape);
    QVERIFY(!form.calendar()->isVisible());
    QCOMPARE(form.cancels, 0);
    QCOMPARE(form.date->date(), QDate(2026, 11, 14));
    QTest::keyClick(form.date, Qt::Key_Escape);
    QCOMPARE(form.cancels, 1);
}

void TestCalendarPopup::aClickElsewhereClosesTheCalendar()
{
    const DateTimeForm form;
    const int inShadow = popupMargins(isComposited()).left() - 2;
    for (const QPoint at : {QPoint(-50, -50), QPoint(inShadow, 60)}) {
        form.date->openCalendar();
        QTest::mouseClick(form.calendar(), Qt::LeftButton, {}, at);
        QVERIFY(!form.calendar()->isVisible());
    }
    QCOMPARE(form.date->date(), QDate(2026, 11, 14));
}

void TestCalendarPopup::theCalendarGoesFromMonthToMonth()
{
    const DateTimeForm form;
    form.date->openCalendar();
    auto *month = form.calendar()->findChild<QCalendarWidget *>();
    const auto buttons = form.calendar()->findChildren<QAbstractButton *>();
    for (auto *button : buttons) {
        if (button->accessibleName() == u"Mois suivant")
            QTest::mouseClick(button, Qt::LeftButton);
    }
    QCOMPARE(month->monthShown(), 12);
    for (int i = 0; i < 2; ++i) {
        for (auto *button : buttons) {
            if (button->accessibleName() == u"Mois précédent")
                QTest::mouseClick(button, Qt::LeftButton);
        }
    }
    QCOMPARE(month->monthShown(), 10);
    QVERIFY(form.calendar()->isVisible());
    QCOMPARE(form.date->date(), QDate(2026, 11, 14));
}

void TestCalendarPopup::theCalendarIsNamedAndReadable()
{
    const DateTimeForm form;
    form.date->openCalendar();
    QCOMPARE(form.calendar()->accessibleName(), u"Calendrier"_s);
    QStringList names;
    const auto parts = form.calendar()->findChildren<QWidget *>();
    for (const QWidget *part : parts)
        names.append(part->accessibleName());
    QVERIFY(names.contains(u"Novembre 2026"_s));
    auto *month = form.calendar()->findChild<QCalendarWidget *>();
    QCOMPARE(month->firstDayOfWeek(), Qt::Monday);
    auto *days = QAccessible::queryAccessibleInterface(month->findChild<QAbstractItemView *>());
    QCOMPARE(days->tableInterface()->columnCount(), 7);
}

void TestCalendarPopup::theCalendarsCardFollowsTheScheme()
{
    DateTimeForm form;
    for (const auto scheme : {ColorScheme::Light, ColorScheme::Dark}) {
        QApplication::setPalette(applicationPalette(scheme));
        form.date->openCalendar();
        QTest::qWait(0);
        const QImage image = picture(*form.calendar());
        const QPoint origin(popupMargins(isComposited()).left(),
                            popupMargins(isComposited()).top());
        const QPalette palette = form.calendar()->palette();
        QCOMPARE(schemeOf(palette), scheme);
        COMPARE_COLORS(image.pixelColor(origin + QPoint(3, 100)), popupColor(palette));
        // Saturday 14 is chosen: sixth column, third week.
        const QPoint week(8 + 5 * 32, 8 + 24 + 4 + 3 * 26);
        COMPARE_COLORS(image.pixelColor(origin + week + QPoint(4, 13)), accent(palette));
        COMPARE_COLORS(image.pixelColor(origin + week + QPoint(4 - 32, 13)), popupColor(palette));
        form.calendar()->close();
    }
}

QTEST_MAIN(TestCalendarPopup)
#include "test_calendar_popup.moc"
