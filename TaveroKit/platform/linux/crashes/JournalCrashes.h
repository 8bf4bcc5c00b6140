#pragma once

#include "alerts/CrashReport.h"
#include "platform/linux/crashes/CrashedApps.h"
#include "records/Date.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

struct sd_journal;

namespace tavero {

// Notices crashes by what systemd-coredump writes to the journal for each: an entry of one message
// id, with COREDUMP_EXE or COREDUMP_COMM, COREDUMP_CGROUP and COREDUMP_UID. It writes as the user
// whose process crashed, so the user may read it. The journal stays open, and entries are met in
// its order, each once. For the thread that made it.
class JournalCrashes final : public CrashReports {
  public:
    // What an entry says under a name. Absent if it says nothing.
    using Field = std::function<std::optional<std::string>(const char* name)>;

    // That of this machine, or the journal files of a folder. Null if there is nothing to read.
    static std::unique_ptr<JournalCrashes> ofThisMachine(uid_t uid, Date since, CrashedApps apps);
    static std::unique_ptr<JournalCrashes> inFolder(const std::filesystem::path& folder, uid_t uid,
                                                    Date since, CrashedApps apps);
    ~JournalCrashes() override;

    std::vector<CrashReport> newReports(Date now) override;

  private:
    struct Close {
        void operator()(sd_journal* journal) const;
    };
    using Journal = std::unique_ptr<sd_journal, Close>;

    JournalCrashes(Journal journal, CrashedApps apps);
    static std::unique_ptr<JournalCrashes> make(Journal journal, uid_t uid, Date since,
                                                CrashedApps apps);

    Journal journal_;
    CrashedApps apps_;
};

// What an entry tells. Absent if it names no program.
std::optional<Crash> crashOf(const JournalCrashes::Field& field);

} // namespace tavero
