#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tavero {

// The bytes that went through one disk, cumulative; 0 for a figure that it does not tell.
struct DiskCounters {
    std::uint64_t bytesRead = 0;
    std::uint64_t bytesWritten = 0;

    bool operator==(const DiskCounters&) const = default;
};

// How much fits on a volume, in bytes. Each figure is absent if the system does not tell it.
struct VolumeSpace {
    std::optional<std::int64_t> capacity;
    // What an app could still write, counting what the system would give back for it.
    std::optional<std::int64_t> availableForImportantUsage;
    // The same without anything given back. Absent where the system keeps nothing to give back.
    std::optional<std::int64_t> available;
    std::optional<std::string> name; // what a person calls the volume

    bool operator==(const VolumeSpace&) const = default;
};

// A volume that is mounted and not hidden. Each figure is absent if the system does not tell it.
struct MountedVolume {
    std::string path;
    std::optional<std::string> name;
    std::optional<std::int64_t> capacity;  // bytes
    std::optional<std::int64_t> available; // bytes
    std::optional<bool> isInternal;
    std::optional<bool> isBrowsable;

    bool operator==(const MountedVolume&) const = default;
};

// Where disk counters and volumes come from.
class DiskSource {
  public:
    virtual ~DiskSource() = default;

    // One entry a disk, internal or external; nothing is counted in two of them. Empty if there is
    // none or the host refuses. Asked on every pass.
    virtual std::vector<DiskCounters> disks() = 0;

    // The volume at this path, absent if the host refuses. Slow, so asked once a minute at most.
    virtual std::optional<VolumeSpace> space(const std::string& path) = 0;

    // In the order the host reports them. A volume that can't be queried is left out. As slow.
    virtual std::vector<MountedVolume> volumes() = 0;
};

} // namespace tavero
