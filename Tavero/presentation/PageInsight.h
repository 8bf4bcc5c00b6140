#pragma once

#include "presentation/Format.h"
#include "presentation/Metric.h"
#include "presentation/MetricStats.h"
#include "records/LiveSnapshot.h"

#include <optional>
#include <string>

namespace tavero {

// What is going on, in one plain sentence, and a second one that says why or what to do. The detail
// may be empty; a surface then leaves its line out.
struct PageInsight {
    std::string headline;
    std::string detail;

    bool operator==(const PageInsight&) const = default;
};

// The verdict on a metric. Absent for the temperature, of which those of the others tell.
std::optional<PageInsight> insight(Metric metric, const LiveSnapshot& snapshot,
                                   const Format& format, const Surroundings& surroundings);

} // namespace tavero
