#include "platform/mac/hardware/MacGPU.h"

#include "platform/mac/hardware/GPUReader.h"

#include <utility>
#include <vector>

namespace tavero {

namespace {

constexpr const char* accelerator = "IOAccelerator";

} // namespace

MacGPU::MacGPU(std::shared_ptr<MacRegistry> registry, std::shared_ptr<MacProcessTable> processes)
    : registry_(std::move(registry)), processes_(std::move(processes)),
      timebase_(processes_->timebase()) {}

std::optional<GPUSnapshot> MacGPU::gpu() {
    const std::vector<PropertyMap> services = registry_->services(accelerator);
    return services.empty() ? std::nullopt : GPUReader::read(services.front());
}

std::unordered_map<std::int32_t, std::uint64_t> MacGPU::gpuTimes() {
    return GPUReader::times(registry_->children(accelerator));
}

std::uint64_t MacGPU::uptime() {
    const auto [numer, denom] = timebase_;
    if (denom == 0) return 0;
    // In two parts: the product with all ticks would outgrow 64 bits after some years.
    const std::uint64_t ticks = processes_->absoluteTime();
    return ticks / denom * numer + ticks % denom * numer / denom;
}

} // namespace tavero
