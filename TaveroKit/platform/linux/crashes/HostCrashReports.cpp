#include "platform/linux/crashes/CoredumpFolder.h"
#include "platform/linux/crashes/JournalCrashes.h"
#include "platform/linux/processes/HostDesktop.h"

#include <unistd.h>

namespace tavero {

namespace {

CrashedApps installedApps() { return CrashedApps(hostApplicationFolders(), hostLocale()); }

} // namespace

// The journal knows the program's path and its control group, so it names the app more surely; the
// folder is for whoever may not read the journal. Decided once.
std::unique_ptr<CrashReports> hostCrashReports(Date since) {
    const uid_t uid = ::getuid();
    if (auto journal = JournalCrashes::ofThisMachine(uid, since, installedApps())) return journal;
    return std::make_unique<CoredumpFolder>(CoredumpFolder::defaultDirectory(), uid, since,
                                            installedApps());
}

} // namespace tavero
