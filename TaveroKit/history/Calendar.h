#pragma once

#include "records/Date.h"

#include <cstdint>
#include <functional>
#include <utility>

namespace tavero {

// Where a person's days begin: a time zone, known by its distance from UTC at each moment.
class Calendar {
  public:
    // The seconds that local time is ahead of UTC at a moment, given in seconds since 1970.
    using Offset = std::function<std::int64_t(std::int64_t seconds)>;

    explicit Calendar(Offset offset) : offset_(std::move(offset)) {}
    // This machine's time zone as it is set now, read from the C library (localtime_r).
    static Calendar current();

    std::int64_t secondsFromGMT(Date moment) const;
    // The first moment of the day that `moment` falls on. That is not midnight where clocks are set
    // forward at midnight.
    Date startOfDay(Date moment) const;

  private:
    Offset offset_;
};

} // namespace tavero
