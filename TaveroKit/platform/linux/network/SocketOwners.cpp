#include "platform/linux/network/SocketOwners.h"

#include "platform/linux/KeptFile.h"
#include "platform/linux/TextCursor.h"

#include <limits>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include <sys/stat.h>

namespace tavero {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t mostGroups = 4096;

// A user's own manager is a service too, with everything of the user's in it.
bool isService(std::string_view unit) {
    return unit.ends_with(".service") && !unit.starts_with("user@");
}

// The tree that sockets name is the unified one, which older set-ups have at a place of its own.
fs::path unifiedTree(const fs::path& root) {
    const fs::path tree = root / "sys/fs/cgroup";
    std::error_code error;
    return fs::exists(tree / "unified", error) ? tree / "unified" : tree;
}

std::uint64_t inodeOf(const fs::path& path) {
    struct stat status = {};
    return ::stat(path.c_str(), &status) == 0 ? status.st_ino : 0;
}

} // namespace

SocketOwners::SocketOwners(const fs::path& root, std::shared_ptr<ProcessFiles> files)
    : files_(std::move(files)), groups_(unifiedTree(root)) {}

std::optional<std::int32_t> SocketOwners::ofGroup(std::uint64_t id) {
    if (id == 0 || unknown_.contains(id)) return std::nullopt;
    const auto [entry, isNew] = pids_.try_emplace(id);
    if (!isNew) return entry->second;
    if (const auto folder = folderOf(id)) entry->second = hiddenProcess(*folder);
    return entry->second;
}

std::optional<fs::path> SocketOwners::folderOf(std::uint64_t id) {
    const auto isThere = [&] {
        const auto folder = folders_.find(id);
        return folder != folders_.end() && inodeOf(folder->second) == id;
    };
    if (!isThere() && !std::exchange(isListed_, true)) listGroups();
    if (isThere()) return folders_[id];
    unknown_.insert(id);
    return std::nullopt;
}

void SocketOwners::listGroups() {
    folders_.clear();
    std::error_code error;
    constexpr auto options = fs::directory_options::skip_permission_denied;
    for (fs::recursive_directory_iterator entry(groups_, options, error), end;
         !error && entry != end && folders_.size() < mostGroups; entry.increment(error)) {
        std::error_code ignored;
        if (entry->is_directory(ignored) && !entry->is_symlink(ignored))
            folders_.emplace(inodeOf(entry->path()), entry->path());
    }
}

std::optional<std::int32_t> SocketOwners::hiddenProcess(const fs::path& group) const {
    const std::string text = readFile(group / "cgroup.procs").value_or("");
    const bool isFirstEnough = isService(group.filename().string());
    std::optional<std::int32_t> hidden;
    for (TextCursor cursor(text); !cursor.atEnd(); cursor.nextLine()) {
        const std::uint64_t pid = cursor.number().value_or(0);
        if (pid == 0 || pid > std::numeric_limits<std::int32_t>::max()) continue;
        if (files_->isReadable(static_cast<std::int32_t>(pid))) continue;
        if (hidden) return std::nullopt;
        hidden = static_cast<std::int32_t>(pid);
        if (isFirstEnough) return hidden;
    }
    return hidden;
}

} // namespace tavero
