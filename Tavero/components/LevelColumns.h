#pragma once

#include <QColor>
#include <QSizeF>

#include <span>

class QPainter;

namespace tavero {

// Draws one column a level, a fraction of the height, side by side from the left. Few of them are
// slim, many share the width; the empty part of each shows `track`. A level that is no number is
// drawn as 0.
void drawLevelColumns(QPainter& painter, std::span<const double> levels, QSizeF size,
                      const QColor& color, const QColor& track);

// Where the columns lie in a view so wide.
struct ColumnPlan {
    double width = 0; // of one column
    double step = 0;  // from one to the next
};

ColumnPlan planColumns(std::size_t count, double width);

} // namespace tavero
