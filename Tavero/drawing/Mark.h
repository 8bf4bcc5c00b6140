#pragma once

#include <QColor>
#include <QPointF>
#include <QSizeF>

class QPainter;

namespace tavero {

// The space that the mark is drawn in.
inline constexpr QSizeF markSize{20, 16};

// Draws Tavero's mark, a round glyph with a wave, from this top left corner. With the dot, it tells
// that there is something new.
void drawMark(QPainter& painter, QPointF topLeft, const QColor& color, bool hasDot);

} // namespace tavero
