#include "platform/linux/LinuxVolumes.h"

#include "platform/linux/KeptFile.h"
#include "records/SaturatingSum.h"

#include <sys/statvfs.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>

namespace tavero {

namespace {

std::int64_t bytes(std::uint64_t blocks, std::uint64_t blockSize) {
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    return static_cast<std::int64_t>(
        std::min(saturatingProduct(blocks, blockSize), static_cast<std::uint64_t>(most)));
}

} // namespace

LinuxVolumes::LinuxVolumes(std::filesystem::path root) : root_(std::move(root)), devices_(root_) {}

std::optional<VolumeSpace> LinuxVolumes::space(const std::string& path) const {
    std::optional<VolumeSpace> space = query(path);
    if (!space) return std::nullopt;
    const std::vector<Mount> all = mounts();
    const auto last = std::find_if(all.rbegin(), all.rend(),
                                   [&](const Mount& mount) { return mount.path == path; });
    space->name = nameOf(last == all.rend() ? Mount{.path = path} : *last);
    return space;
}

std::vector<MountedVolume> LinuxVolumes::mounted() const {
    std::vector<MountedVolume> volumes;
    for (const Mount& mount : browsableMounts(mounts())) {
        const std::optional<VolumeSpace> space = query(mount.path);
        if (!space) continue;
        volumes.push_back({.path = mount.path,
                           .name = nameOf(mount),
                           .capacity = space->capacity,
                           .available = space->availableForImportantUsage,
                           .isInternal = devices_.isInternal(devices_.name(mount)),
                           .isBrowsable = true});
    }
    return volumes;
}

std::vector<Mount> LinuxVolumes::mounts() const {
    return parseMountInfo(readFile(root_ / "proc/self/mountinfo").value_or(""));
}

std::optional<std::string> LinuxVolumes::nameOf(const Mount& mount) const {
    std::optional<std::string> label = devices_.label(devices_.name(mount));
    if (!label && mount.path == "/") return "System";
    return label;
}

std::optional<VolumeSpace> LinuxVolumes::query(const std::string& path) const {
    const std::filesystem::path place = root_ / std::filesystem::path(path).relative_path();
    struct statvfs space = {};
    if (::statvfs(place.c_str(), &space) != 0) return std::nullopt;
    return VolumeSpace{.capacity = bytes(space.f_blocks, space.f_frsize),
                       .availableForImportantUsage = bytes(space.f_bavail, space.f_frsize)};
}

} // namespace tavero
