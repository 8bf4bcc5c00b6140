#include "hardware/AppGPUSampler.h"

#include <utility>

namespace tavero {

std::unordered_map<std::int32_t, double> AppGPUSampler::sample(GPUSource& source) {
    const std::uint64_t now = source.uptime();
    std::unordered_map<std::int32_t, std::uint64_t> times = source.gpuTimes();
    std::unordered_map<std::int32_t, double> shares;
    if (previous_ && now > previous_->at) {
        const auto elapsed = static_cast<double>(now - previous_->at);
        for (const auto& [pid, time] : times) {
            const auto before = previous_->times.find(pid);
            // The time falls when a process gives up some of its access to the GPU.
            if (before != previous_->times.end() && time > before->second)
                shares.emplace(pid, static_cast<double>(time - before->second) / elapsed);
        }
    }
    previous_ = {.times = std::move(times), .at = now};
    return shares;
}

} // namespace tavero
