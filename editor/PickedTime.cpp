#include "editor/PickedTime.h"

#include "platform/Gmt.h"

#include <QDateTime>

namespace {

QDateTime wallTime(Instant instant, const WallClock &clock)
{
    return QDateTime::fromMSecsSinceEpoch(clock.wallAt(instant).ms, inGmt);
}

Instant whenShown(QDate day, QTime time, const WallClock &clock)
{
    return clock.whenRunningOn({QDateTime(day, time, inGmt).toMSecsSinceEpoch()});
}

} // namespace

QDate shownDay(Instant instant, const WallClock &clock)
{
    return wallTime(instant, clock).date();
}

QTime shownTime(Instant instant, const WallClock &clock)
{
    return wallTime(instant, clock).time();
}

Instant instantOnDay(QDate day, const WallClock &clock)
{
    return whenShown(day, QTime(12, 0), clock);
}

Instant instantAtTime(QTime time, const WallClock &clock)
{
    return whenShown(QDate(2001, 1, 15), time, clock);
}
