#pragma once

#include "records/LiveSnapshot.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace tavero {

// What one app took since the last write.
struct AppBucket {
    std::string name;                      // as first seen
    std::optional<std::string> bundlePath; // likewise
    double cpuSeconds = 0;
    double memorySum = 0; // bytes, one addend a sample
    std::int64_t samples = 0;
    double diskWritten = 0; // bytes
    double networkIn = 0;   // bytes
    double networkOut = 0;  // bytes
};

// What the apps of one hour took since the last write.
struct AppHour {
    std::int64_t hour = 0;                 // its start: seconds since 1970, a multiple of 3600
    std::map<std::string, AppBucket> apps; // by AppIdentity::id

    // Adds a sample that stands for so many seconds. A product that is not a finite number adds
    // nothing.
    void add(const LiveSnapshot& snapshot, double seconds);
};

} // namespace tavero
