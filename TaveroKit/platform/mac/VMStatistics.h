#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace tavero {

// What host_statistics64 writes for HOST_VM_INFO64, as 32-bit words. Newer kernels fill all 104,
// older ones fewer; the rest stays 0. So the buffer has room for the longest answer, whatever the
// size of vm_statistics64 in the headers that this was built with.
using VMStatistics = std::array<std::uint32_t, 104>;

// The words that are read. HostLayouts.cpp holds them against the system's own declaration.
enum class VMWord : std::size_t {
    wire = 3,
    purgeable = 22,
    compressor = 32,
    external = 34,
    internal = 35,
};

constexpr std::uint32_t& word(VMStatistics& statistics, VMWord word) {
    return statistics[static_cast<std::size_t>(word)];
}

constexpr std::uint32_t word(const VMStatistics& statistics, VMWord word) {
    return statistics[static_cast<std::size_t>(word)];
}

} // namespace tavero
