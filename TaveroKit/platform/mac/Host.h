#pragma once

#include "network/PathMonitor.h"
#include "platform/EnergySource.h"
#include "platform/PowerSource.h"
#include "platform/SensorSource.h"
#include "platform/mac/MacBundleInfo.h"
#include "platform/mac/MacKernel.h"
#include "platform/mac/MacProcessTable.h"
#include "platform/mac/MacRegistry.h"
#include "platform/mac/MacVolumes.h"
#include "platform/mac/hardware/MacController.h"
#include "platform/mac/hardware/MacPowerSources.h"
#include "platform/mac/network/MacWiFi.h"
#include "platform/mac/network/NetworkStatistics.h"

#include <memory>

namespace tavero {

// The seams of this Mac, each one made once for the life of the program.
std::shared_ptr<MacKernel> hostKernel();
std::shared_ptr<MacRegistry> hostRegistry();
std::shared_ptr<MacVolumes> hostVolumes();
std::shared_ptr<MacProcessTable> hostProcesses();
std::shared_ptr<MacBundleInfo> hostBundles();
std::unique_ptr<PowerSource> hostPower();
std::shared_ptr<MacPowerSources> hostPowerSources();
// Null if the system doesn't let this program at them.
std::shared_ptr<MacController> hostController();
std::unique_ptr<SensorSource> hostSensors();
std::unique_ptr<EnergySource> hostEnergy();
std::shared_ptr<NetworkStatistics> hostNetworkStatistics();
std::unique_ptr<WiFiInterface> hostWiFi();
std::unique_ptr<PathMonitor> hostPath();

} // namespace tavero
