#include "components/SegmentBarItem.h"

#include "components/SegmentBar.h"

namespace tavero {

SegmentBarItem::SegmentBarItem(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
}

void SegmentBarItem::setSegments(SegmentList* segments) {
    if (segments_ == segments) return;
    if (segments_) segments_->disconnect(this);
    segments_ = segments;
    if (segments) {
        const auto redraw = [this] { update(); };
        connect(segments, &QAbstractItemModel::dataChanged, this, redraw);
        connect(segments, &QAbstractItemModel::rowsInserted, this, redraw);
        connect(segments, &QAbstractItemModel::rowsRemoved, this, redraw);
        connect(segments, &QAbstractItemModel::rowsMoved, this, redraw);
    }
    update();
    emit segmentsChanged();
}

void SegmentBarItem::setTrack(const QColor& track) {
    if (track_ == track) return;
    track_ = track;
    update();
    emit trackChanged();
}

void SegmentBarItem::paint(QPainter* painter) {
    if (segments_)
        drawSegmentBar(*painter, segments_->rows(), size(), track_);
    else
        drawSegmentBar(*painter, {}, size(), track_);
}

} // namespace tavero
