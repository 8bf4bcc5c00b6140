#pragma once

#include "platform/linux/processes/DesktopApps.h"
#include "platform/linux/processes/ProcFolder.h"
#include "records/AppIdentity.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace tavero {

// How far back a process is followed to whoever started it.
inline constexpr int mostGenerations = 32;

// The path of a process's executable: the link "exe". For a kernel thread its name in brackets,
// without what follows a slash; where the link is refused or leads to no file, the first argument
// if that is a path, and else the process's own name, `comm`. Absent if there is no such process,
// or only its parent still waits for it.
std::optional<std::string> executablePath(ProcFolder& proc, std::int32_t pid, std::string_view comm,
                                          bool isKernelThread);

// The control group of this program. Empty if it can't be read.
std::string ownControlGroup(const std::filesystem::path& root);

// What the files of one process tell of whom it belongs to, read once; only those are opened that
// matter for its path. Of its parent it knows nothing: that is for who has a list of processes.
class ProcessOwner {
  public:
    ProcessOwner(ProcFolder& proc, std::int32_t pid, std::string path, bool isKernelThread);

    // Tells whether the process was moved since: of the whole text of the file "cgroup".
    std::size_t controlGroupHash() const;
    AppIdentity identity(const DesktopApps& apps, std::optional<AppIdentity> parent,
                         std::string_view ownControlGroup) const;

  private:
    std::string path_;
    bool isKernelThread_;
    // Empty if not read.
    std::string controlGroup_;
    std::string arguments_;
    std::string environment_;
    std::string flatpakInfo_;
};

} // namespace tavero
