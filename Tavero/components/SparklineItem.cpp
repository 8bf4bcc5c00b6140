#include "components/SparklineItem.h"

#include "components/Sparkline.h"

namespace tavero {

SparklineItem::SparklineItem(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
}

void SparklineItem::setSeries(GraphSeries* series) {
    if (series_ == series) return;
    if (series_) series_->disconnect(this);
    series_ = series;
    if (series) connect(series, &GraphSeries::changed, this, [this] { update(); });
    update();
    emit seriesChanged();
}

void SparklineItem::setColor(const QColor& color) {
    if (color_ == color) return;
    color_ = color;
    update();
    emit colorChanged();
}

void SparklineItem::setDark(bool isDark) {
    if (isDark_ == isDark) return;
    isDark_ = isDark;
    update();
    emit isDarkChanged();
}

void SparklineItem::paint(QPainter* painter) {
    if (series_) drawSparkline(*painter, series_->points(), size(), color_, isDark_);
}

} // namespace tavero
