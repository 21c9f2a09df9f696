#include "platform/Calendar.h"
#include "platform/Gmt.h"
#include "support/Vectors.h"

#include <QDateTime>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

Instant instantAt(const QJsonValue &ms)
{
    return {ms.toInteger()};
}

Calendar calendarOf(const QJsonObject &asked)
{
    return Calendar(asked[u"locale"].toString(u"fr_FR"_s), asked[u"zone"].toString());
}

Instant gmt(const QString &text)
{
    return {QDateTime::fromString(text, Qt::ISODate).toMSecsSinceEpoch()};
}

QString written(Instant instant)
{
    return QDateTime::fromMSecsSinceEpoch(instant.ms, inGmt).toString(Qt::ISODate);
}

// No-break and narrow spaces count as spaces.
QString plainSpaces(QString text)
{
    return text.replace(u'\u00a0', u' ').replace(u'\u202f', u' ');
}

} // namespace

class TestCalendar : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aDayBeginsWithItsFirstInstant();
    void aMonthBeginsWithItsFirstInstant();
    void aMonthEndsWhereTheNextBegins();
    void dayAndTimeAreJoinedAsTheClockShowsThem();
    void theDayAloneGivesTheDay();
    void monthsAreNamedInTheUsersLocale();
    void momentsAreShortAndReadable();
    void theFormWritesTheLocalesOwnDayAndTime();
    void theHoursOfADayAreCountedAsInTheListsMoments_data();
    void theHoursOfADayAreCountedAsInTheListsMoments();
    void daysThatTheClockCutsShortBeginWhereItLands_data();
    void daysThatTheClockCutsShortBeginWhereItLands();
    void theMonthIsThatOfTheLocalesOwnCalendar();
    void copiesSayTheSame();
    void anUnknownZoneIsGmt();
    void theUsersLocaleIsTakenFromTheFirstVariableThatIsSet();
    void aChangedZoneIsSeen();
};

void TestCalendar::aDayBeginsWithItsFirstInstant()
{
    QVERIFY(Vectors::check(u"start-of-day.json"_s,
                           {{u"now"_s, Vectors::Number}, {u"zone"_s}, {u"ms"_s, Vectors::Number}},
                           [](const auto &asked) {
                               const Instant start =
                                   calendarOf(asked).startOfDay(instantAt(asked[u"now"]));
                               return Vectors::Answer{asked[u"ms"], start.ms};
                           }));
}

void TestCalendar::aMonthBeginsWithItsFirstInstant()
{
    QVERIFY(Vectors::check(u"month-starts.json"_s,
                           {{u"ms"_s, Vectors::Number}, {u"zone"_s}, {u"start"_s, Vectors::Number}},
                           [](const auto &asked) {
                               const Instant start =
                                   calendarOf(asked).startOfMonth(instantAt(asked[u"ms"]));
                               return Vectors::Answer{asked[u"start"], start.ms};
                           }));
}

void TestCalendar::aMonthEndsWhereTheNextBegins()
{
    for (const QString &zone : {u"Europe/Paris"_s, u"America/Havana"_s, u"Pacific/Apia"_s}) {
        for (const QString &locale : {u"fr_FR"_s, u"fa_IR"_s, u"ar_SA@calendar=islamic"_s}) {
            const Calendar calendar(locale, zone);
            Instant start = calendar.startOfMonth(gmt(u"2009-11-20T12:00:00Z"_s));
            for (int month = 0; month < 60; ++month) {
                const Instant end = calendar.startOfNextMonth(start);
                QCOMPARE(calendar.startOfMonth(end), end);
                QCOMPARE(calendar.startOfMonth(Instant{end.ms - 1}), start);
                QCOMPARE(calendar.startOfNextMonth(Instant{end.ms - 1}), end);
                start = end;
            }
        }
    }
}

void TestCalendar::dayAndTimeAreJoinedAsTheClockShowsThem()
{
    QVERIFY(Vectors::check(
        u"joins.json"_s,
        {{u"from"_s, Vectors::Number}, {u"time"_s, Vectors::Number}, {u"zone"_s}, {u"starts_at"_s}},
        [](const auto &asked) {
            const Instant joined =
                calendarOf(asked).join(instantAt(asked[u"from"]), instantAt(asked[u"time"]));
            return Vectors::Answer{asked[u"starts_at"], written(joined)};
        }));
}

void TestCalendar::theDayAloneGivesTheDay()
{
    const Calendar paris(u"fr_FR"_s, u"Europe/Paris"_s);
    const Instant lateEvening = gmt(u"2025-06-14T21:30:00Z"_s);
    const Instant pastMidnight = gmt(u"2025-01-01T23:15:42Z"_s);
    QCOMPARE(written(paris.join(lateEvening, pastMidnight)), u"2025-06-13T22:15:00Z"_s);
}

void TestCalendar::monthsAreNamedInTheUsersLocale()
{
    QVERIFY(Vectors::check(u"month-titles.json"_s,
                           {{u"ms"_s, Vectors::Number}, {u"locale"_s}, {u"zone"_s}, {u"title"_s}},
                           [](const auto &asked) {
                               return Vectors::Answer{
                                   asked[u"title"],
                                   calendarOf(asked).monthTitle(instantAt(asked[u"ms"]))};
                           }));
}

void TestCalendar::momentsAreShortAndReadable()
{
    QVERIFY(Vectors::check(
        u"moments.json"_s, {{u"ms"_s, Vectors::Number}, {u"locale"_s}, {u"zone"_s}, {u"text"_s}},
        [](const auto &asked) {
            return Vectors::Answer{plainSpaces(asked[u"text"].toString()),
                                   plainSpaces(calendarOf(asked).moment(instantAt(asked[u"ms"])))};
        }));
}

void TestCalendar::theFormWritesTheLocalesOwnDayAndTime()
{
    QVERIFY(
        Vectors::check(u"form-texts.json"_s,
                       {{u"ms"_s, Vectors::Number},
                        {u"locale"_s},
                        {u"zone"_s},
                        {u"date_texte"_s},
                        {u"heure_texte"_s}},
                       [](const auto &asked) {
                           const Calendar calendar = calendarOf(asked);
                           const Instant instant = instantAt(asked[u"ms"]);
                           return Vectors::Answer{
                               QJsonArray{asked[u"date_texte"], asked[u"heure_texte"]},
                               QJsonArray{calendar.dayText(instant), calendar.timeText(instant)}};
                       }));
}

void TestCalendar::theHoursOfADayAreCountedAsInTheListsMoments_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<bool>("isTwiceTwelve");
    QTest::newRow("French") << u"fr_FR"_s << false;
    QTest::newRow("English of the States") << u"en_US"_s << true;
    QTest::newRow("English of Britain") << u"en_GB"_s << false;
    QTest::newRow("Arabic of Egypt") << u"ar_EG"_s << true;
    QTest::newRow("Japanese") << u"ja_JP"_s << false;
    QTest::newRow("no language") << u"en_US_POSIX"_s << true;
    QTest::newRow("French, by the user's wish") << u"fr_FR@hours=h12"_s << true;
    QTest::newRow("French, counted from nought") << u"fr_FR@hours=h11"_s << true;
}

void TestCalendar::theHoursOfADayAreCountedAsInTheListsMoments()
{
    QFETCH(QString, locale);
    QFETCH(bool, isTwiceTwelve);
    const Calendar calendar(locale, u"GMT"_s);
    QCOMPARE(calendar.hasTwelveHours(), isTwiceTwelve);
    constexpr Instant evening{1'763'676'000'000}; // 22:00
    const QString moment = calendar.moment(evening);
    QCOMPARE(moment.contains(u"22"_s), !isTwiceTwelve && !moment.contains(u"٢٢"_s));
}

void TestCalendar::daysThatTheClockCutsShortBeginWhereItLands_data()
{
    QTest::addColumn<QString>("zone");
    QTest::addColumn<QString>("noon");
    QTest::addColumn<QString>("start");
    QTest::newRow("midnight is skipped")
        << u"America/Sao_Paulo"_s << u"2018-11-04T15:00:00Z"_s << u"2018-11-04T03:00:00Z"_s;
    QTest::newRow("midnight is inside what is skipped")
        << u"America/Toronto"_s << u"1919-03-31T16:00:00Z"_s << u"1919-03-31T04:30:00Z"_s;
    QTest::newRow("midnight occurs twice")
        << u"America/Havana"_s << u"2024-11-03T17:00:00Z"_s << u"2024-11-03T04:00:00Z"_s;
    QTest::newRow("the day before is left out")
        << u"Pacific/Apia"_s << u"2011-12-31T00:00:00Z"_s << u"2011-12-30T10:00:00Z"_s;
}

void TestCalendar::daysThatTheClockCutsShortBeginWhereItLands()
{
    QFETCH(QString, zone);
    QFETCH(QString, noon);
    QFETCH(QString, start);
    const Calendar calendar(u"fr_FR"_s, zone);
    QCOMPARE(written(calendar.startOfDay(gmt(noon))), start);
    QCOMPARE(calendar.startOfDay(gmt(start)), gmt(start));
}

void TestCalendar::theMonthIsThatOfTheLocalesOwnCalendar()
{
    const Instant instant = gmt(u"2026-10-01T09:12:33Z"_s);
    QCOMPARE(written(Calendar(u"fa_IR"_s, u"GMT"_s).startOfMonth(instant)),
             u"2026-09-23T00:00:00Z"_s);
    const Calendar japanese(u"ja_JP@calendar=japanese"_s, u"Asia/Tokyo"_s);
    const Instant heisei = gmt(u"1991-02-03T00:00:00Z"_s);
    QCOMPARE(japanese.join(heisei, heisei), heisei);
}

void TestCalendar::copiesSayTheSame()
{
    const Calendar paris(u"fr_FR"_s, u"Europe/Paris"_s);
    Calendar copy = paris;
    const Instant instant = gmt(u"2026-10-01T09:12:33Z"_s);
    QCOMPARE(copy.moment(instant), paris.moment(instant));
    copy = Calendar(u"en_US"_s, u"GMT"_s);
    QCOMPARE(paris.monthTitle(instant), u"Octobre 2026"_s);
    QCOMPARE(copy.monthTitle(instant), u"October 2026"_s);
}

void TestCalendar::anUnknownZoneIsGmt()
{
    const Calendar nowhere(u"fr_FR"_s, u"Nowhere/Town"_s);
    QCOMPARE(nowhere.timeText(gmt(u"2026-10-01T09:12:33Z"_s)), u"09:12"_s);
}

void TestCalendar::theUsersLocaleIsTakenFromTheFirstVariableThatIsSet()
{
    const Instant instant = gmt(u"2026-10-01T09:12:33Z"_s);
    qputenv("LANG", "en_US.UTF-8");
    qputenv("LC_TIME", "de_DE.UTF-8");
    qputenv("LC_ALL", "fr_FR.UTF-8");
    QCOMPARE(Calendar::current().monthTitle(instant), u"Octobre 2026"_s);
    qputenv("LC_ALL", "");
    QCOMPARE(Calendar::current().monthTitle(instant), u"Oktober 2026"_s);
    qunsetenv("LC_TIME");
    QCOMPARE(Calendar::current().monthTitle(instant), u"October 2026"_s);
    qputenv("LANG", "C.UTF-8");
    QCOMPARE(Calendar::current().monthTitle(instant), u"October 2026"_s);
    qputenv("LC_ALL", "fr_FR.UTF-8");
}

void TestCalendar::aChangedZoneIsSeen()
{
    const Instant instant = gmt(u"2026-10-01T09:12:33Z"_s);
    qputenv("TZ", "Asia/Tokyo");
    QCOMPARE(Calendar::current().timeText(instant), u"18:12"_s);
    qputenv("TZ", ":Europe/Paris");
    QCOMPARE(Calendar::current().timeText(instant), u"11:12"_s);
}

QTEST_GUILESS_MAIN(TestCalendar)
#include "test_calendar.moc"
