#pragma once

#include "presentation/GraphPoint.h"
#include "presentation/Metric.h"
#include "records/LiveSnapshot.h"

#include <map>
#include <optional>
#include <vector>

namespace tavero {

// One curve a metric; a metric that never had a value has no entry.
using GraphHistory = std::map<Metric, std::vector<GraphPoint>>;

// The curves of the last minute. Of disk and network it keeps bytes a second, of the others
// fractions of the graph's height.
class Graphs {
  public:
    // Adds one point to every curve. A metric whose source is absent or no number is skipped.
    void feed(const LiveSnapshot& snapshot);

    // What the top of the graph stands for, a round number of MiB a second. Download and upload
    // share one. Absent for the metrics whose curves are fractions.
    std::optional<double> top(Metric metric) const;

    // Ready to draw: disk and network as fractions of their tops.
    GraphHistory history() const;
    std::vector<GraphPoint> uploadHistory() const;

    const GraphHistory& rawHistory() const { return rawHistory_; }
    const std::vector<GraphPoint>& rawUpload() const { return rawUpload_; }

  private:
    GraphHistory rawHistory_;
    std::vector<GraphPoint> rawUpload_; // bytes a second
};

// The first of a ladder of round rates that is at least `value`, in bytes a second. Above the
// ladder it is 10000 MiB a second, whatever the value.
double niceTop(double value);

} // namespace tavero
