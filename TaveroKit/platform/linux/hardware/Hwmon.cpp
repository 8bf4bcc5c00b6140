#include "platform/linux/hardware/Hwmon.h"

#include "platform/linux/TextCursor.h"
#include "platform/linux/hardware/SysfsNumber.h"

#include <algorithm>
#include <system_error>
#include <tuple>
#include <utility>

namespace tavero {

namespace fs = std::filesystem;

namespace {

std::optional<double> within(std::optional<std::int64_t> value, double unit, double least,
                             double most) {
    if (!value) return std::nullopt;
    const double result = static_cast<double>(*value) / unit;
    return result >= least && result <= most ? std::optional(result) : std::nullopt;
}

// ".../coretemp.0/hwmon/hwmon3" and ".../BAT0/hwmon4" sit on coretemp.0 and BAT0.
fs::path deviceOf(const fs::path& folder) {
    const fs::path parent = folder.parent_path();
    return parent.filename() == "hwmon" ? parent.parent_path() : parent;
}

// The number of an input's file: 12 for "temp12_input" if the kind is "temp".
std::optional<std::uint64_t> inputNumber(std::string_view file, std::string_view kind) {
    TextCursor cursor(file);
    if (!cursor.skip(kind)) return std::nullopt;
    const std::optional<std::uint64_t> number = cursor.number();
    return cursor.rest() == "_input" ? number : std::nullopt;
}

bool says(std::optional<KeptFile>& file, std::string_view text, std::vector<char>& buffer) {
    if (!file) return false;
    const std::optional<std::string_view> now = file->read(buffer);
    return now && now->starts_with(text);
}

} // namespace

std::vector<HwmonChip> hwmonChips(const fs::path& hwmon) {
    std::vector<HwmonChip> chips;
    std::error_code error;
    for (fs::directory_iterator entry(hwmon, error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code isGone;
        fs::path folder = fs::canonical(entry->path(), isGone);
        if (isGone) continue;
        fs::path device = deviceOf(folder);
        std::string name = readAttribute(folder / "name");
        chips.push_back({std::move(device), std::move(name), std::move(folder)});
    }
    std::sort(chips.begin(), chips.end(), [](const HwmonChip& a, const HwmonChip& b) {
        return std::tie(a.device, a.name, a.folder) < std::tie(b.device, b.name, b.folder);
    });
    return chips;
}

std::vector<std::string> hwmonInputs(const HwmonChip& chip, std::string_view kind) {
    std::vector<std::uint64_t> numbers;
    std::error_code error;
    for (fs::directory_iterator entry(chip.folder, error), end; !error && entry != end;
         entry.increment(error))
        if (const auto number = inputNumber(entry->path().filename().native(), kind))
            numbers.push_back(*number);
    std::sort(numbers.begin(), numbers.end());
    std::vector<std::string> inputs;
    inputs.reserve(numbers.size());
    for (const std::uint64_t number : numbers)
        inputs.push_back(std::string(kind) + std::to_string(number));
    return inputs;
}

std::string hwmonLabel(const HwmonChip& chip, const std::string& input) {
    return readAttribute(chip.folder / (input + "_label"));
}

HwmonFigure::HwmonFigure(fs::path hwmon, const HwmonChip& chip, std::string file)
    : hwmon_(std::move(hwmon)), name_(std::move(file)) {
    open(chip);
}

std::optional<std::int64_t> HwmonFigure::read() {
    if (!file_) openAgain();
    if (!file_) return std::nullopt;
    std::vector<char> buffer;
    if (says(powerStatus_, "suspended", buffer) || says(fault_, "1", buffer)) return std::nullopt;
    const std::optional<std::string_view> text = file_->read(buffer);
    if (text) return sysfsNumber(*text);
    // The number of a chip that went away may be another's by now.
    file_.reset();
    return std::nullopt;
}

void HwmonFigure::open(const HwmonChip& chip) {
    chip_ = chip;
    file_.emplace(chip.folder / name_);
    const fs::path fault = chip.folder / (name_.substr(0, name_.find('_')) + "_fault");
    std::error_code error;
    fault_ = fs::exists(fault, error) ? std::optional<KeptFile>(fault) : std::nullopt;
    const fs::path status = chip.device / "power/runtime_status";
    const std::string now = readAttribute(status);
    powerStatus_ =
        now.empty() || now == "unsupported" ? std::nullopt : std::optional<KeptFile>(status);
}

void HwmonFigure::openAgain() {
    for (const HwmonChip& chip : hwmonChips(hwmon_)) {
        if (!chip.isSameAs(chip_)) continue;
        open(chip);
        return;
    }
}

std::optional<double> hwmonCelsius(std::optional<std::int64_t> thousandths) {
    return within(thousandths, 1000, -100, 200);
}

// A controller that doesn't know yet gives its largest number, 65535.
std::optional<double> hwmonRPM(std::optional<std::int64_t> speed) {
    return within(speed, 1, 0, 40'000);
}

std::optional<double> hwmonWatts(std::optional<std::int64_t> microwatts) {
    return within(microwatts, 1e6, 0, 100'000);
}

} // namespace tavero
