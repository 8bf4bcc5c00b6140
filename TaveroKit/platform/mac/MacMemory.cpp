#include "platform/mac/MacMemory.h"

#include "platform/mac/SwapUsage.h"
#include "platform/mac/SysctlInt.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace tavero {

namespace {

SwapUsage swapUsage(MacKernel& kernel) {
    SwapUsage swap;
    std::size_t size = sizeof swap;
    const bool isRead = kernel.sysctlByName("vm.swapusage", &swap, size) == 0;
    return isRead && size == sizeof swap ? swap : SwapUsage{};
}

} // namespace

MacMemory::MacMemory(std::shared_ptr<MacKernel> kernel) : kernel_(std::move(kernel)) {}

std::optional<MemoryCounts> MacMemory::counts() {
    const std::optional<VMStatistics> statistics = kernel_->vmStatistics();
    const std::optional<std::uint64_t> pageSize = kernel_->pageSize();
    if (!statistics || !pageSize) return std::nullopt;
    const SwapUsage swap = swapUsage(*kernel_);
    const std::int64_t total = sysctlInt(*kernel_, "hw.memsize").value_or(0);
    return MemoryCounts{
        .pageSize = *pageSize,
        .internal = word(*statistics, VMWord::internal),
        .purgeable = word(*statistics, VMWord::purgeable),
        .wired = word(*statistics, VMWord::wire),
        .compressor = word(*statistics, VMWord::compressor),
        .external = word(*statistics, VMWord::external),
        .swapUsed = swap.used,
        .swapTotal = swap.total,
        .total = static_cast<std::uint64_t>(std::max<std::int64_t>(total, 0)),
        .pressureLevel = sysctlInt(*kernel_, "kern.memorystatus_vm_pressure_level"),
        .freeLevel = sysctlInt(*kernel_, "kern.memorystatus_level"),
    };
}

} // namespace tavero
