#pragma once

#include "presentation/Metric.h"
#include "records/LiveSnapshot.h"

namespace tavero {

// Whether this machine has anything to show for a metric. Every machine has a CPU and memory, also
// on a pass that failed to read them; the others show once they have been read.
inline bool isPresent(Metric metric, const LiveSnapshot& snapshot) {
    switch (metric) {
    case Metric::cpu:
    case Metric::memory:
        return true;
    case Metric::gpu:
        return snapshot.gpu.has_value();
    case Metric::power:
        return snapshot.battery || snapshot.systemWatts;
    case Metric::disk:
        return snapshot.diskCapacity || snapshot.diskReadTotal > 0 || snapshot.diskWrittenTotal > 0;
    case Metric::temperature:
        return snapshot.cpuTemperature.has_value();
    case Metric::network:
        return snapshot.networkInTotal > 0 || snapshot.networkOutTotal > 0;
    }
    return false;
}

} // namespace tavero
