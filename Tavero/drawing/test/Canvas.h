#pragma once

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QRect>

#include <functional>

namespace tavero {

// What a drawing leaves on a clear picture of this size, one pixel a point.
QImage drawnOn(QSize size, const std::function<void(QPainter&)>& draw);

// The smallest rectangle that holds all ink; empty if there is none.
QRect inkOf(const QImage& image);

// The ink of a pixel, 0 to 1.
double inkAt(const QImage& image, int x, int y);

} // namespace tavero
