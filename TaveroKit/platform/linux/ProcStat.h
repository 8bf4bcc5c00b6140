#pragma once

#include "records/CPUSnapshot.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace tavero {

// The time of one logical CPU in ticks since boot, folded into four kinds:
//   user    user, which already includes the time given to guests
//   nice    nice, likewise
//   system  system, irq and softirq
//   idle    idle and iowait
// Steal counts nowhere: it is time that this machine did not have.
struct CpuTime {
    std::uint32_t number = 0; // which CPU
    std::uint64_t user = 0;
    std::uint64_t nice = 0;
    std::uint64_t system = 0;
    std::uint64_t idle = 0;

    bool operator==(const CpuTime&) const = default;
};

// The "cpuN" lines of /proc/stat. A line without the first four figures is left out; later ones,
// which old kernels lack, count 0.
std::vector<CpuTime> parseProcStat(std::string_view text);

// /proc/loadavg. Absent without its three figures.
std::optional<LoadAverage> parseLoadAverage(std::string_view text);

// How many CPUs a list like "0-3,8" names, as in /sys/devices/cpu_core/cpus. What comes after the
// first malformed range is not counted.
std::int64_t parseCpuList(std::string_view text);

} // namespace tavero
