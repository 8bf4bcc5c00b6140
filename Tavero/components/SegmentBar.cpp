#include "components/SegmentBar.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace tavero {

namespace {

constexpr double gap = 1; // between neighbours of any two colours

} // namespace

void drawSegmentBar(QPainter& painter, std::span<const SegmentRow> segments, QSizeF size,
                    const QColor& track) {
    if (size.isEmpty()) return;
    const double radius = size.height() / 2;
    QPainterPath outline;
    outline.addRoundedRect(QRectF({}, size), radius, radius);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(outline, track);

    // Each piece is cut out of the outline: a clip path would leave jagged ends.
    double x = 0;
    for (const SegmentRow& segment : segments) {
        if (!(segment.fraction > 0)) continue;
        const double width = std::min(segment.fraction * size.width(), size.width() - x);
        if (width > gap) {
            QPainterPath piece;
            piece.addRect(x, 0, width - gap, size.height());
            painter.fillPath(outline.intersected(piece), segment.color);
        }
        x += width;
    }
}

} // namespace tavero
