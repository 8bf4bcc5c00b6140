#include "alerts/CrashReportScanner.h"

#include "apps/Text.h"

#include <nlohmann/json.hpp>

#include <array>
#include <cstdlib>
#include <string>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tavero {

namespace {

using nlohmann::json;

constexpr std::size_t headSize = 4096; // bytes that the first line is looked for in

// The first bytes of a regular file. Opened so that nothing else in the folder can hold us up.
std::optional<std::string> head(const std::filesystem::path& file) {
    const int descriptor = ::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) return std::nullopt;
    std::optional<std::string> text;
    struct stat status {};
    std::array<char, headSize> buffer;
    if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode))
        if (const ssize_t size = ::read(descriptor, buffer.data(), buffer.size()); size >= 0)
            text.emplace(buffer.data(), static_cast<std::size_t>(size));
    ::close(descriptor);
    return text;
}

// The first line that isn't empty; empty if there is none.
std::string_view firstLine(std::string_view text) {
    const std::size_t start = text.find_first_not_of('\n');
    if (start == std::string_view::npos) return {};
    return text.substr(start, text.find('\n', start) - start);
}

std::optional<CrashReport> readReport(const std::filesystem::path& file) {
    const std::optional<std::string> text = head(file);
    if (!text || wellFormed(*text) != *text) return std::nullopt;
    return crashReport(firstLine(*text));
}

std::optional<std::string> text(const json& object, const char* key) {
    const auto found = object.find(key);
    if (found == object.end() || !found->is_string()) return std::nullopt;
    return found->get<std::string>();
}

bool isFirstParty(const json& object) {
    const auto found = object.find("is_first_party");
    return found != object.end() && found->is_number() && *found == 1;
}

} // namespace

std::optional<CrashReport> crashReport(std::string_view header) {
    constexpr std::string_view crash = "309"; // others are hangs and uses of resources
    const json top = json::parse(header, nullptr, /* allow_exceptions */ false);
    if (!top.is_object() || text(top, "bug_type") != crash) return std::nullopt;
    const std::optional<std::string> appName = text(top, "app_name");
    if (!appName || appName->empty()) return std::nullopt;
    std::optional<std::string> bundleID = text(top, "bundleID");
    // A part of the system that is no app means nothing to the user.
    if (isFirstParty(top) && !bundleID) return std::nullopt;
    return CrashReport{*appName, std::move(bundleID)};
}

std::filesystem::path CrashReportScanner::defaultDirectory() {
    const char* home = std::getenv("HOME");
    return std::filesystem::path(home ? home : "/") / "Library/Logs/DiagnosticReports";
}

CrashReportScanner::CrashReportScanner(std::filesystem::path directory, Date since,
                                       CreationDate creationDate)
    : directory_(std::move(directory)), lastScan_(since), creationDate_(std::move(creationDate)) {}

std::vector<CrashReport> CrashReportScanner::newReports(Date now) {
    std::vector<CrashReport> reports;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(directory_, error), end; !error && entry != end;
         entry.increment(error)) {
        if (entry->path().extension() != ".ips") continue;
        const std::optional<Date> created = creationDate_(entry->path());
        if (!created || *created <= lastScan_ || *created > now) continue;
        if (auto report = readReport(entry->path())) reports.push_back(std::move(*report));
    }
    lastScan_ = now;
    return reports;
}

} // namespace tavero
