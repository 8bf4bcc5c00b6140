#pragma once

#include "history/Calendar.h"
#include "history/Database.h"
#include "history/InsightsReport.h"
#include "records/Date.h"

#include <cstdint>

namespace tavero {

// What the file says of the last `days` days, 0 at least. A statement that fails leaves its field
// absent, 0 or empty.
InsightsReport insightsReport(Database& database, std::int64_t days, Date now,
                              const Calendar& calendar);

} // namespace tavero
