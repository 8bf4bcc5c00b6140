#pragma once

#include "records/PowerSnapshot.h"

#include <optional>

namespace tavero {

// The machine's own battery.
class BatterySource {
  public:
    virtual ~BatterySource() = default;

    // Absent on a machine without one.
    virtual std::optional<BatterySnapshot> battery() = 0;
};

} // namespace tavero
