#include "platform/mac/hardware/PowerReader.h"

#include <algorithm>
#include <string_view>

namespace tavero::PowerReader {

namespace {

constexpr std::int64_t unknownMinutes = 65535; // the gauge has no estimate
// A smaller current, in milliamperes, is the gauge's noise; dividing by it would promise days.
constexpr std::int64_t leastDischarge = -50;
constexpr double million = 1'000'000;

// The driver's properties, and what it keeps in a dictionary of their own, "BatteryData".
class Figures {
  public:
    explicit Figures(const PropertyMap& properties)
        : properties_(properties), data_(mapValue(properties, "BatteryData")) {}

    std::optional<std::int64_t> operator()(std::string_view key) const {
        const std::optional<std::int64_t> figure = intValue(properties_, key);
        return figure || data_ == nullptr ? figure : intValue(*data_, key);
    }

    std::optional<std::int64_t> operator()(std::string_view key, std::string_view other) const {
        const std::optional<std::int64_t> figure = (*this)(key);
        return figure ? figure : (*this)(other);
    }

  private:
    const PropertyMap& properties_;
    const PropertyMap* data_;
};

double product(std::int64_t a, std::int64_t b) {
    return static_cast<double>(a) * static_cast<double>(b);
}

// Absent if that many minutes are no whole number of 64 bits.
std::optional<std::int64_t> wholeMinutes(double minutes) {
    constexpr double twoTo63 = 9223372036854775808.0;
    if (!(minutes >= -twoTo63 && minutes < twoTo63)) return std::nullopt;
    return static_cast<std::int64_t>(minutes);
}

std::optional<std::int64_t> gaugedMinutes(std::optional<std::int64_t> minutes) {
    return minutes && *minutes >= 1 && *minutes < unknownMinutes ? minutes : std::nullopt;
}

std::optional<double> health(const Figures& figure) {
    const std::optional<std::int64_t> design = figure("DesignCapacity");
    const std::optional<std::int64_t> full = figure("AppleRawMaxCapacity", "FullChargeCapacity");
    if (!design || !full || *design < 1) return std::nullopt;
    return std::min(static_cast<double>(*full) / static_cast<double>(*design), 1.0);
}

// Capacity in milliampere hours, current in milliamperes.
std::optional<std::int64_t> minutesToEmpty(const Figures& figure,
                                           std::optional<std::int64_t> capacity,
                                           std::optional<std::int64_t> current) {
    if (const auto minutes = gaugedMinutes(figure("AvgTimeToEmpty"))) return minutes;
    if (!capacity || !current || *current >= leastDischarge) return std::nullopt;
    return wholeMinutes(static_cast<double>(*capacity) / -static_cast<double>(*current) * 60);
}

// A later internal battery overrides an earlier one.
void takePowerSources(std::span<const PropertyMap> sources, BatterySnapshot& battery) {
    for (const PropertyMap& source : sources) {
        const std::string* type = textValue(source, "Type");
        if (type == nullptr || *type != "InternalBattery") continue;
        battery.percent = intValue(source, "Current Capacity").value_or(battery.percent);
        // Below 1 while the system still estimates, and in the direction that does not apply.
        const std::optional<std::int64_t> toEmpty = intValue(source, "Time to Empty");
        if (toEmpty > 0) battery.minutesToEmpty = toEmpty;
        const std::optional<std::int64_t> toFull = intValue(source, "Time to Full Charge");
        if (toFull > 0) battery.minutesToFull = toFull;
    }
}

} // namespace

std::optional<BatterySnapshot> battery(const PropertyMap& properties,
                                       std::span<const PropertyMap> powerSources) {
    if (boolValue(properties, "BatteryInstalled") == false) return std::nullopt;
    const Figures figure(properties);
    const std::optional<std::int64_t> capacity =
        figure("AppleRawCurrentCapacity", "RemainingCapacity");                        // mAh
    const std::optional<std::int64_t> voltage = figure("Voltage");                     // mV
    const std::optional<std::int64_t> current = figure("InstantAmperage", "Amperage"); // mA

    BatterySnapshot battery{
        .percent = intValue(properties, "CurrentCapacity").value_or(0),
        .isCharging = boolValue(properties, "IsCharging").value_or(false),
        .onExternalPower = boolValue(properties, "ExternalConnected").value_or(false),
        .cycleCount = figure("CycleCount"),
        .health = health(figure),
    };
    takePowerSources(powerSources, battery);
    if (!battery.minutesToEmpty && !battery.onExternalPower)
        battery.minutesToEmpty = minutesToEmpty(figure, capacity, current);
    if (!battery.minutesToFull && battery.isCharging)
        battery.minutesToFull = gaugedMinutes(figure("AvgTimeToFull"));
    if (const std::optional<std::int64_t> temperature = figure("Temperature"))
        battery.temperatureCelsius = static_cast<double>(*temperature) / 100.0;
    // The gauge counts a current out of the battery as negative; power drawn from it is positive.
    // Subtracted, since a turned sign would make a -0 of no current.
    if (voltage && current) battery.watts = 0.0 - product(*voltage, *current) / million;
    if (capacity && voltage) battery.remainingWattHours = product(*capacity, *voltage) / million;
    // On battery some current has to flow out; one that doesn't is an old reading.
    battery.currentIsStale = !battery.onExternalPower && (!current || *current >= 0);
    return battery;
}

} // namespace tavero::PowerReader
