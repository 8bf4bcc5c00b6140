#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace tavero {

// One reading of the disks. Byte counts are cumulative over all of them.
struct DiskSnapshot {
    std::uint64_t bytesRead = 0;
    std::uint64_t bytesWritten = 0;
    // The volume at "/", in bytes. Absent unless free space was asked for and could be read.
    std::optional<std::int64_t> capacity;
    std::optional<std::int64_t> available; // what an app could still write
    std::optional<std::int64_t> purgeable; // what the system could give back
    std::optional<std::string> name;

    bool operator==(const DiskSnapshot&) const = default;
};

// A mounted volume that a person would browse. Its path identifies it.
struct VolumeInfo {
    std::string name;
    std::string path;
    std::int64_t capacity = 0;  // bytes
    std::int64_t available = 0; // bytes
    bool isInternal = false;

    bool operator==(const VolumeInfo&) const = default;
};

} // namespace tavero
