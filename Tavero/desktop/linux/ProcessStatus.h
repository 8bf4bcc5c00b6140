#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace tavero {

// Whose a process is, as /proc/PID/status tells everybody.
struct ProcessStatus {
    std::int32_t parent = 0;       // 0 if it has none here
    std::uint32_t user = 0;        // who started it
    std::uint32_t actsForUser = 0; // whose rights it has; another's for a setuid program

    bool operator==(const ProcessStatus&) const = default;
};

// Absent if one of them isn't told.
std::optional<ProcessStatus> parseProcessStatus(std::string_view text);

} // namespace tavero
