#pragma once

#include "platform/CpuSource.h"
#include "records/CPUSnapshot.h"

#include <optional>
#include <vector>

namespace tavero {

// How busy the CPUs were since the previous call, from their cumulative ticks.
class CPUSampler {
  public:
    // The first call, and one after the number of CPUs changed, tells the averages since boot.
    // Absent if the source refuses or no tick elapsed.
    std::optional<CPUSnapshot> sample(CpuSource& source);

  private:
    std::vector<CpuTicks> previous_;
};

} // namespace tavero
