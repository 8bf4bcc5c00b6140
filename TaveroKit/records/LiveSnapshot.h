#pragma once

#include "records/AppUsage.h"
#include "records/CPUSnapshot.h"
#include "records/Date.h"
#include "records/DiskSnapshot.h"
#include "records/GPUSnapshot.h"
#include "records/MemorySnapshot.h"
#include "records/NetworkSnapshot.h"
#include "records/PowerSnapshot.h"
#include "records/SoundSnapshot.h"
#include "records/SystemActivity.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tavero {

// The whole state of the machine at one instant: what one pass of the engine produces.
// An absent value was not read on this pass or is not available; it never stands for 0.
struct LiveSnapshot {
    Date date{}; // when the pass began; "now" for every rate and log entry
    std::optional<CPUSnapshot> cpu;
    std::optional<MemorySnapshot> memory;
    std::optional<GPUSnapshot> gpu;         // absent on a light pass
    std::optional<BatterySnapshot> battery; // absent on a light pass and without a battery
    std::optional<double> systemWatts;      // whole-system power; absent on a light pass
    std::optional<double> cpuTemperature;   // Celsius; cached between full passes
    std::vector<double> fanRPM;             // one entry a fan; empty on a light pass
    std::optional<SoundSnapshot> sound;     // absent on a light pass
    double diskReadPerSecond = 0;           // bytes; 0 on the first pass
    double diskWritePerSecond = 0;          // likewise
    // The volume at "/"; cached for a minute.
    std::optional<std::int64_t> diskAvailable; // bytes
    std::optional<std::int64_t> diskCapacity;  // bytes
    std::optional<std::int64_t> diskPurgeable; // bytes
    std::optional<std::string> diskName;
    std::vector<VolumeInfo> volumes; // cached for a minute; empty until the first full pass
    std::optional<WiFiLink> wifi;    // cached; absent when not on Wi-Fi
    ConnectionKind connection = ConnectionKind::other;
    std::vector<AppUsage> networkApps; // the apps that use the network, 15 at most
    double networkInPerSecond = 0;     // bytes; 0 on the first pass
    double networkOutPerSecond = 0;    // likewise
    std::vector<AppUsage> apps;        // the top apps by CPU; empty on a light pass
    std::int64_t appCount = 0;         // how many apps there are; 0 on a light pass
    std::int64_t processCount = 0;     // likewise for processes
    std::uint64_t diskReadTotal = 0;   // bytes, cumulative
    std::uint64_t diskWrittenTotal = 0;
    std::uint64_t networkInTotal = 0; // bytes, cumulative; 0 if the read failed
    std::uint64_t networkOutTotal = 0;
    std::vector<AppUsage> memoryHeavyApps; // the apps with the largest memory, 3 at most
    std::optional<SystemActivity> systemActivity;

    bool operator==(const LiveSnapshot&) const = default;
};

} // namespace tavero
