#pragma once

#include <cstdint>
#include <vector>

namespace tavero {

// The mean number of runnable tasks over the last 1, 5 and 15 minutes.
struct LoadAverage {
    double one = 0;
    double five = 0;
    double fifteen = 0;

    bool operator==(const LoadAverage&) const = default;
};

// How busy the processors were between two reads. Fractions: 0.0 none, 1.0 all.
struct CPUSnapshot {
    double user = 0;   // user and nice ticks over all ticks of all logical CPUs
    double system = 0; // kernel ticks over all ticks
    double idle = 0;   // idle ticks over all ticks
    // One entry a logical CPU, in the order the host reports them: busy over all ticks of that CPU,
    // 0 if it had none.
    std::vector<double> perCore;
    LoadAverage loadAverage;
    std::int64_t performanceCores = 0; // 0 if unknown
    std::int64_t efficiencyCores = 0;  // 0 if unknown

    double total() const { return user + system; }

    bool operator==(const CPUSnapshot&) const = default;
};

} // namespace tavero
