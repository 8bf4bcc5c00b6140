#pragma once

#include <QColor>
#include <QList>
#include <QQuickPaintedItem>

namespace tavero {

// Level columns in a window.
class LevelColumnsItem : public QQuickPaintedItem {
    Q_OBJECT
    QML_NAMED_ELEMENT(LevelColumns)
    Q_PROPERTY(QList<double> levels READ levels WRITE setLevels NOTIFY levelsChanged FINAL)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged FINAL)
    Q_PROPERTY(QColor track READ track WRITE setTrack NOTIFY trackChanged FINAL)

  public:
    explicit LevelColumnsItem(QQuickItem* parent = nullptr);

    QList<double> levels() const { return levels_; } // fractions
    void setLevels(const QList<double>& levels);
    QColor color() const { return color_; }
    void setColor(const QColor& color);
    QColor track() const { return track_; }
    void setTrack(const QColor& track);

    void paint(QPainter* painter) override;

  signals:
    void levelsChanged();
    void colorChanged();
    void trackChanged();

  private:
    QList<double> levels_;
    QColor color_;
    QColor track_;
};

} // namespace tavero
