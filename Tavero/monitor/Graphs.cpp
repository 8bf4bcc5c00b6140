#include "monitor/Graphs.h"

#include "monitor/Rolling.h"
#include "presentation/NumberText.h"

#include <algorithm>
#include <iterator>

namespace tavero {

namespace {

constexpr std::chrono::seconds span{65}; // 5 more than a graph shows
constexpr double fullWatts = 60;
constexpr double fullCelsius = 110;
constexpr double mebibyte = 1024.0 * 1024;

// The height of the metric's curve, or its rate. Absent if its source is.
std::optional<double> graphValue(Metric metric, const LiveSnapshot& snapshot) {
    switch (metric) {
    case Metric::cpu:
        return snapshot.cpu ? std::optional(snapshot.cpu->total()) : std::nullopt;
    case Metric::memory:
        if (!snapshot.memory) return std::nullopt;
        return static_cast<double>(snapshot.memory->used()) /
               static_cast<double>(std::max<std::uint64_t>(snapshot.memory->total, 1));
    case Metric::gpu:
        return snapshot.gpu ? std::optional(snapshot.gpu->device) : std::nullopt;
    case Metric::power:
        if (snapshot.battery) return static_cast<double>(snapshot.battery->percent) / 100;
        if (!known(snapshot.systemWatts)) return std::nullopt;
        return std::min(*snapshot.systemWatts / fullWatts, 1.0);
    case Metric::disk:
        return snapshot.diskReadPerSecond + snapshot.diskWritePerSecond;
    case Metric::temperature:
        if (!known(snapshot.cpuTemperature)) return std::nullopt;
        return std::min(*snapshot.cpuTemperature / fullCelsius, 1.0);
    case Metric::network:
        return snapshot.networkInPerSecond;
    }
    return std::nullopt;
}

double largest(const std::vector<GraphPoint>& points) {
    double most = 0;
    for (const GraphPoint& point : points) most = std::max(most, point.value);
    return most;
}

std::vector<GraphPoint> divided(std::vector<GraphPoint> points, double top) {
    for (GraphPoint& point : points) point.value /= top;
    return points;
}

} // namespace

void Graphs::feed(const LiveSnapshot& snapshot) {
    for (const Metric metric : allMetrics)
        if (const std::optional<double> value = known(graphValue(metric, snapshot)))
            appendRolling(rawHistory_[metric], {snapshot.date, *value}, span);
    if (const std::optional<double> upload = known(snapshot.networkOutPerSecond))
        appendRolling(rawUpload_, {snapshot.date, *upload}, span);
}

std::optional<double> Graphs::top(Metric metric) const {
    if (metric != Metric::disk && metric != Metric::network) return std::nullopt;
    const auto found = rawHistory_.find(metric);
    double most = found == rawHistory_.end() ? 0 : largest(found->second);
    if (metric == Metric::network) most = std::max(most, largest(rawUpload_));
    return niceTop(most);
}

GraphHistory Graphs::history() const {
    GraphHistory scaled = rawHistory_;
    for (auto& [metric, points] : scaled)
        if (const std::optional<double> full = top(metric))
            points = divided(std::move(points), *full);
    return scaled;
}

std::vector<GraphPoint> Graphs::uploadHistory() const {
    return divided(rawUpload_, *top(Metric::network));
}

double niceTop(double value) {
    constexpr double steps[] = {0.1, 0.25, 0.5, 1,   2,    5,    10,  20,
                                50,  100,  200, 500, 1000, 2000, 5000};
    const auto step = std::find_if(std::begin(steps), std::end(steps),
                                   [&](double top) { return top * mebibyte >= value; });
    return (step == std::end(steps) ? 10000 : *step) * mebibyte;
}

} // namespace tavero
