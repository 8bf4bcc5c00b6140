#pragma once

#include "records/SaturatingSum.h"

#include <cstdint>
#include <optional>

namespace tavero {

// How hard the kernel works to fit everything into memory.
enum class MemoryPressure { normal, warning, critical, unknown };

// Where the memory is. All figures in bytes.
struct MemorySnapshot {
    std::uint64_t total = 0;      // installed memory, 0 if it could not be read
    std::uint64_t app = 0;        // what apps hold and could not give back
    std::uint64_t wired = 0;      // what the kernel holds
    std::uint64_t compressed = 0; // what compressed pages occupy
    std::uint64_t cached = 0;     // file pages and whatever else is given back on demand
    std::uint64_t purgeable = 0;  // the part of `cached` that apps marked as discardable
    std::uint64_t swapUsed = 0;   // 0 if it could not be read
    MemoryPressure pressure = MemoryPressure::unknown;
    std::uint64_t swapTotal = 0;           // 0 if it could not be read
    std::optional<std::int64_t> freeLevel; // free memory as the kernel rates it, in percent

    std::uint64_t used() const { return saturatingSum(saturatingSum(app, wired), compressed); }
    std::uint64_t free() const {
        const std::uint64_t taken = saturatingSum(used(), cached);
        return taken >= total ? 0 : total - taken;
    }
    std::uint64_t available() const { return saturatingSum(free(), cached); }

    bool operator==(const MemorySnapshot&) const = default;
};

} // namespace tavero
