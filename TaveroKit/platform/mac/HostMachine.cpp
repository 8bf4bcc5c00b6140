#include "platform/Machine.h"

#include "platform/mac/Host.h"
#include "platform/mac/MacBundles.h"
#include "platform/mac/MacCpu.h"
#include "platform/mac/MacDisk.h"
#include "platform/mac/MacMemory.h"
#include "platform/mac/MacNetwork.h"
#include "platform/mac/MacProcesses.h"

namespace tavero {

Machine Machine::host() {
    const std::shared_ptr<MacKernel> kernel = hostKernel();
    return {
        .cpu = std::make_unique<MacCpu>(kernel),
        .memory = std::make_unique<MacMemory>(kernel),
        .disk = std::make_unique<MacDisk>(hostRegistry(), hostVolumes()),
        .network = std::make_unique<MacNetwork>(kernel),
        .processes = std::make_unique<MacProcesses>(hostProcesses()),
        .bundles = std::make_unique<MacBundles>(hostBundles()),
        .power = hostPower(),
    };
}

} // namespace tavero
