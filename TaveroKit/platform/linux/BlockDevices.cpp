#include "platform/linux/BlockDevices.h"

#include "platform/linux/KeptFile.h"
#include "platform/linux/MountInfo.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <system_error>
#include <utility>

namespace tavero {

namespace {

namespace fs = std::filesystem;

// A disk under a volume under a crypt under a RAID: no machine comes near this.
constexpr int deepest = 8;

// The last part of what a link points to; empty if it is no link.
std::string targetName(const fs::path& link) {
    std::error_code error;
    return fs::read_symlink(link, error).filename().string();
}

} // namespace

BlockDevices::BlockDevices(fs::path root) : root_(std::move(root)) {}

std::string BlockDevices::name(const Mount& mount) const {
    const std::string number =
        std::to_string(mount.deviceMajor) + ":" + std::to_string(mount.deviceMinor);
    if (std::string name = targetName(root_ / "sys/dev/block" / number); !name.empty()) return name;
    // btrfs has no device number of its own: what it was mounted from tells.
    if (!mount.source.starts_with("/dev/")) return {};
    const fs::path source = fs::path(mount.source).relative_path();
    if (std::string name = targetName(root_ / source); !name.empty()) return name;
    return source.filename().string();
}

std::optional<std::string> BlockDevices::label(const std::string& name) const {
    if (name.empty()) return std::nullopt;
    std::error_code error;
    for (fs::directory_iterator link(root_ / "dev/disk/by-label", error), end;
         !error && link != end; link.increment(error))
        if (targetName(link->path()) == name) return decodedLabel(link->path().filename().string());
    return std::nullopt;
}

std::optional<bool> BlockDevices::isInternal(const std::string& name) const {
    return isInternal(name, 0);
}

std::optional<bool> BlockDevices::isInternal(const std::string& name, int depth) const {
    if (name.empty() || depth > deepest) return std::nullopt;
    std::error_code error;
    const fs::path device = fs::canonical(root_ / "sys/class/block" / name, error);
    if (error) return std::nullopt;
    const bool isPartition = fs::exists(device / "partition", error);
    const fs::path disk = isPartition ? device.parent_path() : device;

    std::optional<bool> all;
    for (fs::directory_iterator below(disk / "slaves", error), end; !error && below != end;
         below.increment(error)) {
        const std::optional<bool> one = isInternal(below->path().filename().string(), depth + 1);
        if (!one || !*one) return one;
        all = one;
    }
    return all ? all : !canBeUnplugged(disk);
}

bool BlockDevices::canBeUnplugged(const fs::path& disk) const {
    if (readAttribute(disk / "removable") == "1") return true;
    if (readAttribute(disk / "device/type") == "SD") return true; // a card
    std::error_code error;
    for (const fs::path& part : disk.lexically_relative(fs::canonical(root_, error)))
        if (part.string().starts_with("usb")) return true;
    return false;
}

std::string decodedLabel(std::string_view name) {
    std::string label;
    for (std::size_t at = 0; at < name.size(); ++at) {
        const std::string_view digits = name.substr(std::min(at + 2, name.size()), 2);
        unsigned value = 0;
        const auto [end, error] =
            std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
        if (name.substr(at, 2) == "\\x" && digits.size() == 2 && error == std::errc() &&
            end == digits.data() + 2 && value != 0) {
            label.push_back(static_cast<char>(value));
            at += 3;
        } else {
            label.push_back(name[at]);
        }
    }
    return label;
}

} // namespace tavero
