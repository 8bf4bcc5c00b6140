#include "drawing/ScaleLines.h"

#include <QPainter>
#include <QPen>

#include <algorithm>

namespace tavero {

namespace {

constexpr float opacity = 0.14F;
constexpr double halfWidth = 0.5; // keeps the outer lines inside

} // namespace

void drawScaleLines(QPainter& painter, QSizeF size, const QColor& color) {
    if (size.width() <= 0 || size.height() < 2 * halfWidth) return;
    QColor line = color;
    line.setAlphaF(line.alphaF() * opacity);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(line, 2 * halfWidth, Qt::SolidLine, Qt::FlatCap));
    for (const double share : {0.0, 0.5, 1.0}) {
        const double y = std::clamp(size.height() * share, halfWidth, size.height() - halfWidth);
        painter.drawLine(QPointF(0, y), QPointF(size.width(), y));
    }
}

} // namespace tavero
