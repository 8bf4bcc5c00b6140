#include "components/Sparkline.h"

#include <QPainter>
#include <QPen>

#include <algorithm>
#include <cmath>

namespace tavero {

namespace {

constexpr float fillOpacityDark = 0.26F;
constexpr float fillOpacityLight = 0.14F;
constexpr double strokeWidth = 1.5;

QPolygonF area(QPolygonF curve, double bottom) {
    const double first = curve.first().x();
    const double last = curve.last().x();
    curve.prepend({first, bottom});
    curve.append({last, bottom});
    return curve;
}

} // namespace

QPolygonF sparklineCurve(std::span<const GraphPoint> points, QSizeF size,
                         std::chrono::seconds window) {
    QPolygonF curve;
    if (points.empty() || size.isEmpty() || window <= window.zero()) return curve;
    // Anchored to the newest sample, not to the clock: a late pass doesn't push the curve aside.
    const Date start = points.back().time - window;
    const double seconds = std::chrono::duration<double>(window).count();
    for (const GraphPoint& point : points) {
        if (point.time < start || !std::isfinite(point.value)) continue;
        const double value = std::clamp(point.value, 0.0, 1.0);
        curve.append({size.width() * secondsBetween(start, point.time) / seconds,
                      size.height() - (size.height() - 2) * value - 1});
    }
    if (curve.size() < 2) curve.clear();
    return curve;
}

void drawSparkline(QPainter& painter, std::span<const GraphPoint> points, QSizeF size,
                   const QColor& color, bool isDark, std::chrono::seconds window) {
    const QPolygonF curve = sparklineCurve(points, size, window);
    if (curve.isEmpty()) return;
    QColor veil = color;
    veil.setAlphaF(isDark ? fillOpacityDark : fillOpacityLight);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(veil);
    painter.drawPolygon(area(curve, size.height()));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(color, strokeWidth, Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin));
    painter.drawPolyline(curve);
}

} // namespace tavero
