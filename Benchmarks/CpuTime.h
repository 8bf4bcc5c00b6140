#pragma once

#include <time.h>

namespace tavero {

// The CPU time that this program has taken so far, all its threads together, in seconds.
inline double cpuSeconds() {
    timespec time = {};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

} // namespace tavero
