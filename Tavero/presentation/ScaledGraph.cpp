#include "presentation/ScaledGraph.h"

#include "presentation/MetricReading.h"

#include <algorithm>

namespace tavero {

std::string graphScale(Metric metric, std::optional<double> top, const Format& format) {
    switch (metric) {
    case Metric::disk:
    case Metric::network:
        return top ? graphLabel(*top, format) : "";
    case Metric::cpu:
    case Metric::memory:
    case Metric::gpu:
        return "100%";
    case Metric::power:
    case Metric::temperature:
        break;
    }
    return "";
}

std::array<double, 3> hairlines(double height) {
    const double lowest = std::max(height - 0.5, 0.5);
    return {0.5, std::clamp(height / 2, 0.5, lowest), lowest};
}

} // namespace tavero
