#pragma once

#include "presentation/Format.h"
#include "presentation/Metric.h"
#include "presentation/Stat.h"
#include "records/LiveSnapshot.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tavero {

// What the pages tell and no snapshot holds. Absent if the system does not say.
struct Surroundings {
    std::optional<std::int64_t> displays; // screens connected now
    std::optional<std::int64_t> openApps; // running apps that have a place in the dock
    std::optional<std::string> uptime;    // in words
    std::string systemName = "macOS";     // what users call the operating system
};

// The secondary figures of the metric's page, in their order.
std::vector<Stat> stats(Metric metric, const LiveSnapshot& snapshot, const Format& format,
                        const Surroundings& surroundings);

// Those of its card on the Overview, four at most.
std::vector<Stat> overviewStats(Metric metric, const LiveSnapshot& snapshot, const Format& format,
                                const Surroundings& surroundings);

} // namespace tavero
