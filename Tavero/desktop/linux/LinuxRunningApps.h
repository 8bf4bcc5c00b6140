#pragma once

#include "desktop/RunningApps.h"
#include "desktop/linux/QuitTargets.h"

#include <QDBusConnection>
#include <QObject>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tavero {

// Asks an app by its own quit action if it has one on the bus, and by SIGTERM otherwise. What an
// app consists of is told by `processesOf`; only processes of this user count.
class LinuxRunningApps final : public RunningApps {
  public:
    // `root` holds proc/, whose status and exe tell of each process.
    LinuxRunningApps(AppProcesses processesOf, QDBusConnection bus,
                     std::filesystem::path root = "/");

    std::optional<HaveEnded> askToQuit(const std::string& bundlePath) override;

  private:
    std::filesystem::path folderOf(std::int32_t pid) const;
    std::optional<AppProcess> ownProcess(std::int32_t pid) const;
    bool holdsTavero(const std::vector<std::int32_t>& pids) const;

    AppProcesses processesOf_;
    QDBusConnection bus_;
    std::filesystem::path root_;
    QObject calls_; // owns those that wait for an answer
};

} // namespace tavero
