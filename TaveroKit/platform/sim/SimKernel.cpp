#include "platform/sim/SimKernel.h"

#include <algorithm>
#include <utility>

namespace tavero {

namespace {

constexpr int failure = -1;

// As the calls do it: without a buffer only the size; into one that is too small what fits, and the
// call fails.
int copy(const std::vector<std::byte>& bytes, void* buffer, std::size_t& size) {
    const std::size_t room = std::exchange(size, bytes.size());
    if (buffer == nullptr) return 0;
    size = std::min(room, bytes.size());
    std::copy_n(bytes.begin(), size, static_cast<std::byte*>(buffer));
    return size == bytes.size() ? 0 : failure;
}

} // namespace

SimKernel::SimKernel(std::shared_ptr<SimTimeline> timeline) : timeline_(std::move(timeline)) {}

std::optional<MacKernel::ProcessorLoad> SimKernel::processorLoad() {
    return timeline_->read([](const SimState& state) { return state.processorLoad; });
}

std::optional<VMStatistics> SimKernel::vmStatistics() {
    return timeline_->read([](const SimState& state) { return state.vmStatistics; });
}

std::optional<std::uint64_t> SimKernel::pageSize() {
    return timeline_->read([](const SimState& state) { return state.pageSize; });
}

LoadAverage SimKernel::loadAverage() {
    return timeline_->read([](const SimState& state) { return state.loadAverage; });
}

int SimKernel::sysctlByName(const char* name, void* buffer, std::size_t& size) {
    return timeline_->read([&](const SimState& state) {
        const auto found = state.sysctls.find(name);
        return found == state.sysctls.end() ? failure : copy(found->second, buffer, size);
    });
}

int SimKernel::sysctl(std::span<const int> numbers, void* buffer, std::size_t& size) {
    return timeline_->read([&](const SimState& state) {
        const auto found = state.numberedSysctls.find({numbers.begin(), numbers.end()});
        return found == state.numberedSysctls.end() ? failure : copy(found->second, buffer, size);
    });
}

std::optional<std::string> SimKernel::interfaceName(std::uint32_t index) {
    return timeline_->read([&](const SimState& state) {
        const auto found = state.interfaceNames.find(index);
        return found == state.interfaceNames.end() ? std::nullopt : std::optional(found->second);
    });
}

} // namespace tavero
