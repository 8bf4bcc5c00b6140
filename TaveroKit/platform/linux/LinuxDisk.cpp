#include "platform/linux/LinuxDisk.h"

#include "platform/linux/BlockStat.h"

#include <string_view>
#include <system_error>

namespace tavero {

namespace {

namespace fs = std::filesystem;

bool isDisk(const fs::path& device) {
    std::error_code error;
    if (!fs::is_symlink(device / "device", error)) return false;
    // One path of several to the same disk.
    if (readAttribute(device / "hidden") == "1") return false;
    const fs::directory_iterator below(device / "slaves", error);
    return error || below == fs::directory_iterator();
}

} // namespace

LinuxDisk::LinuxDisk(const fs::path& root) : blockDevices_(root / "sys/block"), volumes_(root) {}

std::vector<DiskCounters> LinuxDisk::disks() {
    if (blockDevices_.changed()) findDisks();
    std::vector<DiskCounters> counters;
    counters.reserve(disks_.size());
    for (auto& [name, disk] : disks_) {
        const auto text = disk.stat ? disk.stat->read(buffer_) : std::nullopt;
        if (const auto now = text ? parseBlockStat(*text) : std::nullopt) {
            disk.read.update(now->bytesRead);
            disk.written.update(now->bytesWritten);
        }
        counters.push_back({.bytesRead = disk.read.total(), .bytesWritten = disk.written.total()});
    }
    return counters;
}

void LinuxDisk::findDisks() {
    for (auto& [name, disk] : disks_) disk.stat.reset();
    for (const std::string& name : blockDevices_.names())
        if (const fs::path device = blockDevices_.path() / name; isDisk(device))
            disks_[name].stat.emplace(device / "stat");
}

std::optional<VolumeSpace> LinuxDisk::space(const std::string& path) {
    return volumes_.space(path);
}

std::vector<MountedVolume> LinuxDisk::volumes() { return volumes_.mounted(); }

} // namespace tavero
