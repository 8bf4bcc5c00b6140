#include "platform/mac/sound/MacAudioProcesses.h"

#include "apps/AppIdentities.h"
#include "apps/Text.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace tavero {

namespace {

using namespace std::string_view_literals;

constexpr std::array userAppFolders{"/Applications/"sv, "/System/Applications/"sv,
                                    "/System/Volumes/Preboot/Cryptexes/App/System/Applications/"sv};

} // namespace

MacAudioProcesses::MacAudioProcesses(std::shared_ptr<MacProcessTable> table,
                                     std::shared_ptr<MacBundleInfo> info, const std::string& home,
                                     std::int32_t ownPid)
    : processes_(std::move(table)), bundles_(std::move(info)),
      homeApplications_(home + "/Applications/"), ownPid_(ownPid) {}

std::optional<AppIdentity> MacAudioProcesses::identity(std::int32_t pid) {
    const std::lock_guard lock(mutex_);
    const std::optional<std::string> path = processes_.path(pid);
    if (!path) return std::nullopt;
    return AppGrouping::identity(wellFormed(*path));
}

std::string MacAudioProcesses::displayName(const AppIdentity& identity) {
    const std::lock_guard lock(mutex_);
    return AppGrouping::displayName(identity, &bundles_);
}

bool MacAudioProcesses::isUserApp(const std::string& id) {
    return id.starts_with(homeApplications_) ||
           std::any_of(userAppFolders.begin(), userAppFolders.end(),
                       [&](std::string_view folder) { return id.starts_with(folder); });
}

} // namespace tavero
