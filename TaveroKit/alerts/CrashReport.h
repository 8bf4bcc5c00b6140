#pragma once

#include "records/Date.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tavero {

// An app that crashed.
struct CrashReport {
    std::string appName;
    std::optional<std::string> bundleID;

    bool operator==(const CrashReport&) const = default;
};

// Where the system tells of crashes.
class CrashReports {
  public:
    virtual ~CrashReports() = default;

    // Those that came since the last call, or since the source was made. A report that can't be
    // read is left out, for good.
    virtual std::vector<CrashReport> newReports(Date now) = 0;
};

// Those of this machine's user, later than `since`. Defined by the one platform that is linked in.
std::unique_ptr<CrashReports> hostCrashReports(Date since);

} // namespace tavero
