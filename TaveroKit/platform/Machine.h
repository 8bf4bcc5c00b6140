#pragma once

#include "platform/CpuSource.h"
#include "platform/MemorySource.h"
#include "platform/PowerSource.h"

#include <memory>

namespace tavero {

// Everything that is read from a machine, one source a subject. A source that it lacks is null.
struct Machine {
    std::unique_ptr<CpuSource> cpu;
    std::unique_ptr<MemorySource> memory;
    std::unique_ptr<PowerSource> power;

    // The machine that this program runs on. Defined by the one platform that is linked in.
    static Machine host();
};

} // namespace tavero
