#pragma once

#include "records/Date.h"

namespace tavero {

// One sample of a curve over time.
struct GraphPoint {
    Date time{};
    double value = 0; // when drawn a fraction of the graph's height, clamped to 0 through 1

    bool operator==(const GraphPoint&) const = default;
};

} // namespace tavero
