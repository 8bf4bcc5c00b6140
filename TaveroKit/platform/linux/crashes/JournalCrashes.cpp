#include "platform/linux/crashes/JournalCrashes.h"

#include <systemd/sd-journal.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace tavero {

namespace {

constexpr std::string_view crashed = "MESSAGE_ID=fc2e22bc6ee647b6b90729ab34a250b1";
constexpr std::size_t longestField = 16 << 10; // bytes; what is longer comes cut
constexpr int mostEntries = 1000;              // at a time; the others wait for the next

bool addMatch(sd_journal* journal, std::string_view match) {
    return sd_journal_add_match(journal, match.data(), match.size()) >= 0;
}

std::optional<std::string> field(sd_journal* journal, const char* name) {
    const void* data = nullptr;
    std::size_t size = 0;
    if (sd_journal_get_data(journal, name, &data, &size) < 0) return std::nullopt;
    const std::string_view text(static_cast<const char*>(data), size); // with the name in front
    return std::string(text.substr(std::min(text.find('=') + 1, size)));
}

std::uint64_t microseconds(Date date) {
    const auto since1970 =
        std::chrono::duration_cast<std::chrono::microseconds>(date.time_since_epoch()).count();
    return static_cast<std::uint64_t>(std::max<std::int64_t>(since1970, 0));
}

} // namespace

std::optional<Crash> crashOf(const JournalCrashes::Field& field) {
    const auto told = [&](const char* name) { return field(name).value_or(""); };
    Crash crash{.program = told("COREDUMP_EXE"), .cgroup = told("COREDUMP_CGROUP")};
    if (crash.program.empty()) crash.program = told("COREDUMP_COMM");
    if (crash.program.empty()) return std::nullopt;
    return crash;
}

void JournalCrashes::Close::operator()(sd_journal* journal) const { sd_journal_close(journal); }

JournalCrashes::JournalCrashes(Journal journal, CrashedApps apps)
    : journal_(std::move(journal)), apps_(std::move(apps)) {}

JournalCrashes::~JournalCrashes() = default;

std::unique_ptr<JournalCrashes> JournalCrashes::ofThisMachine(uid_t uid, Date since,
                                                              CrashedApps apps) {
    sd_journal* opened = nullptr;
    if (sd_journal_open(&opened, SD_JOURNAL_LOCAL_ONLY) < 0) return nullptr;
    Journal journal(opened);
    // It opens as well if the user may read none of its files.
    if (sd_journal_has_persistent_files(opened) <= 0 && sd_journal_has_runtime_files(opened) <= 0)
        return nullptr;
    return make(std::move(journal), uid, since, std::move(apps));
}

std::unique_ptr<JournalCrashes> JournalCrashes::inFolder(const std::filesystem::path& folder,
                                                         uid_t uid, Date since, CrashedApps apps) {
    sd_journal* opened = nullptr;
    if (sd_journal_open_directory(&opened, folder.c_str(), 0) < 0) return nullptr;
    return make(Journal(opened), uid, since, std::move(apps));
}

std::unique_ptr<JournalCrashes> JournalCrashes::make(Journal journal, uid_t uid, Date since,
                                                     CrashedApps apps) {
    sd_journal* opened = journal.get();
    if (!addMatch(opened, crashed) || !addMatch(opened, "COREDUMP_UID=" + std::to_string(uid)) ||
        sd_journal_set_data_threshold(opened, longestField) < 0 ||
        sd_journal_seek_realtime_usec(opened, microseconds(since) + 1) < 0)
        return nullptr;
    sd_journal_get_fd(opened); // from here on it notices new files
    return std::unique_ptr<JournalCrashes>(new JournalCrashes(std::move(journal), std::move(apps)));
}

std::vector<CrashReport> JournalCrashes::newReports(Date) {
    std::vector<CrashReport> reports;
    sd_journal* journal = journal_.get();
    sd_journal_process(journal);
    for (int entries = 0; entries < mostEntries && sd_journal_next(journal) > 0; ++entries) {
        const auto crash = crashOf([&](const char* name) { return field(journal, name); });
        if (!crash) continue;
        if (auto report = apps_.report(*crash)) reports.push_back(std::move(*report));
    }
    return reports;
}

} // namespace tavero
