#include "platform/linux/hardware/LinuxSensors.h"

#include "platform/linux/hardware/Hwmon.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tavero {

namespace {

// Drivers that read a register of the processor and wait for nobody.
constexpr std::array<std::string_view, 5> registerChips{"coretemp", "k10temp", "k8temp",
                                                        "via_cputemp", "zenpower"};
// Where a board's thermal zones have sensors in the chip: "cpu_thermal", "soc0_thermal".
constexpr std::array<std::string_view, 5> zonesInTheProcessor{"bigcore", "cpu", "littlecore",
                                                              "package", "soc"};

const std::string dieMark = "tdie ";

bool isRegisterChip(std::string_view chip) {
    return std::find(registerChips.begin(), registerChips.end(), chip) != registerChips.end();
}

// The supplies' chips repeat what the battery tells, and those of mice tell of no battery of ours.
bool isPowerSupply(const HwmonChip& chip) {
    return readAttribute(chip.device / "type") == "Battery";
}

} // namespace

// Belongs to the call that goes on, whatever becomes of the source.
struct LinuxSensors::Sensor {
    std::string name;
    bool isAnsweredAtOnce = false;
    HwmonFigure figure;
    std::optional<double> celsius;

    void read() { celsius = hwmonCelsius(figure.read()); }
};

bool isProcessorChip(std::string_view chip) {
    if (isRegisterChip(chip)) return true;
    return chip.ends_with("thermal") &&
           std::any_of(zonesInTheProcessor.begin(), zonesInTheProcessor.end(),
                       [&](std::string_view zone) { return chip.starts_with(zone); });
}

std::string sensorName(std::string_view chip, std::string_view label,
                       const std::vector<std::string>& otherLabels) {
    if (chip == "nvme" && label == "Composite") return "NAND Composite";
    const std::string place(label.empty() ? chip : label);
    // Tctl is what the fans go by: the die's temperature, on some models with degrees on top.
    const bool isControlFigure =
        label == "Tctl" &&
        std::find(otherLabels.begin(), otherLabels.end(), "Tdie") != otherLabels.end();
    if (isProcessorChip(chip) && !isControlFigure) return dieMark + place;
    return label.empty() ? place : std::string(chip) + " " + place;
}

LinuxSensors::LinuxSensors(const std::filesystem::path& root, std::chrono::milliseconds limit)
    : calls_(limit) {
    const std::filesystem::path hwmon = root / "sys/class/hwmon";
    const std::vector<HwmonChip> chips = hwmonChips(hwmon);
    const bool hasProcessorChip =
        std::any_of(chips.begin(), chips.end(),
                    [](const HwmonChip& chip) { return isProcessorChip(chip.name); });
    for (const HwmonChip& chip : chips) {
        if (isPowerSupply(chip)) continue;
        const std::vector<std::string> inputs = hwmonInputs(chip, "temp");
        std::vector<std::string> labels;
        labels.reserve(inputs.size());
        for (const std::string& input : inputs) labels.push_back(hwmonLabel(chip, input));
        for (std::size_t i = 0; i < inputs.size(); ++i) {
            const bool standsIn = !hasProcessorChip && labels[i] == "CPU";
            sensors_.push_back(std::make_shared<Sensor>(
                Sensor{.name = standsIn ? dieMark + chip.name + " CPU"
                                        : sensorName(chip.name, labels[i], labels),
                       .isAnsweredAtOnce = isRegisterChip(chip.name),
                       .figure = HwmonFigure(hwmon, chip, inputs[i] + "_input")}));
        }
    }
}

LinuxSensors::~LinuxSensors() = default;

std::vector<std::string> LinuxSensors::sensors() {
    std::vector<std::string> names;
    names.reserve(sensors_.size());
    for (const auto& sensor : sensors_) names.push_back(sensor->name);
    return names;
}

std::optional<double> LinuxSensors::celsius(std::size_t sensor) {
    if (sensor >= sensors_.size()) return std::nullopt;
    const std::shared_ptr<Sensor>& asked = sensors_[sensor];
    if (asked->isAnsweredAtOnce)
        asked->read();
    else if (!calls_.run([asked] { asked->read(); }))
        return std::nullopt;
    return asked->celsius;
}

} // namespace tavero
