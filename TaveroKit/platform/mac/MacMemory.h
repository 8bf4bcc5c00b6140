#pragma once

#include "platform/MemorySource.h"
#include "platform/mac/MacKernel.h"

#include <memory>

namespace tavero {

// Memory counters of a Mac: host_statistics64, host_page_size and the sysctls vm.swapusage,
// hw.memsize, kern.memorystatus_vm_pressure_level and kern.memorystatus_level.
class MacMemory : public MemorySource {
  public:
    explicit MacMemory(std::shared_ptr<MacKernel> kernel);

    std::optional<MemoryCounts> counts() override;

  private:
    std::shared_ptr<MacKernel> kernel_;
};

} // namespace tavero
