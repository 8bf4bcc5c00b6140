#pragma once

#include "records/CPUSnapshot.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace tavero {

// The cumulative ticks of one logical CPU. 32 bits wide: differences wrap on purpose.
struct CpuTicks {
    std::uint32_t user = 0;
    std::uint32_t system = 0;
    std::uint32_t idle = 0;
    std::uint32_t nice = 0;

    bool operator==(const CpuTicks&) const = default;
};

// How many logical CPUs of each kind there are; 0 if the machine does not tell kinds apart.
struct CoreKinds {
    std::int64_t performance = 0;
    std::int64_t efficiency = 0;

    bool operator==(const CoreKinds&) const = default;
};

// Where CPU counters come from.
class CpuSource {
  public:
    virtual ~CpuSource() = default;

    // One entry a logical CPU, in the order the host reports them. Absent if the host refuses.
    virtual std::optional<std::vector<CpuTicks>> ticks() = 0;

    // Zeros if the host refuses.
    virtual LoadAverage loadAverage() = 0;

    // May be asked on every pass: what cannot change is read once.
    virtual CoreKinds coreKinds() = 0;
};

} // namespace tavero
