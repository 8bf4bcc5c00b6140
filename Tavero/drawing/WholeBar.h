#pragma once

#include <QColor>
#include <QRectF>

class QPainter;

namespace tavero {

// Draws how much of a whole is taken (a disk's space) as a round-ended bar from the left, over
// `track`.
void drawStorageBar(QPainter& painter, double level, const QRectF& rect, const QColor& color,
                    const QColor& track);

// The same for a battery's charge: a lying battery with its contact at the right.
void drawBatteryBar(QPainter& painter, double level, const QRectF& rect, const QColor& color,
                    const QColor& track);

} // namespace tavero
