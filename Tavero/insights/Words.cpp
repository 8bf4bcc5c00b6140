#include "insights/Words.h"

#include "presentation/NumberText.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tavero::InsightsWords {

std::string duration(double seconds) {
    if (!std::isfinite(seconds)) return placeholder;
    if (seconds < 60) return fixed(std::max(std::round(seconds), 0.0), 0) + " s";
    const double minutes = std::floor(seconds / 60);
    if (minutes < 60) return fixed(minutes, 0) + " m";
    return fixed(std::floor(minutes / 60), 0) + " h " + fixed(std::fmod(minutes, 60), 0) + " m";
}

Measure energy(std::optional<double> wattHours) {
    wattHours = known(wattHours);
    if (!wattHours) return {placeholder, "Wh"};
    if (*wattHours < 1000) return {fixed(wattHours, 0), "Wh"};
    return {fixed(*wattHours / 1000, 1), "kWh"};
}

std::uint64_t wholeBytes(double bytes) {
    if (!(bytes > 0)) return 0;
    constexpr double beyond = 0x1p64;
    if (bytes >= beyond) return std::numeric_limits<std::uint64_t>::max();
    return static_cast<std::uint64_t>(bytes);
}

std::string times(std::int64_t count) {
    if (count == 1) return "once";
    if (count == 2) return "twice";
    return std::to_string(count) + " times";
}

} // namespace tavero::InsightsWords
