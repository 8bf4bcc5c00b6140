#pragma once

#include "network/PathMonitor.h"
#include "platform/mac/network/MacWiFi.h"
#include "platform/mac/network/NetworkStatistics.h"
#include "platform/sim/SimTimeline.h"

#include <memory>

namespace tavero {

// The network services of the simulated Mac. The statistics call back while they are called; the
// path is noticed to have changed when something of the machine is read.
std::shared_ptr<NetworkStatistics> simNetworkStatistics(std::shared_ptr<SimTimeline> timeline);
std::unique_ptr<WiFiInterface> simWiFi(std::shared_ptr<SimTimeline> timeline);
std::unique_ptr<PathMonitor> simPath(std::shared_ptr<SimTimeline> timeline);

} // namespace tavero
