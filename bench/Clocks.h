#pragma once

#include <ctime>

/// Readings of the host's clocks, in milliseconds from somewhere.
namespace Clocks {

inline double read(clockid_t clock)
{
    timespec time{};
    clock_gettime(clock, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

/// The same for all processes.
inline double wall()
{
    return read(CLOCK_MONOTONIC);
}

/// What this thread has worked: other programs on the machine do not count.
inline double ofThread()
{
    return read(CLOCK_THREAD_CPUTIME_ID);
}

/// What all threads of this process have worked.
inline double ofProcess()
{
    return read(CLOCK_PROCESS_CPUTIME_ID);
}

} // namespace Clocks
