#include "platform/linux/processes/DesktopFolders.h"

#include "platform/linux/KeptFile.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <system_error>

#include <stdlib.h>
#include <sys/stat.h>

namespace tavero {

namespace {

constexpr std::string_view suffix = ".desktop";
constexpr int deepest = 3; // folders in folders, as KDE 4 had them
constexpr std::size_t mostEntries = 20'000;
constexpr std::size_t largestEntry = 1 << 20;

// When a folder's list of names changed last, in nanoseconds; 0 if there is no folder.
std::int64_t changeTime(const std::string& path) {
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0 || !S_ISDIR(status.st_mode)) return 0;
    return status.st_mtim.tv_sec * 1'000'000'000 + status.st_mtim.tv_nsec;
}

std::string join(std::string_view folder, std::string_view name) {
    return std::string(folder) + (folder.ends_with('/') ? "" : "/") + std::string(name);
}

std::string withLinksFollowed(const std::string& path) {
    struct Free {
        void operator()(char* text) const { ::free(text); }
    };
    const std::unique_ptr<char, Free> resolved(::realpath(path.c_str(), nullptr));
    return resolved ? std::string(resolved.get()) : std::string();
}

} // namespace

std::vector<std::string> applicationFolders(std::string_view home, std::string_view dataHome,
                                            std::string_view dataDirs) {
    std::vector<std::string> folders;
    const auto add = [&](std::string_view root) {
        if (!root.starts_with('/')) return;
        std::string folder = join(root, "applications");
        if (std::find(folders.begin(), folders.end(), folder) == folders.end())
            folders.push_back(std::move(folder));
    };
    std::string ownData(dataHome);
    if (ownData.empty() && !home.empty()) ownData = join(home, ".local/share");
    add(ownData);
    if (!ownData.empty()) add(join(ownData, "flatpak/exports/share"));
    if (dataDirs.empty()) dataDirs = "/usr/local/share:/usr/share";
    while (!dataDirs.empty()) {
        const std::size_t end = std::min(dataDirs.find(':'), dataDirs.size());
        add(dataDirs.substr(0, end));
        dataDirs.remove_prefix(std::min(end + 1, dataDirs.size()));
    }
    // A program that isn't started by the session may lack these in its variable.
    add("/var/lib/flatpak/exports/share");
    add("/var/lib/snapd/desktop");
    return folders;
}

std::string_view localeOfMessages(std::string_view all, std::string_view messages,
                                  std::string_view lang) {
    if (!all.empty()) return all;
    return messages.empty() ? lang : messages;
}

DesktopFolders::DesktopFolders(std::vector<std::string> folders, std::string_view locale,
                               std::vector<std::string> programFolders)
    : folders_(std::move(folders)), locales_(localeCandidates(locale)),
      programFolders_(std::move(programFolders)) {
    read();
}

void DesktopFolders::refresh() {
    if (isChanged()) read();
}

bool DesktopFolders::isChanged() const {
    return std::any_of(watched_.begin(), watched_.end(), [](const Watched& folder) {
        return changeTime(folder.path) != folder.changed;
    });
}

void DesktopFolders::read() {
    watched_.clear();
    std::vector<DesktopEntry> entries;
    for (const std::string& folder : folders_) readFolder(folder, "", 0, entries);
    apps_ = DesktopApps(std::move(entries));
}

void DesktopFolders::readFolder(const std::string& path, const std::string& idPrefix, int depth,
                                std::vector<DesktopEntry>& entries) {
    watched_.push_back({path, changeTime(path)});
    std::vector<std::filesystem::directory_entry> files;
    std::error_code error;
    for (std::filesystem::directory_iterator file(path, error), end; !error && file != end;
         file.increment(error))
        files.push_back(*file);
    std::sort(files.begin(), files.end());
    for (const auto& file : files) {
        const std::string name = file.path().filename().string();
        if (file.is_directory(error)) {
            if (depth < deepest)
                readFolder(file.path().string(), idPrefix + name + "-", depth + 1, entries);
            continue;
        }
        if (!name.ends_with(suffix) || entries.size() >= mostEntries ||
            !file.is_regular_file(error) || file.file_size(error) > largestEntry)
            continue;
        auto entry = parseDesktopEntry(readFile(file.path()).value_or(""), locales_);
        if (!entry) continue;
        entry->id = idPrefix + name.substr(0, name.size() - suffix.size());
        entry->file = file.path().string();
        resolve(*entry);
        entries.push_back(std::move(*entry));
    }
}

void DesktopFolders::resolve(DesktopEntry& entry) const {
    if (entry.program.empty()) return;
    if (!entry.program.starts_with('/'))
        for (const std::string& folder : programFolders_) {
            std::string path = join(folder, entry.program);
            std::error_code error;
            if (!std::filesystem::is_regular_file(path, error)) continue;
            entry.program = std::move(path);
            break;
        }
    if (entry.program.starts_with('/')) entry.resolvedProgram = withLinksFollowed(entry.program);
}

std::optional<std::string> DesktopFolders::icon(const std::string& file) const {
    const DesktopEntry* entry = apps_.withFile(file);
    if (!entry || entry->icon.empty()) return std::nullopt;
    return entry->icon;
}

} // namespace tavero
