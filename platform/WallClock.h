#pragma once

#include "platform/Instant.h"

#include <QString>
#include <QTimeZone>

/// What the clock on the wall shows, as the milliseconds since 1970 of a clock that knows no zones.
struct Wall {
    qint64 ms = 0;
};

/// A zone's clock, by the system's own zone database. (ICU brings one too, which is as old as ICU.)
class WallClock {
public:
    /// `zone` as in "Europe/Paris"; an unknown one is GMT.
    explicit WallClock(const QString &zone);

    Wall wallAt(Instant instant) const;

    /// When the clock shows `wall`: the first time of two. What it never shows runs on, as if the
    /// clock had not been put forward yet.
    Instant whenRunningOn(Wall wall) const;
    /// As above, but what the clock never shows is the moment at which it was put forward.
    Instant whenLanding(Wall wall) const;

private:
    struct Found {
        qint64 ms = 0;
        bool isShown = true;
    };

    qint64 offsetAt(qint64 ms) const;
    Found find(Wall wall) const;

    QTimeZone m_zone;
};
