#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace tavero {

struct Mount;

// What /sys and /dev tell of the block devices under mounted volumes.
class BlockDevices {
  public:
    explicit BlockDevices(std::filesystem::path root);

    // The kernel's name of the device that a mount lies on: "sda1", "dm-0". Empty if unknown.
    std::string name(const Mount& mount) const;

    // The label of the file system on the device of this name. Absent if it has none.
    std::optional<std::string> label(const std::string& name) const;

    // True if none of the disks under this device can be unplugged. Absent if it is unknown.
    std::optional<bool> isInternal(const std::string& name) const;

  private:
    std::optional<bool> isInternal(const std::string& name, int depth) const;
    bool canBeUnplugged(const std::filesystem::path& disk) const;

    std::filesystem::path root_;
};

// What udev wrote as the name of a link: a character that is awkward there is "\x20".
std::string decodedLabel(std::string_view name);

} // namespace tavero
