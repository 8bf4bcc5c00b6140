#pragma once

#include "records/Date.h"

#include <string>

namespace tavero {

// A day as the user's locale writes it, in the user's time zone, with its month in short:
// "Thursday, Nov 19". Defined once a platform.
std::string fullDay(Date day);
// The same with the weekday in short: "Thu, Nov 19".
std::string shortDay(Date day);

} // namespace tavero
