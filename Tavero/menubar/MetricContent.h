#pragma once

#include "menubar/ItemContent.h"
#include "presentation/Format.h"
#include "presentation/GraphPoint.h"
#include "presentation/Metric.h"
#include "records/LiveSnapshot.h"

#include <span>

namespace tavero {

// How the user wants the items.
struct MenuBarLook {
    bool showsNames = true; // the small ones over values and graphs
    Format format;

    bool operator==(const MenuBarLook&) const = default;
};

// A ring shows the share of something, a curve a value over time.
bool hasRing(Metric metric);

// How much of the ring is filled; 0 if that is not known.
double ringFraction(Metric metric, const LiveSnapshot& snapshot);

// The curve of the last 60 s before the newest point. Older points stand at the left edge. Empty if
// fewer than two points have a number for value.
QPolygonF menuBarCurve(std::span<const GraphPoint> points);

// What a metric's item shows of a snapshot. `history` holds fractions, oldest first.
MetricContent metricContent(Metric metric, MenuBarItemMode mode, const LiveSnapshot& snapshot,
                            std::span<const GraphPoint> history, const MenuBarLook& look);

} // namespace tavero
