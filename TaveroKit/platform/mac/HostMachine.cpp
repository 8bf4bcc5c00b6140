#include "platform/Machine.h"

#include "platform/mac/Host.h"
#include "platform/mac/MacCpu.h"
#include "platform/mac/MacDisk.h"
#include "platform/mac/MacMemory.h"
#include "platform/mac/MacNetwork.h"

namespace tavero {

Machine Machine::host() {
    const std::shared_ptr<MacKernel> kernel = hostKernel();
    return {
        .cpu = std::make_unique<MacCpu>(kernel),
        .memory = std::make_unique<MacMemory>(kernel),
        .disk = std::make_unique<MacDisk>(hostRegistry(), hostVolumes()),
        .network = std::make_unique<MacNetwork>(kernel),
        .power = hostPower(),
    };
}

} // namespace tavero
