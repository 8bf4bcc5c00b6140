#include "platform/linux/crashes/CrashedApps.h"

#include "apps/AppIdentities.h"
#include "apps/Text.h"
#include "platform/linux/processes/LinuxAppIdentity.h"
#include "platform/linux/processes/LinuxBundles.h"

#include <utility>

namespace tavero {

namespace {

// A bare name says nothing of where the program lies, so it can't tell a part of the system.
AppIdentity identityOf(const Crash& crash, const DesktopApps& apps) {
    if (crash.program.starts_with('/') || !crash.cgroup.empty())
        return linuxAppIdentity({.path = crash.program, .cgroup = crash.cgroup}, apps);
    const DesktopEntry* entry = apps.withProgram(crash.program);
    return entry ? AppIdentity{AppIdentity::Kind::app, entry->file} : AppIdentity{};
}

} // namespace

CrashedApps::CrashedApps(std::vector<std::string> applicationFolders, std::string locale)
    : folders_(std::move(applicationFolders)), locale_(std::move(locale)) {}

std::optional<CrashReport> CrashedApps::report(const Crash& crash) {
    if (desktop_)
        desktop_->refresh();
    else
        desktop_ = std::make_shared<DesktopFolders>(folders_, locale_);

    AppIdentity identity = identityOf(crash, desktop_->apps());
    if (identity.kind == AppIdentity::Kind::system) return std::nullopt;
    if (identity.id.empty()) identity.id = AppGrouping::toolName(crash.program);
    LinuxBundles bundles(desktop_);
    CrashReport report{.appName = wellFormed(AppGrouping::displayName(identity, &bundles))};
    if (report.appName.empty()) return std::nullopt;
    if (const DesktopEntry* entry = desktop_->apps().withFile(identity.id))
        report.bundleID = entry->id;
    return report;
}

} // namespace tavero
