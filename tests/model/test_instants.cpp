#include "model/Event.h"
#include "model/InstantReader.h"
#include "support/Vectors.h"

#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

QJsonValue json(const std::optional<Instant> &instant)
{
    return instant ? QJsonValue(instant->ms) : QJsonValue(QJsonValue::Null);
}

std::optional<Instant> read(const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    return readInstant({bytes.constData(), static_cast<size_t>(bytes.size())});
}

} // namespace

class TestInstants : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void instantsAreReadAsTheServiceWritesThem();
    void daysOrderEventsWithoutAnInstant();
    void furtherForms_data();
    void furtherForms();
    void everyDayFollowsTheOneBefore();
    void daysAreThoseOfTheToolkitsCalendar();
};

void TestInstants::instantsAreReadAsTheServiceWritesThem()
{
    QVERIFY(Vectors::check(
        u"instants.json"_s, {{u"text"_s}, {u"ms"_s, Vectors::Number | Vectors::Null}},
        [](const auto &asked) {
            return Vectors::Answer{asked[u"ms"], json(read(asked[u"text"].toString()))};
        }));
}

void TestInstants::daysOrderEventsWithoutAnInstant()
{
    QVERIFY(Vectors::check(u"days.json"_s,
                           {{u"text"_s}, {u"ms"_s, Vectors::Number | Vectors::Null}},
                           [](const auto &asked) {
                               Event event;
                               event.date_texte = asked[u"text"].toString();
                               return Vectors::Answer{asked[u"ms"], json(event.sortDate())};
                           }));
}

void TestInstants::furtherForms_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("sameAs");
    const auto row = [](const char *name, const QString &text, const QString &sameAs) {
        QTest::newRow(name) << text << sameAs;
    };
    const QString none;
    row("seconds in the offset", u"1900-01-01T00:09:21+00:09:21"_s, u"1900-01-01"_s);
    row("seconds in an offset to the west", u"1900-01-01T00:00:00-00:09:21"_s,
        u"1900-01-01T00:09:21Z"_s);
    row("GMT", u"2025-06-14T18:30:00GMT"_s, u"2025-06-14T18:30:00Z"_s);
    row("an offset to GMT", u"2025-06-14T18:30:00GMT+02:00"_s, u"2025-06-14T16:30:00Z"_s);
    row("UTC in lower case", u"2025-06-14T18:30:00utc-0100"_s, u"2025-06-14T19:30:00Z"_s);
    row("z in lower case", u"2025-06-14T18:30:00z"_s, u"2025-06-14T18:30:00Z"_s);
    row("a leap second", u"2016-12-31T23:59:60Z"_s, u"2017-01-01"_s);
    row("a fraction of many digits", u"2025-06-14T18:30:00.1239999999999999999999Z"_s,
        u"2025-06-14T18:30:00.123Z"_s);
    row("the farthest offset", u"2025-06-14T18:00:00+18:00"_s, u"2025-06-14"_s);
    row("the first year", u"0000-03-01T00:00:00Z"_s, u"0000-03-01"_s);
    row("beyond the farthest offset", u"2025-06-14T18:30:00+18:01"_s, none);
    row("half of GMT", u"2025-06-14T18:30:00GM+02"_s, none);
    row("GMT and Z", u"2025-06-14T18:30:00GMTZ"_s, none);
    row("no zone", u"2025-06-14T18:30:00"_s, none);
    row("no zone behind a fraction", u"2025-06-14T18:30:00.5"_s, none);
    row("a sign alone", u"2025-06-14T18:30:00+"_s, none);
    row("one digit of an offset", u"2025-06-14T18:30:00+2"_s, none);
    row("three digits of an offset", u"2025-06-14T18:30:00+020"_s, none);
    row("an open offset", u"2025-06-14T18:30:00+02:"_s, none);
    row("an open offset behind minutes", u"2025-06-14T18:30:00+02:00:"_s, none);
    row("minutes of an offset beyond the hour", u"2025-06-14T18:30:00+02:60"_s, none);
    row("seconds of an offset beyond the minute", u"2025-06-14T18:30:00+02:00:60"_s, none);
    row("the hour 25", u"2025-06-14T25:00:00Z"_s, none);
    row("the second 61", u"2025-06-14T18:30:61Z"_s, none);
    row("a space for T", u"2025-06-14 18:30:00Z"_s, none);
    row("t in lower case", u"2025-06-14t18:30:00Z"_s, none);
    row("digits of another script", u"\u0662\u0660\u0662\u0665-06-14"_s, none);
}

void TestInstants::furtherForms()
{
    QFETCH(QString, text);
    QFETCH(QString, sameAs);
    const auto wanted = read(sameAs);
    QCOMPARE(wanted.has_value(), !sameAs.isEmpty());
    QCOMPARE(read(text), wanted);
}

void TestInstants::everyDayFollowsTheOneBefore()
{
    qint64 last = read(u"1599-12-31"_s)->ms;
    QDate day(1600, 1, 1);
    const QDate end(2400, 12, 31);
    for (; day <= end; day = day.addDays(1)) {
        const auto read = readDay(day.toString(u"yyyy-MM-dd"));
        QVERIFY(read);
        QCOMPARE(read->ms, last + 86'400'000);
        last = read->ms;
    }
    QCOMPARE(read(u"9999-12-31"_s)->ms, 253'402'214'400'000);
}

void TestInstants::daysAreThoseOfTheToolkitsCalendar()
{
    const QDate epoch(1970, 1, 1);
    int days = 0;
    for (const int year :
         {1, 4, 100, 400, 1582, 1600, 1752, 1900, 1970, 2000, 2024, 2026, 2100, 9999}) {
        for (QDate day(year, 1, 1); day.year() == year; day = day.addDays(1)) {
            const QString text = day.toString(Qt::ISODate);
            QCOMPARE(read(text), Instant{epoch.daysTo(day) * 86'400'000});
            QCOMPARE(readDay(text), read(text));
            ++days;
        }
    }
    QCOMPARE(days, 14 * 365 + 6); // leap: 4, 400, 1600, 1752, 2000, 2024
    QVERIFY(read(u"2023-02-29"_s) == read(u"2023-03-01"_s));
    QVERIFY(read(u"2100-02-31"_s) == read(u"2100-03-03"_s));
}

QTEST_GUILESS_MAIN(TestInstants)
#include "test_instants.moc"
