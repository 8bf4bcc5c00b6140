#pragma once

#include "platform/linux/KeptFile.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

namespace tavero {

// How long the render engine of an Intel processor slept, in milliseconds: rc6_residency_ms of the
// i915 driver, idle_residency_ms of xe. What is left of the time is more than it was busy, since it
// takes a moment to fall asleep; but it is the whole machine's, and anybody may read it.
class IntelGpu {
  public:
    // `card` is the folder in /sys/class/drm.
    explicit IntelGpu(const std::filesystem::path& card);

    // The share of the time since the previous call that it was awake, `now` in nanoseconds. Absent
    // at the first call, and until it has slept at all: some never do, and would look always busy.
    std::optional<double> awake(std::uint64_t now);

  private:
    struct Reading {
        std::uint64_t slept; // milliseconds
        std::uint64_t at;
    };
    std::optional<std::uint64_t> slept();

    std::vector<KeptFile> files_; // where it may be, by driver and age
    std::optional<Reading> previous_;
    std::vector<char> buffer_;
};

} // namespace tavero
