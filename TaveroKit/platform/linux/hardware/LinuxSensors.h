#pragma once

#include "platform/SensorSource.h"
#include "platform/linux/BoundedCalls.h"

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavero {

// The temp*_input of all chips in /sys/class/hwmon, in the order of their devices.
//
// A sensor is named by its chip and its label: "thinkpad GPU". One in the processor is "tdie Core
// 0" instead: those of the processors' own chips, or, on a machine without such a chip, any that is
// labelled "CPU". A disk's flash is "NAND Composite". The temperature of a battery comes with the
// battery. A sensor is found again by its device when its driver returns.
class LinuxSensors : public SensorSource {
  public:
    LinuxSensors(const std::filesystem::path& root, std::chrono::milliseconds limit);
    ~LinuxSensors() override;

    std::vector<std::string> sensors() override;

    // A processor's register is read at once. Other sensors may take long; absent beyond the limit.
    std::optional<double> celsius(std::size_t sensor) override;

  private:
    struct Sensor;

    std::vector<std::shared_ptr<Sensor>> sensors_;
    BoundedCalls calls_;
};

// Whether a chip by this name measures the processor itself.
bool isProcessorChip(std::string_view chip);

// What a sensor is called. `otherLabels` are those of the same chip.
std::string sensorName(std::string_view chip, std::string_view label,
                       const std::vector<std::string>& otherLabels);

} // namespace tavero
