#pragma once

#include "platform/Instant.h"
#include "platform/WallClock.h"

#include <QDate>
#include <QTime>

// Between instants and what the pickers of day and time show of them.

/// The Gregorian day of an instant.
QDate shownDay(Instant instant, const WallClock &clock);
/// The time of day of an instant.
QTime shownTime(Instant instant, const WallClock &clock);

/// An instant of that day: noon, which no clock skips.
Instant instantOnDay(QDate day, const WallClock &clock);
/// An instant with that time of day, on a day on which no clock was ever set: what is picked is
/// what is written, also when the event's own day has no such time.
Instant instantAtTime(QTime time, const WallClock &clock);
