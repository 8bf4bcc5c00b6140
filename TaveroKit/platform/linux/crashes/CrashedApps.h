#pragma once

#include "alerts/CrashReport.h"
#include "platform/linux/processes/DesktopFolders.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavero {

// What the system tells of a process that crashed. Empty is unknown.
struct Crash {
    std::string program; // the path of the executable, or failing that its name
    std::string cgroup;  // its control group
};

// Whom a crash belongs to: the same app, by the same name, that the process was listed under while
// it ran. The desktop entries are read at the first crash, since as a rule there is none.
class CrashedApps {
  public:
    // Apps are called as in this locale.
    explicit CrashedApps(std::vector<std::string> applicationFolders, std::string locale = "");

    // The app, or the tool; the bundle id is that of a desktop entry. Absent if it was a part of
    // the operating system, which means nothing to the user.
    std::optional<CrashReport> report(const Crash& crash);

  private:
    std::vector<std::string> folders_;
    std::string locale_;
    std::shared_ptr<DesktopFolders> desktop_; // null until then
};

} // namespace tavero
