#pragma once

#include "components/SegmentList.h"

#include <QColor>
#include <QPointer>
#include <QQuickPaintedItem>

namespace tavero {

// A segment bar in a window. Shows an empty bar without a list.
class SegmentBarItem : public QQuickPaintedItem {
    Q_OBJECT
    QML_NAMED_ELEMENT(SegmentBar)
    Q_PROPERTY(
        tavero::SegmentList* segments READ segments WRITE setSegments NOTIFY segmentsChanged FINAL)
    Q_PROPERTY(QColor track READ track WRITE setTrack NOTIFY trackChanged FINAL)

  public:
    explicit SegmentBarItem(QQuickItem* parent = nullptr);

    SegmentList* segments() const { return segments_; }
    void setSegments(SegmentList* segments);
    QColor track() const { return track_; }
    void setTrack(const QColor& track);

    void paint(QPainter* painter) override;

  signals:
    void segmentsChanged();
    void trackChanged();

  private:
    QPointer<SegmentList> segments_;
    QColor track_;
};

} // namespace tavero
