#include "alerts/QuietHours.h"

#include <chrono>

namespace tavero::QuietHours {

bool contains(Date date, const Calendar& calendar) {
    using namespace std::chrono;
    const Date local = date + seconds(calendar.secondsFromGMT(date));
    const auto hour = floor<hours>(local - floor<days>(local)).count();
    return hour < 8 || hour > 21;
}

} // namespace tavero::QuietHours
