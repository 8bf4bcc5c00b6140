#pragma once

#include "records/GPUSnapshot.h"

#include <cstdint>
#include <optional>
#include <unordered_map>

namespace tavero {

// What the graphics processors of a machine tell.
class GPUSource {
  public:
    virtual ~GPUSource() = default;

    // The whole machine's load and memory. Absent if there is no processor that tells them.
    virtual std::optional<GPUSnapshot> gpu() = 0;

    // The GPU time that each process has used, in nanoseconds, cumulative. A process that the
    // system tells nothing of is left out.
    virtual std::unordered_map<std::int32_t, std::uint64_t> gpuTimes() = 0;

    // A clock that only goes forward, in nanoseconds.
    virtual std::uint64_t uptime() = 0;
};

} // namespace tavero
