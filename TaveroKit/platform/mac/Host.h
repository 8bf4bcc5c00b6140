#pragma once

#include "platform/PowerSource.h"
#include "platform/mac/MacBundleInfo.h"
#include "platform/mac/MacKernel.h"
#include "platform/mac/MacProcessTable.h"
#include "platform/mac/MacRegistry.h"
#include "platform/mac/MacVolumes.h"

#include <memory>

namespace tavero {

// The seams of this Mac, each one made once for the life of the program.
std::shared_ptr<MacKernel> hostKernel();
std::shared_ptr<MacRegistry> hostRegistry();
std::shared_ptr<MacVolumes> hostVolumes();
std::shared_ptr<MacProcessTable> hostProcesses();
std::shared_ptr<MacBundleInfo> hostBundles();
std::unique_ptr<PowerSource> hostPower();

} // namespace tavero
