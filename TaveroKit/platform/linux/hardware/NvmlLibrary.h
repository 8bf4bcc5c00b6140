#pragma once

#include <optional>
#include <string>

namespace tavero {

// The functions of NVIDIA's management library that are used, declared after its public reference.
// It comes with the driver and is opened at run time, so a machine without it lacks nothing else.
// Tests run against a stand-in of these functions; the library itself has not been at hand yet.
struct NvmlLibrary {
    using Result = int; // 0 is success
    struct DeviceState;
    using Device = DeviceState*;
    struct Utilization { // percent of the last sample period
        unsigned int gpu;
        unsigned int memory;
    };
    struct Memory { // bytes
        unsigned long long total;
        unsigned long long free;
        unsigned long long used;
    };
    struct ProcessSample { // percent
        unsigned int pid;
        unsigned long long timeStamp; // microseconds
        unsigned int smUtil;
        unsigned int memUtil;
        unsigned int encUtil;
        unsigned int decUtil;
    };

    static constexpr Result insufficientSize = 7;

    Result (*init)() = nullptr;     // nvmlInit_v2; starts no device yet
    Result (*shutdown)() = nullptr; // nvmlShutdown
    // nvmlDeviceGetHandleByPciBusId_v2; starts this device and no other
    Result (*deviceByAddress)(const char*, Device*) = nullptr;
    // nvmlDeviceGetUtilizationRates
    Result (*utilization)(Device, Utilization*) = nullptr;
    // nvmlDeviceGetMemoryInfo
    Result (*memory)(Device, Memory*) = nullptr;
    // nvmlDeviceGetProcessUtilization: what came after a time stamp, into room for so many; tells
    // how many there are if that is too few
    Result (*processUtilization)(Device, ProcessSample*, unsigned int*,
                                 unsigned long long) = nullptr;
    // nvmlDeviceGetNumGpuCores; null in older ones
    Result (*cores)(Device, unsigned int*) = nullptr;

    // Absent without the library or one of its functions. It stays open for good: its own threads
    // may outlast a close.
    static std::optional<NvmlLibrary> open(const std::string& name);
};

} // namespace tavero
