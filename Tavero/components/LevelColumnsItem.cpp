#include "components/LevelColumnsItem.h"

#include "components/LevelColumns.h"

namespace tavero {

LevelColumnsItem::LevelColumnsItem(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
}

void LevelColumnsItem::setLevels(const QList<double>& levels) {
    if (levels_ == levels) return;
    levels_ = levels;
    update();
    emit levelsChanged();
}

void LevelColumnsItem::setColor(const QColor& color) {
    if (color_ == color) return;
    color_ = color;
    update();
    emit colorChanged();
}

void LevelColumnsItem::setTrack(const QColor& track) {
    if (track_ == track) return;
    track_ = track;
    update();
    emit trackChanged();
}

void LevelColumnsItem::paint(QPainter* painter) {
    drawLevelColumns(*painter, levels_, size(), color_, track_);
}

} // namespace tavero
