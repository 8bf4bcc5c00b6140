#include "monitor/SystemIssue.h"

namespace tavero {

namespace {

constexpr double secondsToShow = 10;
constexpr double secondsToGo = 30;

// How long it has been since `since`, which starts now if it was unset, or lies in the future
// because the clock was set back.
double secondsSince(std::optional<Date>& since, Date now) {
    if (!since || *since > now) since = now;
    return secondsBetween(*since, now);
}

} // namespace

void SystemIssue::update(const LiveSnapshot& snapshot) {
    if (snapshot.systemActivity) {
        calmSince_.reset();
        const double age = secondsSince(unusualSince_, snapshot.date);
        if (age >= secondsToShow || current_) current_ = snapshot.systemActivity;
        return;
    }
    unusualSince_.reset();
    if (!current_) return;
    if (secondsSince(calmSince_, snapshot.date) >= secondsToGo) {
        current_.reset();
        calmSince_.reset();
    }
}

std::vector<AppUsage> SystemIssue::present(std::vector<AppUsage> rows,
                                           std::string_view systemName) const {
    const auto isSystem = [](const AppUsage& row) {
        return row.identity.kind == AppIdentity::Kind::system;
    };
    if (!current_) {
        std::erase_if(rows, isSystem);
        return rows;
    }
    for (AppUsage& row : rows)
        if (isSystem(row)) {
            row.name = std::string(systemName) + " · " + current_->description;
            row.flag = "Unusual";
        }
    return rows;
}

} // namespace tavero
