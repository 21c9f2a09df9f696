#include "platform/WallClock.h"

#include "platform/Gmt.h"

#include <QDateTime>

namespace {

constexpr qint64 oneDay = 86'400'000;

} // namespace

WallClock::WallClock(const QString &zone)
    : m_zone(zone.toUtf8())
{
    if (!m_zone.isValid())
        m_zone = QTimeZone::utc();
}

Wall WallClock::wallAt(Instant instant) const
{
    return {instant.ms + offsetAt(instant.ms)};
}

Instant WallClock::whenRunningOn(Wall wall) const
{
    return {find(wall).ms};
}

Instant WallClock::whenLanding(Wall wall) const
{
    const Found found = find(wall);
    if (found.isShown)
        return {found.ms};
    // No clock was ever put forward by more than a day.
    qint64 before = found.ms - oneDay;
    qint64 after = found.ms;
    while (after - before > 1) {
        const qint64 middle = before + (after - before) / 2;
        (offsetAt(middle) == offsetAt(after) ? after : before) = middle;
    }
    return {after};
}

qint64 WallClock::offsetAt(qint64 ms) const
{
    return m_zone.offsetFromUtc(QDateTime::fromMSecsSinceEpoch(ms, inGmt)) * qint64(1'000);
}

// The clock is put forward or back at most once in two days, hence the offset of the day before or
// that of the day after holds; where both do, the earlier one gives the first time.
WallClock::Found WallClock::find(Wall wall) const
{
    const qint64 earlier = offsetAt(wall.ms - oneDay);
    const qint64 later = offsetAt(wall.ms + oneDay);
    if (offsetAt(wall.ms - earlier) == earlier)
        return {wall.ms - earlier};
    if (offsetAt(wall.ms - later) == later)
        return {wall.ms - later};
    return {wall.ms - earlier, false};
}
