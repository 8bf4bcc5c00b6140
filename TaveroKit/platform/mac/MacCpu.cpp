#include "platform/mac/MacCpu.h"

#include "platform/mac/SysctlInt.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace tavero {

namespace {

constexpr std::size_t statesPerCpu = 4; // CPU_STATE_MAX

std::optional<std::vector<CpuTicks>> parse(const MacKernel::ProcessorLoad& load) {
    if (load.states.size() / statesPerCpu < load.cpuCount) return std::nullopt;
    std::vector<CpuTicks> ticks(load.cpuCount);
    for (std::size_t cpu = 0; cpu < ticks.size(); ++cpu) {
        const auto state = [&](std::size_t index) {
            return static_cast<std::uint32_t>(load.states[cpu * statesPerCpu + index]);
        };
        ticks[cpu] = {.user = state(0), .system = state(1), .idle = state(2), .nice = state(3)};
    }
    return ticks;
}

std::int64_t count(MacKernel& kernel, const char* name) {
    return std::max<std::int64_t>(sysctlInt(kernel, name).value_or(0), 0);
}

double finite(double value) { return std::isfinite(value) ? value : 0; }

} // namespace

MacCpu::MacCpu(std::shared_ptr<MacKernel> kernel)
    : kernel_(std::move(kernel)), coreKinds_{
                                      .performance = count(*kernel_, "hw.perflevel0.logicalcpu"),
                                      .efficiency = count(*kernel_, "hw.perflevel1.logicalcpu")} {}

std::optional<std::vector<CpuTicks>> MacCpu::ticks() {
    const std::optional<MacKernel::ProcessorLoad> load = kernel_->processorLoad();
    return load ? parse(*load) : std::nullopt;
}

LoadAverage MacCpu::loadAverage() {
    const LoadAverage load = kernel_->loadAverage();
    return {.one = finite(load.one), .five = finite(load.five), .fifteen = finite(load.fifteen)};
}

} // namespace tavero
