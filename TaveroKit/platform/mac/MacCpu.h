#pragma once

#include "platform/CpuSource.h"
#include "platform/mac/MacKernel.h"

#include <memory>

namespace tavero {

// CPU counters of a Mac: host_processor_info, getloadavg and the hw.perflevel sysctls.
class MacCpu : public CpuSource {
  public:
    explicit MacCpu(std::shared_ptr<MacKernel> kernel);

    std::optional<std::vector<CpuTicks>> ticks() override;
    LoadAverage loadAverage() override;
    CoreKinds coreKinds() override { return coreKinds_; }

  private:
    std::shared_ptr<MacKernel> kernel_;
    CoreKinds coreKinds_;
};

} // namespace tavero
