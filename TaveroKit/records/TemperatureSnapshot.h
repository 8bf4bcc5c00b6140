#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tavero {

struct TemperatureReading {
    std::string name; // the sensor's product name
    double celsius = 0;

    bool operator==(const TemperatureReading&) const = default;
};

// One round of sensor readings.
struct TemperatureSnapshot {
    std::vector<TemperatureReading> all;

    // The hottest reading of a kind, told by the sensor's name; absent with no such sensor.
    std::optional<double> cpu() const;
    std::optional<double> battery() const;
    std::optional<double> ssd() const;

    bool operator==(const TemperatureSnapshot&) const = default;
};

} // namespace tavero
