#include "platform/mac/MacSystem.h"

#include <chrono>
#include <cstdint>
#include <utility>

namespace tavero {

namespace {

// A struct timeval as the kernel lays it out.
struct BootTime {
    std::int64_t seconds = 0; // since 1970
    std::int64_t microseconds = 0;
};

} // namespace

MacSystem::MacSystem(std::shared_ptr<MacKernel> kernel) : kernel_(std::move(kernel)) {}

std::optional<Date> MacSystem::bootTime() {
    BootTime time;
    std::size_t size = sizeof time;
    if (kernel_->sysctlByName("kern.boottime", &time, size) != 0) return std::nullopt;
    // Beyond the year 2200 it is no date.
    if (time.seconds < 1 || time.seconds > 7'258'118'400) return std::nullopt;
    return Date(std::chrono::seconds(time.seconds));
}

} // namespace tavero
