#include "browse/EventOrder.h"

#include <QDateTime>
#include <QTest>
#include <QTimeZone>

#include <algorithm>
#include <optional>
#include <random>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// An instant written as its reader would say it, on the clock of `zone`.
Instant at(const QString &text, const char *zone = "Europe/Paris")
{
    auto local = QDateTime::fromString(text, Qt::ISODate);
    local.setTimeZone(QTimeZone(zone));
    return {local.toMSecsSinceEpoch()};
}

Event eventOf(const QString &id, std::optional<Instant> starts_at,
              std::optional<QString> date_texte = {})
{
    Event event;
    event.id = id;
    event.titre = id;
    event.starts_at = starts_at;
    event.date_texte = std::move(date_texte);
    return event;
}

QStringList ids(const QList<Event> &events)
{
    QStringList list;
    for (const Event &event : events)
        list.append(event.id);
    return list;
}

/// "Novembre 2026: 0 1" for each group.
QStringList shown(const QList<EventGroup> &groups)
{
    QStringList list;
    for (const EventGroup &group : groups) {
        QString line = group.title + QLatin1Char(':');
        for (const qsizetype item : group.items)
            line += u" %1"_s.arg(item);
        list.append(line);
    }
    return list;
}

QList<EventGroup> grouped(const QList<Instant> &dates, bool ascending,
                          const Calendar &calendar = {u"fr_FR"_s, u"Europe/Paris"_s})
{
    return groupedEvents(dates, 0, dates.size(), ascending, calendar);
}

} // namespace

class TestEventOrder : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void eventsComeEarliestFirstWhateverOrderTheServiceSends();
    void eventsOfTheSameInstantKeepTheServicesOrder();
    void anEventWithoutAReadableDateIsLeftOut();
    void noEventIsLostOrDoubledInWhateverOrderTheyCome();
    void aListThatSomebodyElseHoldsStaysAsItIs();
    void aDayAsTextPlacesAnEventAtItsMidnightInGreenwich();
    void yesterdaysLastMinuteIsPastAndTodaysFirstIsComing();
    void aDayThatDoesNotBeginAtMidnightIsSplitWhereItBegins();
    void anEmptyListHasNothingComing();
    void comingEventsReadMonthByMonthSoonestFirst();
    void pastEventsReadMonthByMonthLatestFirst();
    void pastEventsOfTheSameInstantKeepTheirOrder();
    void theSameMonthOfTwoYearsIsTwoSections();
    void aMonthBeginsWhereTheUserLives();
    void aClockChangeMovesNoEventToAnotherMonth();
    void monthsAreNamedInTheUsersLanguage();
    void monthsAreThoseOfTheUsersOwnCalendar();
    void onlyTheAskedPartIsGrouped();
    void noTwoSectionsOfATabShareATitle();
};

void TestEventOrder::eventsComeEarliestFirstWhateverOrderTheServiceSends()
{
    const DatedEvents dated = datedEvents({
        eventOf(u"c"_s, Instant{300}),
        eventOf(u"a"_s, Instant{-100}),
        eventOf(u"b"_s, Instant{200}),
    });
    QCOMPARE(ids(dated.events), QStringList({u"a"_s, u"b"_s, u"c"_s}));
    QCOMPARE(dated.dates, QList<Instant>({Instant{-100}, Instant{200}, Instant{300}}));
}

void TestEventOrder::eventsOfTheSameInstantKeepTheServicesOrder()
{
    QList<Event> fetched;
    for (int i = 0; i < 100; ++i)
        fetched.append(eventOf(QString::number(i), Instant{i % 2}));
    const DatedEvents dated = datedEvents(fetched);
    for (int i = 0; i < 50; ++i) {
        QCOMPARE(dated.events[i].id, QString::number(2 * i));
        QCOMPARE(dated.events[50 + i].id, QString::number(2 * i + 1));
    }
}

void TestEventOrder::anEventWithoutAReadableDateIsLeftOut()
{
    Event onlyTs = eventOf(u"ts"_s, {});
    onlyTs.ts = Instant{5};
    onlyTs.heure_texte = u"10:00"_s;
    const DatedEvents dated = datedEvents({
        eventOf(u"words"_s, {}, u"samedi"_s),
        eventOf(u"nothing"_s, {}),
        onlyTs,
        eventOf(u"day"_s, {}, u"2025-06-14"_s),
    });
    QCOMPARE(ids(dated.events), QStringList(u"day"_s));
}

void TestEventOrder::noEventIsLostOrDoubledInWhateverOrderTheyCome()
{
    std::mt19937 random(7);
    const auto draw = [&random](int below) {
        return static_cast<int>(random() % static_cast<unsigned>(below));
    };
    for (int turn = 0; turn < 200; ++turn) {
        QList<Event> fetched;
        QList<Event> expected; // put in one by one, each behind the last that is not later
        for (int i = 0; i < turn; ++i) {
            const bool isDated = draw(8) > 0;
            const Event event =
                eventOf(QString::number(i),
                        isDated ? std::optional(Instant{draw(turn / 2 + 1)}) : std::nullopt);
            fetched.append(event);
            if (!isDated)
                continue;
            const auto place = std::ranges::find_if(
                expected, [&](const Event &other) { return *other.starts_at > *event.starts_at; });
            expected.insert(place, event);
        }
        const DatedEvents dated = datedEvents(fetched);
        QCOMPARE(ids(dated.events), ids(expected));
        QCOMPARE(dated.events, expected);
        QCOMPARE(dated.dates.size(), expected.size());
        for (qsizetype i = 0; i < expected.size(); ++i)
            QCOMPARE(dated.dates[i], *expected[i].starts_at);
    }
}

void TestEventOrder::aListThatSomebodyElseHoldsStaysAsItIs()
{
    const QList<Event> fetched{eventOf(u"late"_s, Instant{2}), eventOf(u"never"_s, {}),
                               eventOf(u"early"_s, Instant{1})};
    QCOMPARE(ids(datedEvents(fetched).events), QStringList({u"early"_s, u"late"_s}));
    QCOMPARE(ids(fetched), QStringList({u"late"_s, u"never"_s, u"early"_s}));
}

void TestEventOrder::aDayAsTextPlacesAnEventAtItsMidnightInGreenwich()
{
    Event day = eventOf(u"day"_s, {}, u"2025-06-14"_s);
    day.heure_texte = u"18:30"_s;
    QCOMPARE(datedEvents({day}).dates.first(), at(u"2025-06-14T00:00:00"_s, "UTC"));
}

void TestEventOrder::yesterdaysLastMinuteIsPastAndTodaysFirstIsComing()
{
    const Calendar calendar(u"fr_FR"_s, u"Europe/Paris"_s);
    const QList<Instant> dates = {
        at(u"2026-11-20T23:59:00"_s),
        at(u"2026-11-21T00:00:00"_s),
        at(u"2026-11-21T23:59:00"_s),
    };
    const Instant lateToday = at(u"2026-11-21T23:59:59"_s);
    QCOMPARE(firstUpcoming(dates, calendar.startOfDay(lateToday)), 1);
    const Instant afterMidnight = at(u"2026-11-22T00:00:00"_s);
    QCOMPARE(firstUpcoming(dates, calendar.startOfDay(afterMidnight)), 3);
}

void TestEventOrder::aDayThatDoesNotBeginAtMidnightIsSplitWhereItBegins()
{
    // In São Paulo the clock went from 00:00 to 01:00 on 4 November 2018.
    const Calendar calendar(u"pt_BR"_s, u"America/Sao_Paulo"_s);
    const Instant noon = at(u"2018-11-04T12:00:00"_s, "America/Sao_Paulo");
    const Instant begin = at(u"2018-11-04T01:00:00"_s, "America/Sao_Paulo");
    const QList<Instant> dates = {Instant{begin.ms - 1}, begin};
    QCOMPARE(firstUpcoming(dates, calendar.startOfDay(noon)), 1);
}

void TestEventOrder::anEmptyListHasNothingComing()
{
    QCOMPARE(firstUpcoming({}, Instant{0}), 0);
    QVERIFY(grouped({}, true).isEmpty());
}

void TestEventOrder::comingEventsReadMonthByMonthSoonestFirst()
{
    const QList<Instant> dates = {
        at(u"2026-11-02T10:00:00"_s),
        at(u"2026-11-30T10:00:00"_s),
        at(u"2026-12-01T10:00:00"_s),
    };
    QCOMPARE(shown(grouped(dates, true)),
             QStringList({u"Novembre 2026: 0 1"_s, u"Décembre 2026: 2"_s}));
}

void TestEventOrder::pastEventsReadMonthByMonthLatestFirst()
{
    const QList<Instant> dates = {
        at(u"2026-11-02T10:00:00"_s),
        at(u"2026-11-30T10:00:00"_s),
        at(u"2026-12-01T10:00:00"_s),
    };
    QCOMPARE(shown(grouped(dates, false)),
             QStringList({u"Décembre 2026: 2"_s, u"Novembre 2026: 1 0"_s}));
}

void TestEventOrder::pastEventsOfTheSameInstantKeepTheirOrder()
{
    const Instant early = at(u"2026-11-02T10:00:00"_s);
    const Instant late = at(u"2026-11-03T10:00:00"_s);
    QCOMPARE(shown(grouped({early, early, late, late, late}, false)),
             QStringList(u"Novembre 2026: 2 3 4 0 1"_s));
}

void TestEventOrder::theSameMonthOfTwoYearsIsTwoSections()
{
    const QList<Instant> dates = {
        at(u"2026-01-15T10:00:00"_s),
        at(u"2027-01-15T10:00:00"_s),
    };
    QCOMPARE(shown(grouped(dates, true)),
             QStringList({u"Janvier 2026: 0"_s, u"Janvier 2027: 1"_s}));
}

void TestEventOrder::aMonthBeginsWhereTheUserLives()
{
    const QList<Instant> newYear = {at(u"2026-12-31T23:30:00"_s, "UTC")};
    const QString locale = u"fr_FR"_s;
    QCOMPARE(shown(grouped(newYear, true, {locale, u"Europe/Paris"_s})),
             QStringList(u"Janvier 2027: 0"_s));
    QCOMPARE(shown(grouped(newYear, true, {locale, u"America/Guadeloupe"_s})),
             QStringList(u"Décembre 2026: 0"_s));
}

void TestEventOrder::aClockChangeMovesNoEventToAnotherMonth()
{
    // Summer time ends on 25 October and begins on 29 March 2026, inside their months.
    const QList<Instant> dates = {
        at(u"2026-03-01T00:00:00"_s), at(u"2026-03-31T23:59:59"_s), at(u"2026-04-01T00:00:00"_s),
        at(u"2026-10-01T00:00:00"_s), at(u"2026-10-31T23:59:59"_s), at(u"2026-11-01T00:00:00"_s),
    };
    QCOMPARE(shown(grouped(dates, true)),
             QStringList({u"Mars 2026: 0 1"_s, u"Avril 2026: 2"_s, u"Octobre 2026: 3 4"_s,
                          u"Novembre 2026: 5"_s}));
}

void TestEventOrder::monthsAreNamedInTheUsersLanguage()
{
    const QList<Instant> dates = {at(u"2026-08-15T10:00:00"_s)};
    const QString zone = u"Europe/Paris"_s;
    QCOMPARE(grouped(dates, true, {u"fr_FR"_s, zone})[0].title, u"Août 2026"_s);
    QCOMPARE(grouped(dates, true, {u"de_DE"_s, zone})[0].title, u"August 2026"_s);
    QCOMPARE(grouped(dates, true, {u"pt_PT"_s, zone})[0].title, u"Agosto 2026"_s);
}

void TestEventOrder::monthsAreThoseOfTheUsersOwnCalendar()
{
    // Nowruz, the Persian new year, was on 21 March 2026: one Gregorian month, two Persian ones.
    const QList<Instant> dates = {
        at(u"2026-03-19T12:00:00"_s),
        at(u"2026-03-22T12:00:00"_s),
    };
    const Calendar persian(u"fa_IR@calendar=persian"_s, u"Europe/Paris"_s);
    QCOMPARE(grouped(dates, true, persian).size(), 2);
    QCOMPARE(grouped(dates, true).size(), 1);
}

void TestEventOrder::onlyTheAskedPartIsGrouped()
{
    const QList<Instant> dates = {
        at(u"2026-11-02T10:00:00"_s),
        at(u"2026-11-20T10:00:00"_s),
        at(u"2026-11-30T10:00:00"_s),
    };
    const Calendar calendar(u"fr_FR"_s, u"Europe/Paris"_s);
    QCOMPARE(shown(groupedEvents(dates, 1, 3, true, calendar)),
             QStringList(u"Novembre 2026: 1 2"_s));
    QCOMPARE(shown(groupedEvents(dates, 0, 1, false, calendar)),
             QStringList(u"Novembre 2026: 0"_s));
}

void TestEventOrder::noTwoSectionsOfATabShareATitle()
{
    QList<Instant> dates;
    for (int i = 0; i < 3000; ++i)
        dates.append(Instant{at(u"2020-01-01T00:00:00"_s).ms + i * 86'400'000LL});
    for (const bool ascending : {true, false}) {
        QSet<QString> titles;
        const auto groups = grouped(dates, ascending);
        for (const EventGroup &group : groups)
            titles.insert(group.title);
        QCOMPARE(titles.size(), groups.size());
        QCOMPARE(groups.size(), 99);
    }
}

QTEST_GUILESS_MAIN(TestEventOrder)
#include "test_event_order.moc"
