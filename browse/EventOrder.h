#pragma once

#include "model/Event.h"
#include "platform/Calendar.h"

#include <QList>
#include <QString>

/// The events of one load in ascending order of their sort dates, with those dates beside them, so
/// that each is computed once a load and the split and the groups need no event.
struct DatedEvents {
    QList<Event> events;
    /// One for each event, ascending.
    QList<Instant> dates;

    bool operator==(const DatedEvents &) const = default;
};

/// Orders what the service sent: events without a sort date are dropped, equal dates keep the
/// service's order. A pure function that may run on any thread.
DatedEvents datedEvents(QList<Event> fetched);

/// Where the coming events begin among ascending `dates`: the first at or after `startOfToday`. All
/// before it are past.
qsizetype firstUpcoming(const QList<Instant> &dates, Instant startOfToday);

/// One month of a tab. Its title is unlike that of every other month in the tab.
struct EventGroup {
    QString title;
    /// Indices into the events, in the order of display: no event is copied.
    QList<qsizetype> items;

    bool operator==(const EventGroup &) const = default;
};

/// Cuts the events from index `begin` to before `end` into months of `calendar`. Ascending: the
/// earliest month and event first. Descending: the latest first; equal dates keep the order of the
/// events either way.
QList<EventGroup> groupedEvents(const QList<Instant> &dates, qsizetype begin, qsizetype end,
                                bool ascending, const Calendar &calendar);
