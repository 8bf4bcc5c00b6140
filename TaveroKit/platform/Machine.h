#pragma once

#include "platform/BundleSource.h"
#include "platform/CpuSource.h"
#include "platform/DiskSource.h"
#include "platform/MemorySource.h"
#include "platform/NetworkSource.h"
#include "platform/PowerSource.h"
#include "platform/ProcessSource.h"

#include <memory>
#include <string>

namespace tavero {

// Everything that is read from a machine, one source a subject. A source that it lacks is null.
struct Machine {
    std::string systemName = "macOS"; // what its users call the operating system
    std::unique_ptr<CpuSource> cpu;
    std::unique_ptr<MemorySource> memory;
    std::unique_ptr<DiskSource> disk;
    std::unique_ptr<NetworkSource> network;
    std::unique_ptr<ProcessSource> processes;
    std::unique_ptr<BundleSource> bundles;
    std::unique_ptr<PowerSource> power;

    // The machine that this program runs on. Defined by the one platform that is linked in.
    static Machine host();
};

} // namespace tavero
