#pragma once

#include "platform/AudioSystem.h"
#include "platform/BatterySource.h"
#include "platform/BundleSource.h"
#include "platform/ConnectionSource.h"
#include "platform/ControllerSource.h"
#include "platform/CpuSource.h"
#include "platform/DiskSource.h"
#include "platform/GPUSource.h"
#include "platform/MemorySource.h"
#include "platform/NetworkSource.h"
#include "platform/PowerSource.h"
#include "platform/ProcessSource.h"
#include "platform/SensorSource.h"
#include "platform/SystemSource.h"

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
    std::unique_ptr<GPUSource> gpu;
    std::unique_ptr<BatterySource> battery;
    std::unique_ptr<ControllerSource> controller;
    std::unique_ptr<SensorSource> sensors;
    std::unique_ptr<NetworkUsageSource> networkUsage;
    std::unique_ptr<WiFiSource> wifi;
    std::unique_ptr<ConnectionSource> connection;
    std::unique_ptr<SystemSource> system;
    AudioSystem audio;

    // The machine that this program runs on. Defined by the one platform that is linked in.
    static Machine host();
};

} // namespace tavero
