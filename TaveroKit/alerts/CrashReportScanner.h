#pragma once

#include "alerts/CrashReport.h"
#include "records/Date.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

namespace tavero {

// Notices crashes by the files that macOS writes for each into a folder of the user's: one line of
// JSON, then the report. Only that line is read, and only of files that are new.
class CrashReportScanner : public CrashReports {
  public:
    // When a file was created. Absent if nobody knows.
    using CreationDate = std::function<std::optional<Date>(const std::filesystem::path&)>;

    // ~/Library/Logs/DiagnosticReports
    static std::filesystem::path defaultDirectory();

    // Reports from before `since` are ignored.
    CrashReportScanner(std::filesystem::path directory, Date since, CreationDate creationDate);

    // In the order of the folder. One that was written while the folder could not be read is
    // missed.
    std::vector<CrashReport> newReports(Date now) override;

  private:
    std::filesystem::path directory_;
    Date lastScan_;
    CreationDate creationDate_;
};

// What the first line of a report tells. Absent if it is not that of an app's crash.
std::optional<CrashReport> crashReport(std::string_view header);

} // namespace tavero
