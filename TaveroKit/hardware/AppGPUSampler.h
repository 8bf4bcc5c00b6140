#pragma once

#include "platform/GPUSource.h"

#include <cstdint>
#include <optional>
#include <unordered_map>

namespace tavero {

// The share of GPU time that each process had between two calls.
class AppGPUSampler {
  public:
    // By pid. 1.0 is as much GPU time as wall time; work on several engines at once can give more.
    // A process is in it only if its time has grown since the previous call, which has to know it:
    // so nobody's whole life counts as one interval, and the first call tells nothing.
    std::unordered_map<std::int32_t, double> sample(GPUSource& source);

  private:
    struct Reading {
        std::unordered_map<std::int32_t, std::uint64_t> times; // nanoseconds by pid
        std::uint64_t at = 0;                                  // nanoseconds
    };

    std::optional<Reading> previous_;
};

} // namespace tavero
