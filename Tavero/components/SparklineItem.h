#pragma once

#include "components/GraphSeries.h"

#include <QColor>
#include <QPointer>
#include <QQuickPaintedItem>

namespace tavero {

// A sparkline in a window. Shows nothing without a series.
class SparklineItem : public QQuickPaintedItem {
    Q_OBJECT
    QML_NAMED_ELEMENT(Sparkline)
    Q_PROPERTY(tavero::GraphSeries* series READ series WRITE setSeries NOTIFY seriesChanged FINAL)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged FINAL)
    Q_PROPERTY(bool isDark READ isDark WRITE setDark NOTIFY isDarkChanged FINAL)

  public:
    explicit SparklineItem(QQuickItem* parent = nullptr);

    GraphSeries* series() const { return series_; }
    void setSeries(GraphSeries* series);
    QColor color() const { return color_; }
    void setColor(const QColor& color);
    bool isDark() const { return isDark_; }
    void setDark(bool isDark);

    void paint(QPainter* painter) override;

  signals:
    void seriesChanged();
    void colorChanged();
    void isDarkChanged();

  private:
    QPointer<GraphSeries> series_;
    QColor color_;
    bool isDark_ = false;
};

} // namespace tavero
