#pragma once

#include <chrono>

namespace tavero {

// A point in wall-clock time, UTC, with nanosecond resolution.
using Date = std::chrono::sys_time<std::chrono::nanoseconds>;

// The seconds from `earlier` to `later`; negative if they are the other way round.
inline double secondsBetween(Date earlier, Date later) {
    return std::chrono::duration<double>(later - earlier).count();
}

} // namespace tavero
