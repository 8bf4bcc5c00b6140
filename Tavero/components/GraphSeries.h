#pragma once

#include "presentation/GraphPoint.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace tavero {

// The points of one curve, as a surface shows them: oldest first, values as fractions of the
// height.
class GraphSeries : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("A view-model owns it.")

  public:
    using QObject::QObject;

    const std::vector<GraphPoint>& points() const { return points_; }
    // Equal points notify nobody.
    void set(std::vector<GraphPoint> points);

  signals:
    void changed();

  private:
    std::vector<GraphPoint> points_;
};

} // namespace tavero
