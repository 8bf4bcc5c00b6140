#include "platform/linux/crashes/CoredumpFolder.h"

#include "platform/linux/crashes/CoredumpName.h"

#include <chrono>
#include <optional>
#include <system_error>
#include <utility>

namespace tavero {

namespace {

using namespace std::chrono_literals;

constexpr auto resolution = 1s; // the kernel tells the time of a crash in whole seconds

// In alphabetical order. Absent if the folder can't be read to its end.
std::optional<std::set<std::string>> names(const std::filesystem::path& directory) {
    std::set<std::string> found;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(directory, error), end; !error && entry != end;
         entry.increment(error))
        found.insert(entry->path().filename().string());
    if (error) return std::nullopt;
    return found;
}

} // namespace

std::filesystem::path CoredumpFolder::defaultDirectory() { return "/var/lib/systemd/coredump"; }

CoredumpFolder::CoredumpFolder(std::filesystem::path directory, uid_t uid, Date since,
                               CrashedApps apps)
    : directory_(std::move(directory)), uid_(uid), since_(since), apps_(std::move(apps)),
      known_(names(directory_).value_or(std::set<std::string>{})) {}

std::vector<CrashReport> CoredumpFolder::newReports(Date) {
    std::vector<CrashReport> reports;
    std::optional<std::set<std::string>> now = names(directory_);
    if (!now) return reports;
    for (const std::string& name : *now) {
        if (known_.contains(name)) continue;
        const std::optional<CoredumpName> dump = coredumpName(name);
        if (!dump || dump->uid != uid_ || dump->time + resolution <= since_) continue;
        if (auto report = apps_.report({.program = dump->comm}))
            reports.push_back(std::move(*report));
    }
    known_ = std::move(*now);
    return reports;
}

} // namespace tavero
