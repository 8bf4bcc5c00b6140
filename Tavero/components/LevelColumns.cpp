#include "components/LevelColumns.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tavero {

namespace {

constexpr double widestStep = 40;
constexpr double gapShare = 0.25; // of a step
constexpr double widestGap = 4;
constexpr double leastStepWithGap = 3; // narrower columns stand wall to wall
constexpr double largestRadius = 3;

double known(double level) { return std::isfinite(level) ? std::clamp(level, 0.0, 1.0) : 0; }

} // namespace

ColumnPlan planColumns(std::size_t count, double width) {
    if (count == 0 || !(width > 0)) return {};
    // The last column has no gap behind it.
    const double even = width / static_cast<double>(count);
    const double gap = even < leastStepWithGap ? 0 : std::min(even * gapShare, widestGap);
    const double step = std::min((width + gap) / static_cast<double>(count), widestStep);
    return {.width = step - gap, .step = step};
}

void drawLevelColumns(QPainter& painter, std::span<const double> levels, QSizeF size,
                      const QColor& color, const QColor& track) {
    if (size.isEmpty() || levels.empty()) return;
    const auto [width, step] = planColumns(levels.size(), size.width());
    const double radius = std::min(largestRadius, width / 2);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    double x = 0;
    for (const double level : levels) {
        const QRectF column(x, 0, width, size.height());
        const double top = size.height() * (1 - known(level));
        painter.setBrush(track);
        painter.drawRoundedRect(column, radius, radius);
        // Clipped, so that a small level keeps the round foot of its column.
        painter.save();
        painter.setClipRect(QRectF(x, top, width, size.height() - top), Qt::IntersectClip);
        painter.setBrush(color);
        painter.drawRoundedRect(column, radius, radius);
        painter.restore();
        x += step;
    }
}

} // namespace tavero
