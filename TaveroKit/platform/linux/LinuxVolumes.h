#pragma once

#include "platform/DiskSource.h"
#include "platform/linux/BlockDevices.h"
#include "platform/linux/MountInfo.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tavero {

// The mounted volumes: which ones from /proc/self/mountinfo by the rules of browsableMounts(),
// their space from statvfs, their names from the labels in /dev/disk/by-label. A volume without a
// label has no name, but "/" is then called "System". A volume is internal if none of the disks
// that it lies on can be unplugged.
//
// Linux gives no file back on demand, so there is one figure for what is available; it leaves out
// the reserve that only the administrator may use.
class LinuxVolumes {
  public:
    explicit LinuxVolumes(std::filesystem::path root);

    std::optional<VolumeSpace> space(const std::string& path) const;
    std::vector<MountedVolume> mounted() const;

  private:
    std::vector<Mount> mounts() const;
    std::optional<std::string> nameOf(const Mount& mount) const;
    std::optional<VolumeSpace> query(const std::string& path) const;

    std::filesystem::path root_;
    BlockDevices devices_;
};

} // namespace tavero
