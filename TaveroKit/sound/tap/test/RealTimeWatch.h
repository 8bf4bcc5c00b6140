#pragma once

#include <cstdint>

namespace tavero {

// What threads did, while one of them stood in a RealTimeScope, that real-time code must not do.
// Counted by standing before the C library's own functions in a test program that links this; not
// with the sanitizers, which stand there themselves.
struct RealTimeFaults {
    std::int64_t allocations = 0; // memory asked for, resized or given back
    std::int64_t locks = 0;       // mutexes, spin locks and reader-writer locks taken
    std::int64_t waits = 0;       // sleeps, semaphores, conditions, futexes and polls

    bool operator==(const RealTimeFaults&) const = default;
};

// Since the last reset, of all threads. From any thread.
RealTimeFaults realTimeFaults();
void resetRealTimeFaults();

// What this thread does while it lives is counted. They nest.
class RealTimeScope {
  public:
    RealTimeScope();
    ~RealTimeScope();
    RealTimeScope(const RealTimeScope&) = delete;
    RealTimeScope& operator=(const RealTimeScope&) = delete;
};

} // namespace tavero
