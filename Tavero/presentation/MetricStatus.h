#pragma once

#include "presentation/Metric.h"
#include "records/LiveSnapshot.h"

#include <optional>
#include <string>

namespace tavero {

// The mood of a status.
enum class Tone { good, warning, neutral };

struct ToneColors {
    std::optional<AdaptiveColor> text; // absent: the surface's secondary text colour
    AdaptiveColor background;
};

ToneColors colors(Tone tone);

// The words of the pill beside a metric.
struct Status {
    std::string text;
    Tone tone = Tone::neutral;

    bool operator==(const Status&) const = default;
};

// Absent if there is nothing to say.
std::optional<Status> status(Metric metric, const LiveSnapshot& snapshot);

} // namespace tavero
