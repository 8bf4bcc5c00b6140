#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace tavero {

struct ChildLimits {
    std::size_t bytes = 0; // of output
    std::chrono::milliseconds time{};
};

// What a program writes to its standard output until it ends, however it ends; its other streams
// lead nowhere. `command` begins with the program's path. Absent if it can't be started, exceeds
// the limits, or `isCancelled` becomes true; it is killed then, with what it has started. Blocks,
// at most a second longer than the limit.
std::optional<std::string> childOutput(const std::vector<std::string>& command,
                                       const ChildLimits& limits,
                                       const std::atomic<bool>& isCancelled);

} // namespace tavero
