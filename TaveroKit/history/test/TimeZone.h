#pragma once

#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

namespace tavero {

// While it lives, this process is in a time zone, written as POSIX does
// ("CET-1CEST,M3.5.0,M10.5.0/3"): that needs no zone files on the machine.
class TimeZone {
  public:
    explicit TimeZone(const char* rule) {
        if (const char* before = std::getenv("TZ")) before_ = before;
        ::setenv("TZ", rule, 1);
        ::tzset();
    }
    ~TimeZone() {
        before_ ? ::setenv("TZ", before_->c_str(), 1) : ::unsetenv("TZ");
        ::tzset();
    }
    TimeZone(const TimeZone&) = delete;
    TimeZone& operator=(const TimeZone&) = delete;

  private:
    std::optional<std::string> before_;
};

namespace Zones {

inline constexpr const char* berlin = "CET-1CEST,M3.5.0,M10.5.0/3";
inline constexpr const char* sydney = "AEST-10AEDT,M10.1.0,M4.1.0/3";
inline constexpr const char* newYork = "EST5EDT,M3.2.0,M11.1.0";
inline constexpr const char* kolkata = "IST-5:30";
inline constexpr const char* lordHowe =
    "<+1030>-10:30<+11>-11,M10.1.0,M4.1.0";                                // half an hour ahead
inline constexpr const char* santiago = "<-04>4<-03>,M9.1.6/24,M4.1.6/24"; // at midnight
inline constexpr const char* havana = "CST5CDT,M3.2.0/0,M11.1.0/1"; // at midnight, and back to it

} // namespace Zones

} // namespace tavero
