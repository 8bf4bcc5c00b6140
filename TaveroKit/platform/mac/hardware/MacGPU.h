#pragma once

#include "platform/GPUSource.h"
#include "platform/mac/MacProcessTable.h"
#include "platform/mac/MacRegistry.h"

#include <memory>

namespace tavero {

// The graphics processor of a Mac: the statistics of its first accelerator, and the accounting that
// all accelerators keep on those who use them.
class MacGPU : public GPUSource {
  public:
    MacGPU(std::shared_ptr<MacRegistry> registry, std::shared_ptr<MacProcessTable> processes);

    std::optional<GPUSnapshot> gpu() override;
    std::unordered_map<std::int32_t, std::uint64_t> gpuTimes() override;
    std::uint64_t uptime() override; // of mach_absolute_time; 0 if its timebase is broken

  private:
    std::shared_ptr<MacRegistry> registry_;
    std::shared_ptr<MacProcessTable> processes_;
    Timebase timebase_;
};

} // namespace tavero
