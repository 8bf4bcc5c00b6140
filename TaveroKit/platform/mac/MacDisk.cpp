#include "platform/mac/MacDisk.h"

#include <utility>

namespace tavero {

MacDisk::MacDisk(std::shared_ptr<MacRegistry> registry, std::shared_ptr<MacVolumes> volumes)
    : registry_(std::move(registry)), volumes_(std::move(volumes)) {}

std::vector<DiskCounters> MacDisk::disks() {
    std::vector<DiskCounters> disks;
    for (const PropertyMap& driver : registry_->services("IOBlockStorageDriver"))
        if (const PropertyMap* statistics = mapValue(driver, "Statistics"))
            disks.push_back(
                {.bytesRead = uint64Value(*statistics, "Bytes (Read)").value_or(0),
                 .bytesWritten = uint64Value(*statistics, "Bytes (Write)").value_or(0)});
    return disks;
}

std::optional<VolumeSpace> MacDisk::space(const std::string& path) { return volumes_->space(path); }

std::vector<MountedVolume> MacDisk::volumes() { return volumes_->volumes(); }

} // namespace tavero
