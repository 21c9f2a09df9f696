#include "controls/CalendarPopup.h"
#include "controls/DateField.h"
#include "controls/DateOrder.h"
#include "controls/PopupCard.h"
#include "controls/TimeField.h"
#include "look/Accessibility.h"
#include "look/Colors.h"
#include "look/Compositing.h"
#include "support/Picture.h"
#include "support/Typing.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QCalendarWidget>
#include <QLocale>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace {

/// A form that scrolls, with both fields, in front. Counts the cancels that reach it.
class Form : public QScrollArea {
public:
    explicit Form(const QString &locale = u"fr_FR"_s)
        : date(new DateField(u"Date"_s, QLocale(locale), content))
        , time(new TimeField(u"Heure"_s, QLocale(locale), content))
    {
        content->setFixedSize(380, 900);
        date->setDate(QDate(2026, 11, 14));
        time->setTime(QTime(14, 30));
        date->move(20, 100);
        time->move(200, 100);
        setWidget(content);
        resize(400, 400);
        show();
        activateWindow();
        if (!QTest::qWaitForWindowActive(this))
            qFatal("the window does not come to the front");
        QApplication::focusWidget()->clearFocus();
    }

    CalendarPopup *calendar() const { return date->findChild<CalendarPopup *>(); }

    QWidget *content = new QWidget;
    DateField *date;
    TimeField *time;
    int cancels = 0;

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        if (event->key() == Qt::Key_Escape)
            ++cancels;
    }
};

QColor colorAt(Form &form, const QWidget *field, QPoint at)
{
    return picture(form).pixelColor(field->mapTo(&form, at));
}

} // namespace

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
    void arrowKeysChangeWhatTheCursorIsIn();
    void theTwoArrowsOfTheTimeStepIt();
    void minutesGoRoundWithoutChangingTheHour();
    void daysOfLongAgoAreShownAsTheyAre();
    void theCalendarOpensByClickAndByKey();
    void aDayIsChosenInTheCalendarByClick();
    void aDayIsChosenInTheCalendarByKeys();
    void escapeClosesTheCalendarFirstAndChoosesNothing();
    void aClickElsewhereClosesTheCalendar();
    void theCalendarGoesFromMonthToMonth();
    void theCalendarIsNamedAndReadable();
    void theCalendarsCardFollowsTheScheme();
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
    const Form form(locale);
    QTEST(form.date->text(), "date");
    QTEST(form.time->text(), "time");
}

void TestDateTimeFields::aDayIsTyped()
{
    const Form form;
    form.date->setFocus(Qt::TabFocusReason);
    form.date->setSelectedSection(QDateTimeEdit::DaySection);
    type(form.date, u"05"_s);
    type(form.date, u"12"_s);
    type(form.date, u"2027"_s);
    QCOMPARE(form.date->date(), QDate(2027, 12, 5));
}

void TestDateTimeFields::aDayIsTypedInTheLocalesOwnDigits()
{
    const Form form(u"fa_IR"_s);
    form.date->setFocus(Qt::TabFocusReason);
    form.date->setSelectedSection(QDateTimeEdit::DaySection);
    type(form.date, u"۰۵"_s);
    QCOMPARE(form.date->date(), QDate(2026, 11, 5));
}

void TestDateTimeFields::aTimeIsTyped()
{
    const Form form;
    form.time->setFocus(Qt::TabFocusReason);
    form.time->setSelectedSection(QDateTimeEdit::HourSection);
    type(form.time, u"0905"_s);
    QCOMPARE(form.time->time(), QTime(9, 5));
}

void TestDateTimeFields::arrowKeysChangeWhatTheCursorIsIn()
{
    const Form form;
    form.date->setFocus(Qt::TabFocusReason);
    QTest::keyClick(form.date, Qt::Key_Up);
    QCOMPARE(form.date->date(), QDate(2026, 11, 15));
    form.time->setFocus(Qt::TabFocusReason);
    QTest::keyClick(form.time, Qt::Key_Down);
    QCOMPARE(form.time->time(), QTime(13, 30));
}

void TestDateTimeFields::theTwoArrowsOfTheTimeStepIt()
{
    const Form form;
    form.time->setSelectedSection(QDateTimeEdit::MinuteSection);
    QTest::mouseClick(form.time, Qt::LeftButton, {}, {80 - 15, 8});
    QCOMPARE(form.time->time(), QTime(14, 31));
    QTest::mouseClick(form.time, Qt::LeftButton, {}, {80 - 15, 20});
    QTest::mouseClick(form.time, Qt::LeftButton, {}, {80 - 15, 20});
    QCOMPARE(form.time->time(), QTime(14, 29));
}

void TestDateTimeFields::minutesGoRoundWithoutChangingTheHour()
{
    const Form form;
    form.time->setTime(QTime(23, 59));
    form.time->setFocus(Qt::TabFocusReason);
    form.time->setSelectedSection(QDateTimeEdit::MinuteSection);
    QTest::keyClick(form.time, Qt::Key_Up);
    QCOMPARE(form.time->time(), QTime(23, 0));
}

void TestDateTimeFields::daysOfLongAgoAreShownAsTheyAre()
{
    const Form form;
    form.date->setDate(QDate(1700, 2, 28));
    QCOMPARE(form.date->text(), u"28/02/1700"_s);
    QCOMPARE(form.date->date(), QDate(1700, 2, 28));
}

void TestDateTimeFields::theCalendarOpensByClickAndByKey()
{
    const Form form;
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

void TestDateTimeFields::aDayIsChosenInTheCalendarByClick()
{
    const Form form;
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

void TestDateTimeFields::aDayIsChosenInTheCalendarByKeys()
{
    const Form form;
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

void TestDateTimeFields::escapeClosesTheCalendarFirstAndChoosesNothing()
{
    const Form form;
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

void TestDateTimeFields::aClickElsewhereClosesTheCalendar()
{
    const Form form;
    const int inShadow = popupMargins(isComposited()).left() - 2;
    for (const QPoint at : {QPoint(-50, -50), QPoint(inShadow, 60)}) {
        form.date->openCalendar();
        QTest::mouseClick(form.calendar(), Qt::LeftButton, {}, at);
        QVERIFY(!form.calendar()->isVisible());
    }
    QCOMPARE(form.date->date(), QDate(2026, 11, 14));
}

void TestDateTimeFields::theCalendarGoesFromMonthToMonth()
{
    const Form form;
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

void TestDateTimeFields::theCalendarIsNamedAndReadable()
{
    const Form form;
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

void TestDateTimeFields::theCalendarsCardFollowsTheScheme()
{
    Form form;
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

void TestDateTimeFields::theWheelOverAFieldScrollsTheForm()
{
    const Form form;
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
    const Form form;
    form.time->setFocus(Qt::TabFocusReason);
    turnWheel(form.time);
    QCOMPARE(form.time->time(), QTime(13, 30));
    QCOMPARE(form.verticalScrollBar()->value(), 0);
}

void TestDateTimeFields::returnIsNothingAndEscapeIsLeftToTheForm()
{
    const Form form;
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
    Form form;
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
    const Form form;
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
