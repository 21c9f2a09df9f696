// Days and times that are typed, stepped and shown in the locale's way.

#include "controls/CalendarPopup.h"
#include "controls/DateField.h"
#include "controls/DateOrder.h"
#include "controls/PopupCard.h"
#include "controls/TimeField.h"
#include "look/Accessibility.h"
#include "look/Colors.h"
#include "look/Compositing.h"
#include "support/DateTimeForm.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QCalendarWidget>
#include <QLineEdit>
#include <QLocale>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

class TestDateTimeFields : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { installAccessibility(); }
    void init() { QApplication::setPalette(applicationPalette(ColorScheme::Light)); }

    void aDayIsWrittenInTheLocalesOrder_data();
    void aDayIsWrittenInTheLocalesOrder();
    void theFieldsShowTheLocalesOrderAndDigits_data();
    void theFieldsShowTheLocalesOrderAndDigits();
    void aDayIsTyped();
    void aDayIsTypedInTheLocalesOwnDigits();
    void aTimeIsTyped();
    void whoCountsTwiceTwelveHoursReadsAndTypesThemSo();
    void aTimeIsSeenWholeHoweverItsHoursAreCounted();
    void arrowKeysChangeWhatTheCursorIsIn();
    void theTwoArrowsOfTheTimeStepIt();
    void minutesGoRoundWithoutChangingTheHour();
    void daysOfLongAgoAreShownAsTheyAre();
    void theWheelOverAFieldScrollsTheForm();
    void theWheelChangesAFieldThatHasTheFocus();
    void returnIsNothingAndEscapeIsLeftToTheForm();
    void theFieldsAreAsDrawn_data();
    void theFieldsAreAsDrawn();
    void screenReadersHearNameAndValue();
};

void TestDateTimeFields::aDayIsWrittenInTheLocalesOrder_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("order");
    QTest::newRow("French") << u"fr_FR"_s << u"dd/MM/yyyy"_s;
    QTest::newRow("French of Canada") << u"fr_CA"_s << u"yyyy-MM-dd"_s;
    QTest::newRow("French of Switzerland") << u"fr_CH"_s << u"dd.MM.yyyy"_s;
    QTest::newRow("English of the States") << u"en_US"_s << u"MM/dd/yyyy"_s;
    QTest::newRow("German") << u"de_DE"_s << u"dd.MM.yyyy"_s;
    QTest::newRow("Japanese") << u"ja_JP"_s << u"yyyy/MM/dd"_s;
    QTest::newRow("Hungarian") << u"hu_HU"_s << u"yyyy. MM. dd"_s;
    QTest::newRow("Bulgarian, which adds a word") << u"bg_BG"_s << u"dd.MM.yyyy"_s;
    QTest::newRow("none, which names the month") << u"C"_s << u"dd MM yyyy"_s;
}

void TestDateTimeFields::aDayIsWrittenInTheLocalesOrder()
{
    QFETCH(QString, locale);
    QTEST(dateInFigures(QLocale(locale)), "order");
}

void TestDateTimeFields::theFieldsShowTheLocalesOrderAndDigits_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("date");
    QTest::addColumn<QString>("time");
    QTest::newRow("French") << u"fr_FR"_s << u"14/11/2026"_s << u"14:30"_s;
    QTest::newRow("English of the States") << u"en_US"_s << u"11/14/2026"_s << u"14:30"_s;
    QTest::newRow("Arabic of Egypt") << u"ar_EG"_s << u"١٤\u200f/١١\u200f/٢٠٢٦"_s << u"١٤:٣٠"_s;
    QTest::newRow("Persian, Gregorian all the same") << u"fa_IR"_s << u"۲۰۲۶/۱۱/۱۴"_s << u"۱۴:۳۰"_s;
    QTest::newRow("Thai, Gregorian all the same") << u"th_TH"_s << u"14/11/2026"_s << u"14:30"_s;
}

void TestDateTimeFields::theFieldsShowTheLocalesOrderAndDigits()
{
    QFETCH(QString, locale);
    const DateTimeForm form(locale);
    QTEST(form.date->text(), "date");
    QTEST(form.time->text(), "time");
}

void TestDateTimeFields::aDayIsTyped()
{
    const DateTimeForm form;
    form.date->setFocus(Qt::TabFocusReason);
    form.date->setSelectedSection(QDateTimeEdit::DaySection);
    type(form.date, u"05"_s);
    type(form.date, u"12"_s);
    type(form.date, u"2027"_s);
    QCOMPARE(form.date->date(), QDate(2027, 12, 5));
}

void TestDateTimeFields::aDayIsTypedInTheLocalesOwnDigits()
{
    const DateTimeForm form(u"fa_IR"_s);
    form.date->setFocus(Qt::TabFocusReason);
    form.date->setSelectedSection(QDateTimeEdit::DaySection);
    type(form.date, u"۰۵"_s);
    QCOMPARE(form.date->date(), QDate(2026, 11, 5));
}

void TestDateTimeFields::aTimeIsTyped()
{
    const DateTimeForm form;
    form.time->setFocus(Qt::TabFocusReason);
    form.time->setSelectedSection(QDateTimeEdit::HourSection);
    type(form.time, u"0905"_s);
    QCOMPARE(form.time->time(), QTime(9, 5));
}

void TestDateTimeFields::whoCountsTwiceTwelveHoursReadsAndTypesThemSo()
{
    const DateTimeForm form(u"en_US"_s, TimeField::Hours::TwiceTwelve);
    QCOMPARE(form.time->text(), u"2:30 PM"_s);
    form.time->setFocus(Qt::TabFocusReason);
    form.time->setSelectedSection(QDateTimeEdit::HourSection);
    type(form.time, u"1105"_s);
    form.time->setSelectedSection(QDateTimeEdit::AmPmSection);
    QTest::keyClick(form.time, Qt::Key_Down);
    QCOMPARE(form.time->time(), QTime(11, 5));
    QCOMPARE(form.time->text(), u"11:05 AM"_s);
    form.time->setTime(QTime(0, 15));
    QCOMPARE(form.time->text(), u"12:15 AM"_s);
}

void TestDateTimeFields::aTimeIsSeenWholeHoweverItsHoursAreCounted()
{
    for (const QString &locale : {u"fr_FR"_s, u"en_US"_s, u"ar_EG"_s, u"hi_IN"_s}) {
        for (const auto hours : {TimeField::Hours::TwentyFour, TimeField::Hours::TwiceTwelve}) {
            const DateTimeForm form(locale, hours);
            for (int hour = 0; hour < 24; ++hour) {
                form.time->setTime(QTime(hour, 58));
                const auto *edit = form.time->findChild<QLineEdit *>();
                const qreal text = QFontMetricsF(edit->font()).horizontalAdvance(edit->text());
                // The toolkit keeps two pixels free on both sides.
                QVERIFY2(qCeil(text) <= edit->width() - 4, qPrintable(locale + edit->text()));
            }
        }
    }
}

void TestDateTimeFields::arrowKeysChangeWhatTheCursorIsIn()
{
    const DateTimeForm form;
    form.date->setFocus(Qt::TabFocusReason);
    QTest::keyClick(form.date, Qt::Key_Up);
    QCOMPARE(form.date->date(), QDate(2026, 11, 15));
    form.time->setFocus(Qt::TabFocusReason);
    QTest::keyClick(form.time, Qt::Key_Down);
    QCOMPARE(form.time->time(), QTime(13, 30));
}

void TestDateTimeFields::theTwoArrowsOfTheTimeStepIt()
{
    const DateTimeForm form;
    form.time->setSelectedSection(QDateTimeEdit::MinuteSection);
    QTest::mouseClick(form.time, Qt::LeftButton, {}, {80 - 15, 8});
    QCOMPARE(form.time->time(), QTime(14, 31));
    QTest::mouseClick(form.time, Qt::LeftButton, {}, {80 - 15, 20});
    QTest::mouseClick(form.time, Qt::LeftButton, {}, {80 - 15, 20});
    QCOMPARE(form.time->time(), QTime(14, 29));
}

void TestDateTimeFields::minutesGoRoundWithoutChangingTheHour()
{
    const DateTimeForm form;
    form.time->setTime(QTime(23, 59));
    form.time->setFocus(Qt::TabFocusReason);
    form.time->setSelectedSection(QDateTimeEdit::MinuteSection);
    QTest::keyClick(form.time, Qt::Key_Up);
    QCOMPARE(form.time->time(), QTime(23, 0));
}

void TestDateTimeFields::daysOfLongAgoAreShownAsTheyAre()
{
    const DateTimeForm form;
    form.date->setDate(QDate(1700, 2, 28));
    QCOMPARE(form.date->text(), u"28/02/1700"_s);
    QCOMPARE(form.date->date(), QDate(1700, 2, 28));
}

void TestDateTimeFields::theWheelOverAFieldScrollsTheForm()
{
    const DateTimeForm form;
    turnWheel(form.date);
    const int once = form.verticalScrollBar()->value();
    QVERIFY(once > 0);
    form.verticalScrollBar()->setValue(0);
    turnWheel(form.time);
    QCOMPARE(form.verticalScrollBar()->value(), once);
    QCOMPARE(form.date->date(), QDate(2026, 11, 14));
    QCOMPARE(form.time->time(), QTime(14, 30));
    QVERIFY(!form.date->hasFocus());
}

void TestDateTimeFields::theWheelChangesAFieldThatHasTheFocus()
{
    const DateTimeForm form;
    form.time->setFocus(Qt::TabFocusReason);
    turnWheel(form.time);
    QCOMPARE(form.time->time(), QTime(13, 30));
    QCOMPARE(form.verticalScrollBar()->value(), 0);
}

void TestDateTimeFields::returnIsNothingAndEscapeIsLeftToTheForm()
{
    const DateTimeForm form;
    for (QWidget *field : {static_cast<QWidget *>(form.date), static_cast<QWidget *>(form.time)}) {
        field->setFocus(Qt::TabFocusReason);
        QTest::keyClick(field, Qt::Key_Return);
        QTest::keyClick(field, Qt::Key_Escape);
    }
    QCOMPARE(form.cancels, 2);
    QCOMPARE(form.date->date(), QDate(2026, 11, 14));
    QCOMPARE(form.time->time(), QTime(14, 30));
}

void TestDateTimeFields::theFieldsAreAsDrawn_data()
{
    QTest::addColumn<ColorScheme>("scheme");
    QTest::newRow("light") << ColorScheme::Light;
    QTest::newRow("dark") << ColorScheme::Dark;
}

void TestDateTimeFields::theFieldsAreAsDrawn()
{
    QFETCH(ColorScheme, scheme);
    QApplication::setPalette(applicationPalette(scheme));
    DateTimeForm form;
    QCOMPARE(form.date->size(), QSize(124, 28));
    QCOMPARE(form.time->size(), QSize(80, 28));
    const QPalette palette = form.palette();
    for (QWidget *field : {static_cast<QWidget *>(form.date), static_cast<QWidget *>(form.time)}) {
        const int before = field->width() - 28; // between the text and the symbol
        COMPARE_COLORS(colorAt(form, field, {before, 14}), surfaceColor(palette));
        COMPARE_COLORS(colorAt(form, field, {0, 14}),
                       blended(buttonLine(palette), windowColor(palette)));
        COMPARE_COLORS(colorAt(form, field, {0, 0}), windowColor(palette));
        field->setFocus(Qt::MouseFocusReason);
        COMPARE_COLORS(colorAt(form, field, {0, 14}), accentInk(palette));
    }
}

void TestDateTimeFields::screenReadersHearNameAndValue()
{
    const DateTimeForm form;
    auto *date = QAccessible::queryAccessibleInterface(form.date);
    QCOMPARE(date->text(QAccessible::Name), u"Date"_s);
    QCOMPARE(date->text(QAccessible::Value), u"14/11/2026"_s);
    auto *time = QAccessible::queryAccessibleInterface(form.time);
    QCOMPARE(time->text(QAccessible::Name), u"Heure"_s);
    QCOMPARE(time->text(QAccessible::Value), u"14:30"_s);
    auto *opener = QAccessible::queryAccessibleInterface(form.date->childAt(124 - 15, 14));
    QCOMPARE(opener->text(QAccessible::Name), u"Calendrier"_s);
    opener->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QVERIFY(form.calendar()->isVisible());
}

QTEST_MAIN(TestDateTimeFields)
#include "test_date_time_fields.moc"
