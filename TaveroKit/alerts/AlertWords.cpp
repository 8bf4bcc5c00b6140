#include "alerts/AlertWords.h"

#include "records/Fixed.h"

#include <algorithm>

namespace tavero {

std::string memoryText(std::uint64_t bytes) {
    return fixedDigits(static_cast<double>(bytes) / 1'073'741'824, 1) + " GB";
}

std::string diskText(double bytes) { return fixedDigits(bytes / 1'000'000'000, 1) + " GB"; }

const AppUsage* firstUserApp(const std::vector<AppUsage>& rows) {
    const auto found = std::find_if(rows.begin(), rows.end(), [](const AppUsage& row) {
        return row.identity.kind != AppIdentity::Kind::system;
    });
    return found == rows.end() ? nullptr : &*found;
}

std::optional<std::string> nameOf(const AppUsage* app) {
    return app ? std::optional(app->name) : std::nullopt;
}

std::optional<std::string> bundleOf(const AppUsage* app) {
    return app ? app->bundlePath : std::nullopt;
}

} // namespace tavero
