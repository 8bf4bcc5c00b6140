#pragma once

#include "platform/mac/PropertyValue.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tavero {

// A value that the simulated Mac's controller keeps: its type in four characters, and its bytes.
struct SimControllerValue {
    std::string type;
    std::vector<std::byte> bytes;
};

struct SimSensor {
    std::string name;
    std::optional<double> celsius; // absent if it says nothing
};

// What the simulated Mac tells of power and heat beside its registry, in the form its calls have.
struct SimHardware {
    std::vector<PropertyMap> powerSources;
    std::map<std::string, SimControllerValue> controller; // by key
    std::vector<SimSensor> sensors;

    void setController(const std::string& key, float value);
    void setController(const std::string& key, std::uint8_t value);
};

// A program's access to the GPU of the simulated Mac.
struct SimGPUClient {
    std::int32_t pid = 0;
    std::string name;
    std::uint64_t nanoseconds = 0; // of GPU time
};

// What the simulated Mac's power, heat and GPU figures follow from at one moment.
struct SimLoad {
    double watts = 4.5;        // of the whole machine
    double warmth = 4.5;       // the same over the last minute, which the case feels
    std::vector<double> cores; // fraction busy, one entry a CPU
    double gpu = 0.03;         // fraction busy
    bool onExternalPower = true;
    double charge = 1;        // of the battery, a fraction
    double chargingWatts = 0; // into the battery, while on external power
    std::vector<SimGPUClient> gpuClients;
};

// The battery of the simulated Mac when it is full.
constexpr double simBatteryJoules = 51.9 * 3600;

} // namespace tavero
