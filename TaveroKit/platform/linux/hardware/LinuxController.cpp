#include "platform/linux/hardware/LinuxController.h"

#include "platform/linux/hardware/Hwmon.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace tavero {

namespace {

constexpr std::string_view meterChip = "power_meter";
constexpr std::array<std::string_view, 3> meterLabels{"Total System Power", "VDD_IN",
                                                      "power total"};

// The attribute of the chip that tells the power of the whole system.
std::optional<std::string> systemMeter(const HwmonChip& chip) {
    std::error_code error;
    if (chip.name == meterChip && std::filesystem::exists(chip.folder / "power1_average", error))
        return "power1_average";
    for (const std::string& input : hwmonInputs(chip, "power"))
        if (chip.name == meterChip ||
            std::count(meterLabels.begin(), meterLabels.end(), hwmonLabel(chip, input)) > 0)
            return input + "_input";
    return std::nullopt;
}

} // namespace

// Belongs to the call that goes on, whatever becomes of the source.
struct LinuxController::Reading {
    std::vector<HwmonFigure> fans;
    std::optional<HwmonFigure> meter;
    SMCSnapshot snapshot;

    void read() {
        snapshot = {};
        for (HwmonFigure& fan : fans)
            if (const auto speed = hwmonRPM(fan.read())) snapshot.fanRPM.push_back(*speed);
        if (meter) snapshot.systemWatts = hwmonWatts(meter->read());
    }
};

LinuxController::LinuxController(const std::filesystem::path& root, std::chrono::milliseconds limit)
    : hwmon_(root / "sys/class/hwmon"), calls_(limit) {}

SMCSnapshot LinuxController::read() {
    if (hwmon_.changed()) findFigures();
    if (!reading_) return {};
    if (calls_.run([reading = reading_] { reading->read(); })) last_ = reading_->snapshot;
    return last_;
}

void LinuxController::findFigures() {
    auto reading = std::make_shared<Reading>();
    for (const HwmonChip& chip : hwmonChips(hwmon_.path())) {
        for (const std::string& fan : hwmonInputs(chip, "fan"))
            reading->fans.emplace_back(hwmon_.path(), chip, fan + "_input");
        if (reading->meter) continue;
        if (auto file = systemMeter(chip))
            reading->meter.emplace(hwmon_.path(), chip, std::move(*file));
    }
    const bool isEmpty = reading->fans.empty() && !reading->meter;
    reading_ = isEmpty ? nullptr : std::move(reading);
    if (!reading_) last_ = {};
}

} // namespace tavero
