#pragma once

#include "presentation/GraphPoint.h"

#include <QColor>
#include <QPolygonF>
#include <QSizeF>

#include <chrono>
#include <span>

class QPainter;

namespace tavero {

// What a sparkline shows unless something else is asked for.
inline constexpr std::chrono::seconds sparklineWindow{60};

// The curve of the points in a view of this size, from the top left: the newest of them is at the
// right edge, and those older than `window` before it are left out. Empty if fewer than two are
// left or the view has no size. The values are fractions of the height; one that is no number is
// left out.
QPolygonF sparklineCurve(std::span<const GraphPoint> points, QSizeF size,
                         std::chrono::seconds window = sparklineWindow);

// Draws the curve in `color`, with a veil of it below.
void drawSparkline(QPainter& painter, std::span<const GraphPoint> points, QSizeF size,
                   const QColor& color, bool isDark, std::chrono::seconds window = sparklineWindow);

} // namespace tavero
