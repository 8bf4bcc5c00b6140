#pragma once

#include "alerts/CrashReport.h"
#include "platform/linux/crashes/CrashedApps.h"
#include "records/Date.h"

#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include <sys/types.h>

namespace tavero {

// Notices crashes by the names of the core dumps that systemd-coredump keeps in a folder. Nothing
// in it is opened; what is there is other people's business, and may be large.
class CoredumpFolder final : public CrashReports {
  public:
    static std::filesystem::path defaultDirectory(); // /var/lib/systemd/coredump

    // Crashes before `since` and those of users other than `uid` are ignored.
    CoredumpFolder(std::filesystem::path directory, uid_t uid, Date since, CrashedApps apps);

    // A dump gets its name when it is complete, which may be long after the crash.
    std::vector<CrashReport> newReports(Date now) override;

  private:
    std::filesystem::path directory_;
    uid_t uid_;
    Date since_;
    CrashedApps apps_;
    std::set<std::string> known_; // the names at the last look
};

} // namespace tavero
