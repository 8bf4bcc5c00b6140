#pragma once

#include "platform/BundleSource.h"
#include "platform/CpuSource.h"
#include "platform/DiskSource.h"
#include "platform/MemorySource.h"
#include "platform/NetworkSource.h"
#include "platform/PowerSource.h"
#include "platform/mac/MacKernel.h"
#include "platform/mac/MacProcessTable.h"
#include "platform/mac/PropertyValue.h"
#include "platform/sim/SimAudio.h"
#include "platform/sim/SimBluetooth.h"
#include "platform/sim/SimConnections.h"
#include "platform/sim/SimHardware.h"
#include "records/Date.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tavero {

// A network interface of the simulated Mac.
struct SimInterface {
    std::uint32_t index = 0;
    std::string name;
    InterfaceCounters counters;
};

// A process of the simulated Mac.
struct SimProcess {
    std::int32_t pid = 0;
    std::optional<std::string> path;             // absent if the system refuses
    std::optional<MacProcessTable::Usage> usage; // likewise
    std::int32_t threads = 1;                    // refused together with the usage
};

// What the simulated Mac answers at one moment, in the form its calls have: plain values that a
// scenario or a test sets. An absent one is a call that the system refuses.
struct SimState {
    std::optional<MacKernel::ProcessorLoad> processorLoad;
    LoadAverage loadAverage;
    std::optional<VMStatistics> vmStatistics;
    std::optional<std::uint64_t> pageSize;
    std::map<std::string, std::vector<std::byte>> sysctls; // the bytes as sysctlbyname copies them
    std::map<std::vector<int>, std::vector<std::byte>> numberedSysctls; // and as sysctl does
    std::map<std::uint32_t, std::string> interfaceNames;                // by index
    std::map<std::string, std::vector<PropertyMap>> services;           // by class
    std::map<std::string, std::vector<PropertyMap>> children; // of all services, by their class
    std::map<std::string, VolumeSpace> volumeSpaces;          // by path
    std::vector<MountedVolume> volumes;
    std::vector<SimProcess> processes; // in the order of the system's list
    std::uint64_t absoluteTime = 0;    // ticks of the timebase
    Timebase timebase{.numer = 125, .denom = 3};
    std::map<std::string, PropertyMap> bundleInfo; // by path

    SimHardware hardware;
    SimConnections connections;
    SimBluetooth bluetooth;
    SimAudio audio;

    bool lowPowerMode = false;
    ThermalState thermalState = ThermalState::nominal;
    bool onExternalPower = true;

    // The same values, put in from the form that readers use.
    void setTicks(const std::vector<CpuTicks>& ticks);
    void setSysctl(const std::string& name, std::int32_t value);
    void setSysctl(const std::string& name, std::int64_t value);
    // The page counts, and the sysctls that belong to memory: an absent level is a missing sysctl.
    void setMemory(const MemoryCounts& counts);
    // One block storage driver a disk.
    void setDisks(const std::vector<DiskCounters>& disks);
    // Both of their sysctls: the list, where the counters are cut, and the whole counters.
    void setInterfaces(const std::vector<SimInterface>& interfaces);
    void setBundle(const std::string& path, const BundleNames& names);
    // The sysctl kern.boottime.
    void setBootTime(Date date);
    // Battery, power sources, accelerator and its clients, controller and sensors.
    void setHardware(const SimLoad& load);

    // Takes processes out of the list, and a scenario leaves them out from then on: one process, or
    // all that run inside a bundle. The audio system then doesn't know them either.
    void end(std::int32_t pid);
    void quit(const std::string& bundlePath);
};

// Its memory.
constexpr std::uint64_t simPageSize = 16384;
constexpr std::uint64_t simMemory = 16ull << 30; // bytes

// A laptop with four performance and four efficiency cores, 16 GB and one disk, which has just
// started.
SimState simLaptop();

} // namespace tavero
