#pragma once

#include <QColor>
#include <QRectF>

#include <span>

class QPainter;

namespace tavero {

// Draws the bars of a level meter: slim ones with round ends that stand on the bottom of the
// rectangle, centred in it. One bar a height, as fractions of the rectangle's.
void drawLevelBars(QPainter& painter, std::span<const double> heights, const QRectF& rect,
                   const QColor& color);

// How wide so many bars are.
double levelBarsWidth(std::size_t count);

} // namespace tavero
