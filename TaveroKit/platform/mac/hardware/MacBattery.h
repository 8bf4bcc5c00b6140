#pragma once

#include "platform/BatterySource.h"
#include "platform/mac/MacRegistry.h"
#include "platform/mac/hardware/MacPowerSources.h"

#include <memory>

namespace tavero {

// The battery of a Mac: its driver in the registry, and the system's list of power sources.
class MacBattery : public BatterySource {
  public:
    MacBattery(std::shared_ptr<MacRegistry> registry, std::shared_ptr<MacPowerSources> sources);

    std::optional<BatterySnapshot> battery() override;

  private:
    std::shared_ptr<MacRegistry> registry_;
    std::shared_ptr<MacPowerSources> sources_;
};

} // namespace tavero
