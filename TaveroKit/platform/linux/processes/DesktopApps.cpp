#include "platform/linux/processes/DesktopApps.h"

#include <algorithm>
#include <array>
#include <tuple>
#include <utility>

namespace tavero {

namespace {

using namespace std::string_view_literals;

constexpr std::size_t longestPath = 4096; // of the kernel's

// Empty for a path without one.
std::string_view folderOf(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    return path.substr(0, slash == path.npos ? 0 : slash);
}

// Folders in which the programs of many live.
bool isShared(std::string_view folder) {
    constexpr std::array names{"bin"sv,    "sbin"sv,  "games"sv,     "lib"sv,     "lib32"sv,
                               "lib64"sv,  "local"sv, "share"sv,     "libexec"sv, "scripts"sv,
                               ".local"sv, "tmp"sv,   "Downloads"sv, "Desktop"sv, "Applications"sv};
    const std::string_view name = fileName(folder);
    if (std::find(names.begin(), names.end(), name) != names.end()) return true;
    const auto depth = std::count(folder.begin(), folder.end(), '/');
    if (depth < 2 || name.find("-linux-gnu") != name.npos) return true;
    const std::string_view parent = folderOf(folder);
    return fileName(parent) == "home" || fileName(parent) == "jvm";
}

// The folder that is a program's app's own; empty if there is none.
std::string_view ownFolder(std::string_view program) {
    std::string_view folder = folderOf(program);
    if (fileName(folder) == "bin") folder = folderOf(folder);
    return isShared(folder) ? std::string_view() : folder;
}

} // namespace

DesktopApps::DesktopApps(std::vector<DesktopEntry> entries) : entries_(std::move(entries)) {
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        ids_.try_emplace(entries_[i].id, i);
        files_.try_emplace(entries_[i].file, i);
    }
    // Where several entries start one program, the plainest of them is the app: shown in menus,
    // without arguments that ask for something special.
    std::vector<std::size_t> plainest;
    for (const auto& [id, place] : ids_) plainest.push_back(place);
    std::sort(plainest.begin(), plainest.end(), [&](std::size_t a, std::size_t b) {
        const auto rank = [&](const DesktopEntry& entry) {
            return std::tuple(!entry.isShown, entry.arguments, entry.id.size(),
                              std::string_view(entry.id));
        };
        return rank(entries_[a]) < rank(entries_[b]);
    });
    for (const std::size_t place : plainest) {
        const DesktopEntry& entry = entries_[place];
        if (!entry.snap.empty()) snaps_.try_emplace(entry.snap, place);
        if (entry.inTerminal || entry.program.empty()) continue;
        addProgram(entry.program, place);
        if (!entry.resolvedProgram.empty()) addProgram(entry.resolvedProgram, place);
    }
}

void DesktopApps::addProgram(const std::string& program, std::size_t place) {
    names_.try_emplace(std::string(fileName(program)), place);
    if (!program.starts_with('/')) return;
    programs_.try_emplace(program, place);
    if (const std::string_view folder = ownFolder(program); !folder.empty())
        folders_.try_emplace(std::string(folder), place);
}

const DesktopEntry* DesktopApps::find(const Places& places, const std::string& key) const {
    const auto place = places.find(key);
    return place == places.end() ? nullptr : &entries_[place->second];
}

const DesktopEntry* DesktopApps::withId(const std::string& id) const { return find(ids_, id); }

const DesktopEntry* DesktopApps::withFile(const std::string& file) const {
    return find(files_, file);
}

const DesktopEntry* DesktopApps::fromSnap(const std::string& name) const {
    return find(snaps_, name);
}

const DesktopEntry* DesktopApps::withProgram(std::string_view path) const {
    if (path.size() > longestPath) return nullptr;
    if (const DesktopEntry* entry = find(programs_, std::string(path))) return entry;
    for (std::string_view folder = folderOf(path); !folder.empty(); folder = folderOf(folder))
        if (const DesktopEntry* entry = find(folders_, std::string(folder))) return entry;
    const std::string_view name = fileName(path);
    return isInterpreter(name) ? nullptr : find(names_, std::string(name));
}

} // namespace tavero
