#pragma once

#include <cstdint>
#include <vector>

namespace tavero {

// How often a battery was charged, told from its levels alone: percentages in the order of time. A
// charge is a rise of 15 points over the lowest level; the next one can only begin after a fall of
// 5 points from its peak.
std::int64_t chargeCount(const std::vector<std::int64_t>& levels);

} // namespace tavero
