#pragma once

#include "records/Date.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tavero {

// What the name of a core dump tells, as systemd-coredump gives it:
// "core.<comm>.<uid>.<boot>.<pid>.<microseconds>", and an ending for how it is compressed.
struct CoredumpName {
    std::string comm; // the process's name, up to 15 bytes that it may choose freely
    std::uint32_t uid = 0;
    std::int32_t pid = 0;
    Date time; // of the crash, to the second

    bool operator==(const CoredumpName&) const = default;
};

// Absent for any other name. Also for one that begins with a dot: such a dump is being written.
std::optional<CoredumpName> coredumpName(std::string_view fileName);

} // namespace tavero
