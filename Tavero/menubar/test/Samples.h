#pragma once

#include "menubar/ItemContent.h"
#include "menubar/MetricContent.h"
#include "presentation/GraphPoint.h"
#include "records/LiveSnapshot.h"

#include <string>
#include <vector>

namespace tavero {

// A laptop in the middle of a working day.
LiveSnapshot laptopSnapshot();
// A desktop computer with a lot of everything.
LiveSnapshot busySnapshot();

// A minute of a curve, one point every 5 s.
std::vector<GraphPoint> wavyHistory();

struct Sample {
    std::string name;
    ItemContent content;
};

// What a metric's item may show, one sample a look: of every mode, with names and without.
std::vector<Sample> metricSamples(Metric metric, const LiveSnapshot& snapshot,
                                  const std::vector<GraphPoint>& history);
// The other items, and every metric under strain and before the first sample.
std::vector<Sample> otherSamples();

// All of them on the laptop, in groups: each metric, and the others.
struct SampleGroup {
    std::string name;
    std::vector<Sample> samples;
};
std::vector<SampleGroup> sampleGroups();

} // namespace tavero
