#include "counters/DiskReader.h"

#include "records/SaturatingSum.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>
#include <utility>

namespace tavero::DiskReader {

namespace {

// What the system could give back on top of what is free anyway.
std::optional<std::int64_t> purgeable(const VolumeSpace& space) {
    if (!space.availableForImportantUsage || !space.available) return std::nullopt;
    const std::int64_t most = *space.availableForImportantUsage;
    const std::int64_t least = *space.available;
    if (most <= least) return 0;
    // Only a figure below 0, which no volume has, could make the difference too large.
    constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
    return least < 0 && most > largest + least ? largest : most - least;
}

std::string lastComponent(std::string_view path) {
    while (path.size() > 1 && path.ends_with('/')) path.remove_suffix(1);
    if (path == "/") return "/";
    return std::string(path.substr(path.rfind('/') + 1));
}

bool isKept(const MountedVolume& volume) {
    return volume.isBrowsable.value_or(true) && volume.capacity.value_or(0) >= 1 &&
           volume.available;
}

} // namespace

DiskSnapshot read(DiskSource& source, const std::string& volume, bool includeFreeSpace) {
    DiskSnapshot snapshot;
    for (const DiskCounters& disk : source.disks()) {
        snapshot.bytesRead = saturatingSum(snapshot.bytesRead, disk.bytesRead);
        snapshot.bytesWritten = saturatingSum(snapshot.bytesWritten, disk.bytesWritten);
    }
    if (!includeFreeSpace) return snapshot;
    if (std::optional<VolumeSpace> space = source.space(volume)) {
        snapshot.capacity = space->capacity;
        snapshot.available = space->availableForImportantUsage;
        snapshot.purgeable = purgeable(*space);
        snapshot.name = std::move(space->name);
    }
    return snapshot;
}

std::vector<VolumeInfo> volumes(DiskSource& source) {
    std::vector<VolumeInfo> kept;
    for (MountedVolume& volume : source.volumes()) {
        if (!isKept(volume)) continue;
        std::string name = volume.name ? std::move(*volume.name) : lastComponent(volume.path);
        kept.push_back({.name = std::move(name),
                        .path = std::move(volume.path),
                        .capacity = *volume.capacity,
                        .available = *volume.available,
                        .isInternal = volume.isInternal.value_or(false)});
    }
    return kept;
}

} // namespace tavero::DiskReader
