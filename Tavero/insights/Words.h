#pragma once

#include "presentation/Format.h"

#include <cstdint>
#include <optional>
#include <string>

namespace tavero::InsightsWords {

// How the figures of a report read. A value that is NaN or infinite reads as the placeholder.

// "42 s", "59 m", "2 h 30 m". Never below 0.
std::string duration(double seconds);

// Wh, from 1000 on in kWh.
Measure energy(std::optional<double> wattHours);

// Whole bytes of a sum of rates, from 0 to the largest there is.
std::uint64_t wholeBytes(double bytes);

// How often a device was charged: "once", "twice", "3 times".
std::string times(std::int64_t count);

} // namespace tavero::InsightsWords
