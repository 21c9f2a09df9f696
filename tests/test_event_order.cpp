#include "browse/EventOrder.h"

#include <QDateTime>
#include <QTest>
#include <QTimeZone>

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
            line += QStringLiteral(" %1").arg(item);
        list.append(line);
    }
    return list;
}

QList<EventGroup> grouped(const QList<Instant> &dates, bool ascending,
                          const Calendar &calendar = {QStringLiteral("fr_FR"),
                                                      QStringLiteral("Europe/Paris")})
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
        eventOf(QStringLiteral("c"), Instant{300}),
        eventOf(QStringLiteral("a"), Instant{-100}),
        eventOf(QStringLiteral("b"), Instant{200}),
    });
    QCOMPARE(ids(dated.events),
             QStringList({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}));
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
    Event onlyTs = eventOf(QStringLiteral("ts"), {});
    onlyTs.ts = Instant{5};
    onlyTs.heure_texte = QStringLiteral("10:00");
    const DatedEvents dated = datedEvents({
        eventOf(QStringLiteral("words"), {}, QStringLiteral("samedi")),
        eventOf(QStringLiteral("nothing"), {}),
        onlyTs,
        eventOf(QStringLiteral("day"), {}, QStringLiteral("2025-06-14")),
    });
    QCOMPARE(ids(dated.events), QStringList(QStringLiteral("day")));
}

void TestEventOrder::aDayAsTextPlacesAnEventAtItsMidnightInGreenwich()
{
    Event day = eventOf(QStringLiteral("day"), {}, QStringLiteral("2025-06-14"));
    day.heure_texte = QStringLiteral("18:30");
    QCOMPARE(datedEvents({day}).dates.first(), at(QStringLiteral("2025-06-14T00:00:00"), "UTC"));
}

void TestEventOrder::yesterdaysLastMinuteIsPastAndTodaysFirstIsComing()
{
    const Calendar calendar(QStringLiteral("fr_FR"), QStringLiteral("Europe/Paris"));
    const QList<Instant> dates = {
        at(QStringLiteral("2026-11-20T23:59:00")),
        at(QStringLiteral("2026-11-21T00:00:00")),
        at(QStringLiteral("2026-11-21T23:59:00")),
    };
    const Instant lateToday = at(QStringLiteral("2026-11-21T23:59:59"));
    QCOMPARE(firstUpcoming(dates, calendar.startOfDay(lateToday)), 1);
    const Instant afterMidnight = at(QStringLiteral("2026-11-22T00:00:00"));
    QCOMPARE(firstUpcoming(dates, calendar.startOfDay(afterMidnight)), 3);
}

void TestEventOrder::aDayThatDoesNotBeginAtMidnightIsSplitWhereItBegins()
{
    // In São Paulo the clock went from 00:00 to 01:00 on 4 November 2018.
    const Calendar calendar(QStringLiteral("pt_BR"), QStringLiteral("America/Sao_Paulo"));
    const Instant noon = at(QStringLiteral("2018-11-04T12:00:00"), "America/Sao_Paulo");
    const Instant begin = at(QStringLiteral("2018-11-04T01:00:00"), "America/Sao_Paulo");
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
        at(QStringLiteral("2026-11-02T10:00:00")),
        at(QStringLiteral("2026-11-30T10:00:00")),
        at(QStringLiteral("2026-12-01T10:00:00")),
    };
    QCOMPARE(
        shown(grouped(dates, true)),
        QStringList({QStringLiteral("Novembre 2026: 0 1"), QStringLiteral("Décembre 2026: 2")}));
}

void TestEventOrder::pastEventsReadMonthByMonthLatestFirst()
{
    const QList<Instant> dates = {
        at(QStringLiteral("2026-11-02T10:00:00")),
        at(QStringLiteral("2026-11-30T10:00:00")),
        at(QStringLiteral("2026-12-01T10:00:00")),
    };
    QCOMPARE(
        shown(grouped(dates, false)),
        QStringList({QStringLiteral("Décembre 2026: 2"), QStringLiteral("Novembre 2026: 1 0")}));
}

void TestEventOrder::pastEventsOfTheSameInstantKeepTheirOrder()
{
    const Instant early = at(QStringLiteral("2026-11-02T10:00:00"));
    const Instant late = at(QStringLiteral("2026-11-03T10:00:00"));
    QCOMPARE(shown(grouped({early, early, late, late, late}, false)),
             QStringList(QStringLiteral("Novembre 2026: 2 3 4 0 1")));
}

void TestEventOrder::theSameMonthOfTwoYearsIsTwoSections()
{
    const QList<Instant> dates = {
        at(QStringLiteral("2026-01-15T10:00:00")),
        at(QStringLiteral("2027-01-15T10:00:00")),
    };
    QCOMPARE(shown(grouped(dates, true)),
             QStringList({QStringLiteral("Janvier 2026: 0"), QStringLiteral("Janvier 2027: 1")}));
}

void TestEventOrder::aMonthBeginsWhereTheUserLives()
{
    const QList<Instant> newYear = {at(QStringLiteral("2026-12-31T23:30:00"), "UTC")};
    const QString locale = QStringLiteral("fr_FR");
    QCOMPARE(shown(grouped(newYear, true, {locale, QStringLiteral("Europe/Paris")})),
             QStringList(QStringLiteral("Janvier 2027: 0")));
    QCOMPARE(shown(grouped(newYear, true, {locale, QStringLiteral("America/Guadeloupe")})),
             QStringList(QStringLiteral("Décembre 2026: 0")));
}

void TestEventOrder::aClockChangeMovesNoEventToAnotherMonth()
{
    // Summer time ends on 25 October and begins on 29 March 2026, inside their months.
    const QList<Instant> dates = {
        at(QStringLiteral("2026-03-01T00:00:00")), at(QStringLiteral("2026-03-31T23:59:59")),
        at(QStringLiteral("2026-04-01T00:00:00")), at(QStringLiteral("2026-10-01T00:00:00")),
        at(QStringLiteral("2026-10-31T23:59:59")), at(QStringLiteral("2026-11-01T00:00:00")),
    };
    QCOMPARE(
        shown(grouped(dates, true)),
        QStringList({QStringLiteral("Mars 2026: 0 1"), QStringLiteral("Avril 2026: 2"),
                     QStringLiteral("Octobre 2026: 3 4"), QStringLiteral("Novembre 2026: 5")}));
}

void TestEventOrder::monthsAreNamedInTheUsersLanguage()
{
    const QList<Instant> dates = {at(QStringLiteral("2026-08-15T10:00:00"))};
    const QString zone = QStringLiteral("Europe/Paris");
    QCOMPARE(grouped(dates, true, {QStringLiteral("fr_FR"), zone})[0].title,
             QStringLiteral("Août 2026"));
    QCOMPARE(grouped(dates, true, {QStringLiteral("de_DE"), zone})[0].title,
             QStringLiteral("August 2026"));
    QCOMPARE(grouped(dates, true, {QStringLiteral("pt_PT"), zone})[0].title,
             QStringLiteral("Agosto 2026"));
}

void TestEventOrder::monthsAreThoseOfTheUsersOwnCalendar()
{
    // Nowruz, the Persian new year, was on 21 March 2026: one Gregorian month, two Persian ones.
    const QList<Instant> dates = {
        at(QStringLiteral("2026-03-19T12:00:00")),
        at(QStringLiteral("2026-03-22T12:00:00")),
    };
    const Calendar persian(QStringLiteral("fa_IR@calendar=persian"),
                           QStringLiteral("Europe/Paris"));
    QCOMPARE(grouped(dates, true, persian).size(), 2);
    QCOMPARE(grouped(dates, true).size(), 1);
}

void TestEventOrder::onlyTheAskedPartIsGrouped()
{
    const QList<Instant> dates = {
        at(QStringLiteral("2026-11-02T10:00:00")),
        at(QStringLiteral("2026-11-20T10:00:00")),
        at(QStringLiteral("2026-11-30T10:00:00")),
    };
    const Calendar calendar(QStringLiteral("fr_FR"), QStringLiteral("Europe/Paris"));
    QCOMPARE(shown(groupedEvents(dates, 1, 3, true, calendar)),
             QStringList(QStringLiteral("Novembre 2026: 1 2")));
    QCOMPARE(shown(groupedEvents(dates, 0, 1, false, calendar)),
             QStringList(QStringLiteral("Novembre 2026: 0")));
}

void TestEventOrder::noTwoSectionsOfATabShareATitle()
{
    QList<Instant> dates;
    for (int i = 0; i < 3000; ++i)
        dates.append(Instant{at(QStringLiteral("2020-01-01T00:00:00")).ms + i * 86'400'000LL});
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
