#pragma once

#include "components/SegmentList.h"

#include <QColor>
#include <QSizeF>

#include <span>

class QPainter;

namespace tavero {

// Draws a whole as a round-ended bar of its segments, one after another from the left. What they
// leave shows `track`. Segments that claim more than the whole are cut off at its end; a fraction
// that is no number counts as 0.
void drawSegmentBar(QPainter& painter, std::span<const SegmentRow> segments, QSizeF size,
                    const QColor& track);

} // namespace tavero
