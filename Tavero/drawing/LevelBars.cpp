#include "drawing/LevelBars.h"

#include "drawing/Fraction.h"

#include <QPainter>

namespace tavero {

namespace {

constexpr double barWidth = 2.5;
constexpr double barStep = 4.5; // from one to the next
constexpr double barRadius = 1.25;

} // namespace

double levelBarsWidth(std::size_t count) {
    return count == 0 ? 0 : static_cast<double>(count - 1) * barStep + barWidth;
}

void drawLevelBars(QPainter& painter, std::span<const double> heights, const QRectF& rect,
                   const QColor& color) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    double x = rect.center().x() - levelBarsWidth(heights.size()) / 2;
    for (const double height : heights) {
        const double tall = rect.height() * fraction(height);
        if (tall > 0)
            painter.drawRoundedRect(QRectF(x, rect.bottom() - tall, barWidth, tall), barRadius,
                                    barRadius);
        x += barStep;
    }
}

} // namespace tavero
