#pragma once

#include "records/Date.h"

#include <chrono>
#include <cstdint>

namespace tavero {

// The seconds since 1970, without their fraction: how the history writes a moment.
inline std::int64_t wholeSeconds(Date date) {
    return std::chrono::duration_cast<std::chrono::seconds>(date.time_since_epoch()).count();
}

} // namespace tavero
