#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace tavero {

// The temperature sensors of a machine.
class SensorSource {
  public:
    virtual ~SensorSource() = default;

    // Their product names, fixed for the source's life. "tdie" in one says that it sits in the
    // processor, "battery" in any case that it sits in a battery.
    virtual std::vector<std::string> sensors() = 0;

    // What the sensor at this index of the list shows now, in Celsius. Absent if it says nothing.
    virtual std::optional<double> celsius(std::size_t sensor) = 0;
};

} // namespace tavero
