#include "alerts/CrashReportScanner.h"

#include "platform/mac/FileDates.h"

namespace tavero {

std::unique_ptr<CrashReports> hostCrashReports(Date since) {
    return std::make_unique<CrashReportScanner>(CrashReportScanner::defaultDirectory(), since,
                                                creationDate);
}

} // namespace tavero
