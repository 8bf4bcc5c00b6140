#pragma once

#include "platform/linux/KeptFile.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavero {

// A chip of /sys/class/hwmon. Its number there changes whenever a driver comes or goes; the device
// that it sits on and its name don't.
struct HwmonChip {
    std::filesystem::path device;
    std::string name;             // "coretemp"
    std::filesystem::path folder; // of this time

    bool isSameAs(const HwmonChip& other) const {
        return device == other.device && name == other.name;
    }
};

// By device and name. `hwmon` is the class folder.
std::vector<HwmonChip> hwmonChips(const std::filesystem::path& hwmon);

// The inputs of a kind that the chip has, by number: "temp1", "temp2" for "temp".
std::vector<std::string> hwmonInputs(const HwmonChip& chip, std::string_view kind);

// What the driver says where the input sits: "Core 0". Empty if it doesn't.
std::string hwmonLabel(const HwmonChip& chip, const std::string& input);

// One figure of a chip. Its file is kept open. A chip that went away says nothing, and goes on
// where it left off if it returns under another number.
class HwmonFigure {
  public:
    // `file` is the attribute ("temp1_input"), `hwmon` the class folder.
    HwmonFigure(std::filesystem::path hwmon, const HwmonChip& chip, std::string file);

    // In the kernel's unit. Absent if the chip refuses or calls the input faulty, and while its
    // device sleeps: to ask would wake it.
    std::optional<std::int64_t> read();

  private:
    void open(const HwmonChip& chip);
    void openAgain();

    std::filesystem::path hwmon_;
    HwmonChip chip_;
    std::string name_;
    std::optional<KeptFile> file_;
    std::optional<KeptFile> fault_;       // absent if the driver watches for none
    std::optional<KeptFile> powerStatus_; // absent if the device never sleeps
};

// The kernel's figures in ours, absent beyond what the thing can show at all.
std::optional<double> hwmonCelsius(std::optional<std::int64_t> thousandths);
std::optional<double> hwmonRPM(std::optional<std::int64_t> speed);
std::optional<double> hwmonWatts(std::optional<std::int64_t> microwatts);

} // namespace tavero
