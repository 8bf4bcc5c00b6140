#include "history/ChargeCount.h"

#include <algorithm>

namespace tavero {

namespace {

constexpr std::uint64_t rise = 15;
constexpr std::uint64_t fall = 5;

// Without overflow, whatever a damaged file gives for a level.
std::uint64_t distance(std::int64_t low, std::int64_t high) {
    return static_cast<std::uint64_t>(high) - static_cast<std::uint64_t>(low);
}

} // namespace

std::int64_t chargeCount(const std::vector<std::int64_t>& levels) {
    if (levels.empty()) return 0;
    std::int64_t count = 0;
    std::int64_t low = levels.front();
    std::int64_t peak = low;
    bool charging = false;
    for (const std::int64_t level : levels)
        if (charging) {
            peak = std::max(peak, level);
            if (distance(level, peak) < fall) continue;
            charging = false;
            low = level;
        } else {
            low = std::min(low, level);
            if (distance(low, level) < rise) continue;
            count += 1;
            charging = true;
            peak = level;
        }
    return count;
}

} // namespace tavero
