#include "drawing/Mark.h"

#include <QPainter>
#include <QPainterPath>
#include <QPainterPathStroker>

namespace tavero {

namespace {

constexpr double strokeWidth = 1.8;
constexpr QPointF center{10, 8};
constexpr double radius = 7.0; // of the stroke's middle: the ink stays 0.1 inside the box
constexpr QPointF dot{17.2, 2.8};
constexpr double dotRadius = 2.6;
constexpr double haloRadius = 4.1; // the glyph stays clear of the dot

QPainterPath circle(QPointF middle, double r) {
    QPainterPath path;
    path.addEllipse(middle, r, r);
    return path;
}

// One swing, up and down, as wide as the circle is inside.
QPainterPath wave() {
    QPainterPath path({5.9, 8});
    path.cubicTo(QPointF(6.9, 3.7), QPointF(9, 3.7), center);
    path.cubicTo(QPointF(11, 12.3), QPointF(13.1, 12.3), QPointF(14.1, 8));
    return path;
}

QPainterPath glyph() {
    QPainterPathStroker stroker;
    stroker.setWidth(strokeWidth);
    stroker.setCapStyle(Qt::RoundCap);
    stroker.setJoinStyle(Qt::RoundJoin);
    return stroker.createStroke(circle(center, radius)).united(stroker.createStroke(wave()));
}

QPainterPath glyphWithDot() {
    return glyph().subtracted(circle(dot, haloRadius)).united(circle(dot, dotRadius));
}

} // namespace

void drawMark(QPainter& painter, QPointF topLeft, const QColor& color, bool hasDot) {
    painter.setRenderHint(QPainter::Antialiasing);
    const QPainterPath path = hasDot ? glyphWithDot() : glyph();
    painter.fillPath(path.translated(topLeft), color);
}

} // namespace tavero
