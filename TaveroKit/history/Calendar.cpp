#include "history/Calendar.h"

#include "history/WholeSeconds.h"

#include <time.h>

#include <algorithm>
#include <chrono>

namespace tavero {

namespace {

constexpr std::int64_t day = 86400;

std::int64_t hostOffset(std::int64_t seconds) {
    const time_t time = seconds;
    tm local = {};
    return ::localtime_r(&time, &local) ? local.tm_gmtoff : 0;
}

} // namespace

Calendar Calendar::current() {
    ::tzset(); // notices that the zone was changed
    return Calendar(hostOffset);
}

std::int64_t Calendar::secondsFromGMT(Date moment) const { return offset_(wholeSeconds(moment)); }

Date Calendar::startOfDay(Date moment) const {
    const std::int64_t now = wholeSeconds(moment);
    const std::int64_t offset = offset_(now);
    const std::int64_t local = now + offset;
    const std::int64_t midnight = local - (local % day + day) % day; // on the local clock
    // The clocks may have been set since, or at that very moment: of the two moments that midnight
    // can be, the day begins with the earlier one, unless local time had not come so far by then.
    const std::int64_t before = offset_(midnight - offset - day);
    const std::int64_t earlier = midnight - std::max(before, offset);
    const bool isThatDay = earlier + offset_(earlier) >= midnight;
    return Date(std::chrono::seconds(isThatDay ? earlier : midnight - std::min(before, offset)));
}

} // namespace tavero
