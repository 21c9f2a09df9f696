#pragma once

#include <QDateTime>

/// The time of day as this whole program has it, the toolkit included. It goes on from where it was
/// put; timers, which count from the start of the machine, do not notice. At its end the host's
/// time is back.
///
/// Midnight comes by itself once a day; a test that needs it cannot wait.
class MovableClock {
public:
    MovableClock() = default;
    ~MovableClock();
    Q_DISABLE_COPY_MOVE(MovableClock)

    static void put(const QDateTime &now);
};
