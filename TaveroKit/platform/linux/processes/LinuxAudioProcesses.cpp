#include "platform/linux/processes/LinuxAudioProcesses.h"

#include "apps/AppIdentities.h"
#include "apps/Text.h"
#include "platform/linux/processes/LinuxBundles.h"
#include "platform/linux/processes/ProcFiles.h"
#include "platform/linux/processes/ProcessOwner.h"

#include <algorithm>
#include <array>
#include <functional>
#include <string_view>
#include <utility>

namespace tavero {

namespace {

constexpr std::size_t fewOwned = 64;

} // namespace

LinuxAudioProcesses::LinuxAudioProcesses(const std::filesystem::path& root,
                                         std::vector<std::string> applicationFolders,
                                         std::int32_t ownPid, std::string locale)
    : ownPid_(ownPid), ownControlGroup_(ownControlGroup(root)),
      applicationFolders_(std::move(applicationFolders)), locale_(std::move(locale)),
      proc_(root / "proc"), mostOwned_(fewOwned) {}

std::optional<AppIdentity> LinuxAudioProcesses::identity(std::int32_t pid) {
    const std::lock_guard lock(mutex_);
    isDesktopFresh_ = false;
    forgetTheDead();
    std::optional<AppIdentity> owner = ownerOf(pid, 0);
    if (owner) owner->id = wellFormed(owner->id);
    return owner;
}

std::string LinuxAudioProcesses::displayName(const AppIdentity& identity) {
    const std::lock_guard lock(mutex_);
    desktop();
    LinuxBundles bundles(desktop_);
    return wellFormed(AppGrouping::displayName(identity, &bundles));
}

bool LinuxAudioProcesses::isUserApp(const std::string& id) {
    const std::lock_guard lock(mutex_);
    if (const DesktopEntry* entry = desktop().apps().withFile(id)) return entry->isShown;
    // What else has a path for an id is an AppImage, or an entry that was deleted.
    return id.starts_with('/') && !id.ends_with(".desktop");
}

std::size_t LinuxAudioProcesses::remembered() const {
    const std::lock_guard lock(mutex_);
    return owned_.size();
}

// Absent if the process is gone, or only its parent still waits for it.
std::optional<LinuxAudioProcesses::State> LinuxAudioProcesses::read(std::int32_t pid) {
    std::array<char, 4096> buffer;
    const auto text = pid >= 1 ? proc_.read(pid, "stat", buffer) : std::nullopt;
    const auto stat = text ? parseStat(*text) : std::nullopt;
    if (!stat || stat->state == 'Z' || stat->state == 'X') return std::nullopt;
    State state{.seen = {.start = stat->start, .comm = std::string(stat->comm)},
                .parent = stat->parent,
                .isKernelThread = stat->isKernelThread};
    if (const auto cgroup = proc_.read(pid, "cgroup", buffer))
        state.seen.controlGroupHash = std::hash<std::string_view>{}(*cgroup);
    return state;
}

bool LinuxAudioProcesses::isAlive(std::int32_t pid, const Seen& seen) {
    const std::optional<State> state = read(pid);
    return state && state->seen.start == seen.start;
}

std::optional<AppIdentity> LinuxAudioProcesses::ownerOf(std::int32_t pid, int generation) {
    const std::optional<State> state = read(pid);
    const auto known = owned_.find(pid);
    if (known != owned_.end() && state && known->second.seen == state->seen)
        return known->second.owner;
    if (known != owned_.end()) owned_.erase(known);
    if (!state) return std::nullopt;

    std::optional<AppIdentity> owner = findOwner(pid, *state, generation);
    // By now the pid may be another process's.
    if (!owner || !isAlive(pid, state->seen)) return std::nullopt;
    owned_.insert_or_assign(pid, Owned{state->seen, *owner});
    return owner;
}

std::optional<AppIdentity> LinuxAudioProcesses::findOwner(std::int32_t pid, const State& state,
                                                          int generation) {
    const auto path = executablePath(proc_, pid, state.seen.comm, state.isKernelThread);
    if (!path) return std::nullopt;
    if (!std::exchange(isDesktopFresh_, true)) desktop().refresh();
    const ProcessOwner process(proc_, pid, *path, state.isKernelThread);
    std::optional<AppIdentity> parent;
    if (generation < mostGenerations) parent = ownerOf(state.parent, generation + 1);
    AppIdentity owner = process.identity(desktop_->apps(), std::move(parent), ownControlGroup_);
    if (owner.id.empty()) owner.id = AppGrouping::toolName(wellFormed(*path));
    return owner;
}

DesktopFolders& LinuxAudioProcesses::desktop() {
    if (!desktop_) desktop_ = std::make_shared<DesktopFolders>(applicationFolders_, locale_);
    return *desktop_;
}

// Looks for them only when there are twice as many as before, so that it costs little.
void LinuxAudioProcesses::forgetTheDead() {
    if (owned_.size() < mostOwned_) return;
    std::erase_if(
        owned_, [&](const auto& process) { return !isAlive(process.first, process.second.seen); });
    mostOwned_ = std::max(fewOwned, 2 * owned_.size());
}

} // namespace tavero
