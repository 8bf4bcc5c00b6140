#include "platform/linux/MountInfo.h"

#include "platform/linux/TextCursor.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <unordered_map>
#include <unordered_set>

namespace tavero {

namespace {

// A blank, a line's end and a backslash are written as three octal digits: "\040".
std::string unescaped(std::string_view text) {
    std::string plain;
    plain.reserve(text.size());
    const auto digit = [&](std::size_t at) {
        return at < text.size() && text[at] >= '0' && text[at] <= '7' ? text[at] - '0' : -1;
    };
    for (std::size_t at = 0; at < text.size(); ++at) {
        const int high = digit(at + 1);
        const int middle = digit(at + 2);
        const int low = digit(at + 3);
        const int value = 64 * high + 8 * middle + low;
        if (text[at] == '\\' && high >= 0 && middle >= 0 && low >= 0 && value > 0 && value < 256) {
            plain.push_back(static_cast<char>(value));
            at += 3;
        } else {
            plain.push_back(text[at]);
        }
    }
    return plain;
}

std::optional<Mount> parseMount(TextCursor& line) {
    line.word(); // its number
    line.word(); // that of the mount it lies on
    const auto deviceMajor = line.number();
    if (!deviceMajor || !line.skip(":")) return std::nullopt;
    const auto deviceMinor = line.number();
    if (!deviceMinor) return std::nullopt;
    Mount mount{.deviceMajor = *deviceMajor, .deviceMinor = *deviceMinor};
    mount.root = unescaped(line.word());
    mount.path = unescaped(line.word());
    // Any number of optional fields ends with a dash.
    for (std::string_view field = line.word(); field != "-"; field = line.word())
        if (field.empty()) return std::nullopt;
    mount.type = unescaped(line.word());
    mount.source = unescaped(line.word());
    mount.options = unescaped(line.word());
    if (mount.source.empty() || !mount.path.starts_with('/')) return std::nullopt;
    return mount;
}

bool isOnDisk(const Mount& mount) {
    constexpr std::array<std::string_view, 3> images = {"squashfs", "erofs", "cramfs"};
    if (mount.type == "zfs") return true;
    if (!mount.source.starts_with("/dev/")) return false;
    if (mount.type.starts_with("fuse") && mount.type != "fuseblk") return false;
    return std::find(images.begin(), images.end(), mount.type) == images.end();
}

bool isIn(std::string_view path, std::string_view folder) {
    return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

bool isTheSystems(std::string_view path) {
    constexpr std::array<std::string_view, 5> folders = {"/boot", "/efi", "/run", "/snap",
                                                         "/sysroot"};
    if (isIn(path, "/run/media")) return false;
    return std::any_of(folders.begin(), folders.end(),
                       [&](std::string_view folder) { return isIn(path, folder); });
}

// The value of "subvol=" among options separated by commas; empty without one.
std::string_view subvolume(std::string_view options) {
    constexpr std::string_view key = "subvol=";
    while (!options.empty()) {
        const std::size_t end = std::min(options.find(','), options.size());
        const std::string_view option = options.substr(0, end);
        if (option.starts_with(key)) return option.substr(key.size());
        options.remove_prefix(std::min(end + 1, options.size()));
    }
    return {};
}

// Not a part of it that was bound to another place.
bool isWhole(const Mount& mount) {
    return mount.root == "/" || mount.root == subvolume(mount.options);
}

// The same for all mounts that share one space.
std::string space(const Mount& mount) {
    if (mount.type == "zfs") return "pool " + mount.source.substr(0, mount.source.find('/'));
    if (mount.type == "btrfs") return mount.source;
    return std::to_string(mount.deviceMajor) + ":" + std::to_string(mount.deviceMinor);
}

} // namespace

std::vector<Mount> parseMountInfo(std::string_view text) {
    std::vector<Mount> mounts;
    for (TextCursor cursor(text); !cursor.atEnd(); cursor.nextLine())
        if (auto mount = parseMount(cursor)) mounts.push_back(std::move(*mount));
    return mounts;
}

std::vector<Mount> browsableMounts(const std::vector<Mount>& mounts) {
    // A later mount at the same place covers an earlier one.
    std::unordered_map<std::string_view, const Mount*> visible;
    for (const Mount& mount : mounts) visible[mount.path] = &mount;

    std::vector<Mount> kept;
    std::unordered_set<std::string> spaces;
    const auto keep = [&](const Mount& mount) {
        if (spaces.insert(space(mount)).second) kept.push_back(mount);
    };
    if (const auto root = visible.find("/"); root != visible.end()) keep(*root->second);
    for (const Mount& mount : mounts)
        if (visible[mount.path] == &mount && mount.path != "/" && isOnDisk(mount) &&
            isWhole(mount) && !isTheSystems(mount.path))
            keep(mount);
    return kept;
}

} // namespace tavero
