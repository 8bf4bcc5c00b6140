#pragma once

#include "platform/AudioProcesses.h"
#include "platform/linux/processes/DesktopFolders.h"
#include "platform/linux/processes/ProcFolder.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace tavero {

// Whom those processes of a Linux machine belong to that play or record. The answers are those of
// the list of apps, but /proc is never listed for them: a process is read when it is asked about,
// and so are those that started it.
//
// The desktop entries are a copy of its own, since the list of apps works on another thread; they
// are read at the first question, because there may never be one.
class LinuxAudioProcesses final : public AudioProcesses {
  public:
    // `root` holds proc/. The apps are called as in this locale.
    LinuxAudioProcesses(const std::filesystem::path& root,
                        std::vector<std::string> applicationFolders, std::int32_t ownPid,
                        std::string locale = "");

    std::int32_t ownPid() override { return ownPid_; }
    std::optional<AppIdentity> identity(std::int32_t pid) override;
    std::string displayName(const AppIdentity& identity) override;
    // Whatever is in the menus, and an AppImage, which its user starts by its file. What a desktop
    // entry hides from the menus (NoDisplay) is no app to its user: the desktop's own parts and the
    // services of apps have such entries. Neither a tool nor the system is one, so a text-mode
    // player that was typed into a terminal isn't either.
    bool isUserApp(const std::string& id) override;

    // How many processes it keeps the answer of: hardly more than twice as many as still live.
    std::size_t remembered() const;

  private:
    // By what a process is known to be still the same, the same program, and where it was.
    struct Seen {
        std::uint64_t start = 0; // clock ticks since boot
        std::string comm;
        std::size_t controlGroupHash = 0;

        bool operator==(const Seen&) const = default;
    };
    struct State {
        Seen seen;
        std::int32_t parent = 0;
        bool isKernelThread = false;
    };
    struct Owned {
        Seen seen;
        AppIdentity owner;
    };

    std::optional<State> read(std::int32_t pid);
    bool isAlive(std::int32_t pid, const Seen& seen);
    std::optional<AppIdentity> ownerOf(std::int32_t pid, int generation);
    std::optional<AppIdentity> findOwner(std::int32_t pid, const State& state, int generation);
    DesktopFolders& desktop();
    void forgetTheDead();

    const std::int32_t ownPid_;
    const std::string ownControlGroup_;
    const std::vector<std::string> applicationFolders_;
    const std::string locale_;

    mutable std::mutex mutex_; // of all that follows
    ProcFolder proc_;
    std::shared_ptr<DesktopFolders> desktop_; // null until the first question
    bool isDesktopFresh_ = false;             // in this question
    std::unordered_map<std::int32_t, Owned> owned_;
    std::size_t mostOwned_;
};

} // namespace tavero
