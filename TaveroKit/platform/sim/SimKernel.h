#pragma once

#include "platform/mac/MacKernel.h"
#include "platform/sim/SimTimeline.h"

#include <memory>

namespace tavero {

// The kernel of the simulated Mac.
class SimKernel : public MacKernel {
  public:
    explicit SimKernel(std::shared_ptr<SimTimeline> timeline);

    std::optional<ProcessorLoad> processorLoad() override;
    std::optional<VMStatistics> vmStatistics() override;
    std::optional<std::uint64_t> pageSize() override;
    LoadAverage loadAverage() override;
    int sysctlByName(const char* name, void* buffer, std::size_t& size) override;
    int sysctl(std::span<const int> numbers, void* buffer, std::size_t& size) override;
    std::optional<std::string> interfaceName(std::uint32_t index) override;

  private:
    std::shared_ptr<SimTimeline> timeline_;
};

} // namespace tavero
