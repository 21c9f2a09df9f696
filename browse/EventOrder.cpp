#include "browse/EventOrder.h"

#include <algorithm>
#include <map>
#include <numeric>
#include <utility>
#include <vector>

namespace {

/// The indices from `begin` to before `end` in the order of display.
QList<qsizetype> displayOrder(const QList<Instant> &dates, qsizetype begin, qsizetype end,
                              bool ascending)
{
    QList<qsizetype> order(end - begin);
    if (ascending) {
        std::iota(order.begin(), order.end(), begin);
        return order;
    }
    // Runs of equal dates change places as wholes, which is what a stable descending sort does.
    auto out = order.begin();
    for (qsizetype runEnd = end; runEnd > begin;) {
        qsizetype run = runEnd - 1;
        while (run > begin && dates[run - 1] == dates[run])
            --run;
        for (qsizetype i = run; i < runEnd; ++i)
            *out++ = i;
        runEnd = run;
    }
    return order;
}

} // namespace

DatedEvents datedEvents(QList<Event> fetched)
{
    struct Entry {
        Instant date;
        qsizetype index;
    };
    std::vector<Entry> entries;
    entries.reserve(static_cast<size_t>(fetched.size()));
    for (qsizetype i = 0; i < fetched.size(); ++i) {
        if (const auto date = fetched.at(i).sortDate())
            entries.push_back({*date, i});
    }
    std::ranges::stable_sort(entries, {}, &Entry::date);

    DatedEvents dated;
    dated.events.reserve(static_cast<qsizetype>(entries.size()));
    dated.dates.reserve(static_cast<qsizetype>(entries.size()));
    for (const Entry &entry : entries) {
        dated.events.append(std::move(fetched[entry.index]));
        dated.dates.append(entry.date);
    }
    return dated;
}

qsizetype firstUpcoming(const QList<Instant> &dates, Instant startOfToday)
{
    return std::ranges::lower_bound(dates, startOfToday) - dates.begin();
}

QList<EventGroup> groupedEvents(const QList<Instant> &dates, qsizetype begin, qsizetype end,
                                bool ascending, const Calendar &calendar)
{
    // Neighbours in time mostly share their month, so the calendar is asked once a month: as long
    // as a date lies between the boundaries of the last one, it belongs to the same bucket. The
    // buckets have keys all the same, since a calendar may count two stretches of time as one month
    // (the years before its era have the numbers of those in it).
    std::map<Instant, QList<qsizetype>> buckets;
    QList<qsizetype> *bucket = nullptr;
    Instant first, next;
    for (const qsizetype index : displayOrder(dates, begin, end, ascending)) {
        const Instant date = dates[index];
        if (!bucket || date < first || date >= next) {
            first = calendar.startOfMonth(date);
            next = calendar.startOfNextMonth(date);
            bucket = &buckets[first];
        }
        bucket->append(index);
    }

    QList<EventGroup> groups;
    groups.reserve(static_cast<qsizetype>(buckets.size()));
    for (auto &[month, items] : buckets)
        groups.append({calendar.monthTitle(month), std::move(items)});
    if (!ascending)
        std::ranges::reverse(groups);
    return groups;
}
