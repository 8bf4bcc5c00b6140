#pragma once

#include <cstdint>
#include <optional>

namespace tavero {

// The graphics processor at one instant.
struct GPUSnapshot {
    double device = 0;                 // fraction busy; 0 if the driver does not tell
    double renderer = 0;               // likewise, the pixel stage
    double tiler = 0;                  // likewise, the vertex stage
    std::uint64_t memoryInUse = 0;     // bytes
    std::uint64_t memoryAllocated = 0; // bytes
    std::optional<std::int64_t> cores;

    bool operator==(const GPUSnapshot&) const = default;
};

} // namespace tavero
