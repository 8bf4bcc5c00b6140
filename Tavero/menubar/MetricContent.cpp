#include "menubar/MetricContent.h"

#include "drawing/Fraction.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace tavero {

namespace {

constexpr double window = 60; // seconds

double share(double part, double whole) { return part / std::max(whole, 1.0); }

double memoryShare(const LiveSnapshot& snapshot) {
    if (!snapshot.memory) return 0;
    return share(static_cast<double>(snapshot.memory->used()),
                 static_cast<double>(snapshot.memory->total));
}

double diskShare(const LiveSnapshot& snapshot) {
    if (!snapshot.diskAvailable || !snapshot.diskCapacity) return 0;
    return 1 - share(static_cast<double>(*snapshot.diskAvailable),
                     static_cast<double>(*snapshot.diskCapacity));
}

} // namespace

bool hasRing(Metric metric) {
    return metric == Metric::memory || metric == Metric::power || metric == Metric::disk;
}

double ringFraction(Metric metric, const LiveSnapshot& snapshot) {
    switch (metric) {
    case Metric::memory:
        return fraction(memoryShare(snapshot));
    case Metric::power:
        return snapshot.battery ? fraction(static_cast<double>(snapshot.battery->percent) / 100)
                                : 0;
    case Metric::disk:
        return fraction(diskShare(snapshot));
    default:
        return 0;
    }
}

QPolygonF menuBarCurve(std::span<const GraphPoint> points) {
    QPolygonF curve;
    for (const GraphPoint& point : points) {
        if (!std::isfinite(point.value)) continue;
        const double age = std::clamp(secondsBetween(point.time, points.back().time), 0.0, window);
        curve.append({1 - age / window, fraction(point.value)});
    }
    if (curve.size() < 2) curve.clear();
    return curve;
}

MetricContent metricContent(Metric metric, MenuBarItemMode mode, const LiveSnapshot& snapshot,
                            std::span<const GraphPoint> history, const MenuBarLook& look) {
    MetricContent content{.metric = metric,
                          .mode = mode,
                          .name = std::string(smallName(metric, snapshot)),
                          .spoken = spokenText(metric, snapshot, look.format)};
    // Two rows leave no room for a name.
    content.showsName =
        look.showsNames && (metric != Metric::network || mode == MenuBarItemMode::graph);
    if (content.showsValue()) {
        content.value = menuBarValue(metric, snapshot, look.format);
        content.shortValue = shortMenuBarValue(metric, snapshot, look.format);
        if (metric == Metric::network) content.rows = networkRows(snapshot, look.format);
    }
    if (content.showsGraph() && hasRing(metric)) content.share = ringFraction(metric, snapshot);
    if (content.showsGraph() && !hasRing(metric)) content.curve = menuBarCurve(history);
    return content;
}

} // namespace tavero
