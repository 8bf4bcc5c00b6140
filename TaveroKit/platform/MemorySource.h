#pragma once

#include <cstdint>
#include <optional>

namespace tavero {

// Where the pages are, as a kernel counts them.
struct MemoryCounts {
    std::uint64_t pageSize = 0; // bytes in one of the pages counted below

    std::uint64_t internal = 0;   // pages with no file behind them
    std::uint64_t purgeable = 0;  // pages that apps marked as discardable
    std::uint64_t wired = 0;      // pages that the kernel holds
    std::uint64_t compressor = 0; // pages that hold compressed ones
    std::uint64_t external = 0;   // pages with a file behind them

    std::uint64_t swapUsed = 0;  // bytes, 0 if unknown
    std::uint64_t swapTotal = 0; // bytes, 0 if unknown
    std::uint64_t total = 0;     // bytes installed, 0 if unknown

    // How hard the kernel works: 1 normal, 2 warning, 4 critical. Absent if unknown.
    std::optional<std::int64_t> pressureLevel;
    // Free memory as the kernel rates it, in percent. Absent if unknown.
    std::optional<std::int64_t> freeLevel;

    bool operator==(const MemoryCounts&) const = default;
};

// Where memory counters come from.
class MemorySource {
  public:
    virtual ~MemorySource() = default;

    // Absent if the host refuses.
    virtual std::optional<MemoryCounts> counts() = 0;
};

} // namespace tavero
