#pragma once

#include <QColor>
#include <QSizeF>

class QPainter;

namespace tavero {

// Draws the hairlines of a graph with a scale, at its top, its middle and its bottom. The curve
// goes over them. `color` is that of the surface's text; the lines are a breath of it.
void drawScaleLines(QPainter& painter, QSizeF size, const QColor& color);

} // namespace tavero
