#pragma once

#include "records/LiveSnapshot.h"

#include <cstdint>
#include <optional>

namespace tavero {

// A mean in the making.
class Average {
  public:
    // What is absent or not a finite number is no sample.
    void add(std::optional<double> value);
    // Absent without a sample.
    std::optional<double> value() const;

  private:
    double sum_ = 0;
    std::int64_t count_ = 0;
};

// The samples of one minute.
struct MinuteBucket {
    std::int64_t start = 0; // seconds since 1970, a multiple of 60
    Average cpu;            // fraction of the machine
    Average memory;         // bytes used
    Average gpu;            // fraction
    Average watts;          // the system's power; else what flows into or out of the battery
    Average battery;        // percent
    Average diskRead;       // bytes a second
    Average diskWrite;      // likewise
    Average netIn;          // likewise
    Average netOut;         // likewise

    void add(const LiveSnapshot& snapshot);
};

} // namespace tavero
