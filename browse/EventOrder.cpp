#include "browse/EventOrder.h"

#include <algorithm>
#include <iterator>
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

struct Entry {
    Instant date;
    qsizetype index; ///< where its event is
};

/// Moves each event to the place of its entry. In place: to have the memory for another list of
/// them takes longer, and mostly they come in order already.
void arrange(Event *events, std::vector<Entry> &entries)
{
    // Who moves leaves a place for another one: round in a circle, the first is held meanwhile.
    for (qsizetype first = 0; first < std::ssize(entries); ++first) {
        const auto whence = [&](qsizetype place) {
            return std::exchange(entries[static_cast<size_t>(place)].index, place);
        };
        qsizetype from = whence(first);
        if (from == first)
            continue;
        Event held = std::move(events[first]);
        qsizetype place = first;
        for (; from != first; from = whence(place)) {
            events[place] = std::move(events[from]);
            place = from;
        }
        events[place] = std::move(held);
    }
}

} // namespace

DatedEvents datedEvents(QList<Event> fetched)
{
    std::vector<Entry> entries;
    entries.reserve(static_cast<size_t>(fetched.size()));
    Event *const events = fetched.data();
    qsizetype kept = 0;
    for (qsizetype i = 0; i < fetched.size(); ++i) {
        const auto date = events[i].sortDate();
        if (!date)
            continue;
        if (kept != i)
            events[kept] = std::move(events[i]);
        entries.push_back({*date, kept++});
    }
    fetched.resize(kept);
    std::ranges::stable_sort(entries, {}, &Entry::date);

    DatedEvents dated;
    dated.dates.reserve(kept);
    for (const Entry &entry : entries)
        dated.dates.append(entry.date);
    arrange(fetched.data(), entries);
    dated.events = std::move(fetched);
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
