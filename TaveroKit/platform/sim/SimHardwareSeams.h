#pragma once

#include "platform/SensorSource.h"
#include "platform/mac/hardware/MacController.h"
#include "platform/mac/hardware/MacPowerSources.h"
#include "platform/sim/SimTimeline.h"

#include <memory>

namespace tavero {

// The controller, the power sources and the sensors of the simulated Mac.
std::shared_ptr<MacController> simController(std::shared_ptr<SimTimeline> timeline);
std::shared_ptr<MacPowerSources> simPowerSources(std::shared_ptr<SimTimeline> timeline);
std::unique_ptr<SensorSource> simSensors(std::shared_ptr<SimTimeline> timeline);

} // namespace tavero
