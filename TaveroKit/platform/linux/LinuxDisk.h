#pragma once

#include "platform/DiskSource.h"
#include "platform/linux/KeptDirectory.h"
#include "platform/linux/KeptFile.h"
#include "platform/linux/LinuxVolumes.h"
#include "platform/linux/MonotonicCounter.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tavero {

// Disk counters from /sys/block/*/stat. Only whole disks with a device behind them count: no
// partition, and nothing that lies on another disk or in memory (dm, md, loop, zram), so that no
// byte counts twice. /sys/block is listed on every pass, so a disk counts from the moment it is
// plugged in; one that leaves keeps its last count, and one that starts over makes no step back.
//
// Volumes as LinuxVolumes finds them.
class LinuxDisk : public DiskSource {
  public:
    explicit LinuxDisk(const std::filesystem::path& root);

    std::vector<DiskCounters> disks() override;
    std::optional<VolumeSpace> space(const std::string& path) override;
    std::vector<MountedVolume> volumes() override;

  private:
    struct Disk {
        std::optional<KeptFile> stat; // absent once it left
        MonotonicCounter read;
        MonotonicCounter written;
    };
    void findDisks();

    KeptDirectory blockDevices_;
    std::map<std::string, Disk> disks_; // by kernel name, which the next disk gets again
    LinuxVolumes volumes_;
    std::vector<char> buffer_;
};

} // namespace tavero
