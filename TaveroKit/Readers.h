#pragma once

#include "apps/AppRows.h"
#include "platform/Machine.h"
#include "records/LiveSnapshot.h"
#include "records/ProcessSample.h"
#include "records/TemperatureSnapshot.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

namespace tavero {

// Everything the engine reads, one entry a reader. An empty entry is a reader that this machine
// lacks: its part of the snapshot stays absent, empty or 0. Each is called on the engine's worker
// only, one at a time, and may block for the length of its system calls.
struct Readers {
    std::function<std::optional<CPUSnapshot>()> cpu;
    std::function<std::optional<MemorySnapshot>()> memory;
    // The free space of "/" is slow to learn, so it is read only when asked for.
    std::function<DiskSnapshot(bool includeFreeSpace)> disk;
    std::function<std::vector<VolumeInfo>()> volumes;
    std::function<std::optional<NetworkSnapshot>()> network;
    std::function<std::optional<TemperatureSnapshot>()> sensors;
    std::function<std::optional<WiFiLink>()> wifi;
    // The samples stay valid until the next call.
    std::function<std::span<const ProcessSample>(bool threads)> processes;
    // What the busiest of these does if it belongs to the system and is unusually busy.
    std::function<std::optional<SystemActivity>(std::span<const ProcessSample>)> unusualActivity;
    std::function<std::string(const AppIdentity&)> displayName;
    std::function<std::unordered_map<std::int32_t, double>()> appGPU; // by pid, fractions
    std::function<std::unordered_map<std::int32_t, NetworkBytes>()>
        networkUsage; // by pid, since the previous call
    std::function<SMCSnapshot()> smc;
    std::function<std::optional<GPUSnapshot>()> gpu;
    std::function<std::optional<BatterySnapshot>()> battery;
    std::function<SoundSnapshot()> sound;
    std::function<ConnectionKind()> connection;
};

// The readers over the sources that a machine has.
Readers readers(Machine machine);

} // namespace tavero
