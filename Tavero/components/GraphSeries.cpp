#include "components/GraphSeries.h"

#include <utility>

namespace tavero {

void GraphSeries::set(std::vector<GraphPoint> points) {
    if (points_ == points) return;
    points_ = std::move(points);
    emit changed();
}

} // namespace tavero
