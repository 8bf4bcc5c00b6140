#pragma once

#include "platform/mac/PropertyValue.h"

#include <vector>

namespace tavero {

// The Mac's list of what can power it: its battery, an uninterruptible supply.
class MacPowerSources {
  public:
    virtual ~MacPowerSources() = default;

    // IOPSGetPowerSourceDescription of each entry of IOPSCopyPowerSourcesList; empty if that fails.
    virtual std::vector<PropertyMap> descriptions() = 0;
};

} // namespace tavero
