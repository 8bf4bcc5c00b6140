#pragma once

#include <QColor>
#include <QRectF>

class QPainter;

namespace tavero {

// Draws a share of a whole as an arc from the top, clockwise, over a full circle in `track`. The
// stroke, `width` wide, stays inside the rectangle, which should be a square.
void drawRing(QPainter& painter, double level, const QRectF& rect, double width,
              const QColor& color, const QColor& track);

} // namespace tavero
