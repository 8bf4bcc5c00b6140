#include "drawing/Ring.h"

#include "drawing/Fraction.h"

#include <QPainter>
#include <QPainterPath>
#include <QPen>

namespace tavero {

namespace {

constexpr double top = 90; // degrees, as a QPainterPath counts them

} // namespace

void drawRing(QPainter& painter, double level, const QRectF& rect, double width,
              const QColor& color, const QColor& track) {
    const QRectF middle = rect.adjusted(width / 2, width / 2, -width / 2, -width / 2);
    if (middle.isEmpty()) return;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(track, width));
    painter.drawEllipse(middle);
    const double share = fraction(level);
    if (share == 0) return;
    QPainterPath arc; // a path, for drawArc() takes whole sixteenths of a degree only
    arc.arcMoveTo(middle, top);
    arc.arcTo(middle, top, -360 * share);
    painter.strokePath(arc, QPen(color, width, Qt::SolidLine, Qt::FlatCap));
}

} // namespace tavero
