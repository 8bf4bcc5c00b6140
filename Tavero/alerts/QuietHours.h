#pragma once

#include "history/Calendar.h"
#include "records/Date.h"

namespace tavero::QuietHours {

// The user's night: from 22:00 up to, not including, 8:00, local time.
bool contains(Date date, const Calendar& calendar);

} // namespace tavero::QuietHours
