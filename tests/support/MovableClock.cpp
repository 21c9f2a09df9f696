#include "support/MovableClock.h"

#include <atomic>

#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

namespace {

std::atomic<qint64> aheadMs = 0; ///< of the host's time

int hostTime(clockid_t clock, timespec *time)
{
    return static_cast<int>(syscall(SYS_clock_gettime, clock, time));
}

} // namespace

// A function that the program itself has is taken before the host's, by all libraries it links.
extern "C" int clock_gettime(clockid_t clock, timespec *time) noexcept
{
    const int result = hostTime(clock, time);
    if (result == 0 && clock == CLOCK_REALTIME) {
        const qint64 ahead = aheadMs;
        qint64 nanoseconds = time->tv_nsec + ahead % 1000 * 1'000'000;
        qint64 seconds = time->tv_sec + ahead / 1000;
        if (nanoseconds < 0) {
            nanoseconds += 1'000'000'000;
            --seconds;
        }
        time->tv_sec = seconds + nanoseconds / 1'000'000'000;
        time->tv_nsec = nanoseconds % 1'000'000'000;
    }
    return result;
}

extern "C" int gettimeofday(timeval *time, void *) noexcept
{
    timespec now{};
    const int result = clock_gettime(CLOCK_REALTIME, &now);
    time->tv_sec = now.tv_sec;
    time->tv_usec = now.tv_nsec / 1000;
    return result;
}

MovableClock::~MovableClock()
{
    aheadMs = 0;
}

void MovableClock::put(const QDateTime &now)
{
    timespec host{};
    hostTime(CLOCK_REALTIME, &host);
    aheadMs = now.toMSecsSinceEpoch() - (host.tv_sec * 1000 + host.tv_nsec / 1'000'000);
}
