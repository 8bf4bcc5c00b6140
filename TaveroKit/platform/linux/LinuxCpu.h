#pragma once

#include "platform/CpuSource.h"
#include "platform/linux/KeptFile.h"
#include "platform/linux/MonotonicCounter.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <vector>

namespace tavero {

// CPU counters from /proc/stat and /proc/loadavg; how its figures become the four kinds of ticks
// stands with CpuTime. Ticks never step back. A CPU that goes offline keeps its entry, at rest, so
// that the others' differences go on.
//
// Core kinds come from the lists that hybrid x86 processors have, else from the CPUs' capacities:
// those of the lowest one are the efficiency cores.
class LinuxCpu : public CpuSource {
  public:
    explicit LinuxCpu(const std::filesystem::path& root);

    std::optional<std::vector<CpuTicks>> ticks() override;
    LoadAverage loadAverage() override;
    CoreKinds coreKinds() override { return coreKinds_; }

  private:
    struct Counters {
        MonotonicCounter user;
        MonotonicCounter system;
        MonotonicCounter idle; // with iowait, so that time moved between the two cancels out
        MonotonicCounter nice;
    };

    KeptFile stat_;
    KeptFile loadAverage_;
    CoreKinds coreKinds_;
    std::vector<char> buffer_;
    std::map<std::uint32_t, Counters> cpus_; // by number
};

} // namespace tavero
