#pragma once

#include "platform/linux/KeptFile.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavero {

// What feeds the machine. The batteries of mice and headsets don't, nor does one in a box outside
// (type "UPS").
enum class SupplyKind { charger, battery };

// Of an entry of /sys/class/power_supply, by its "type" and "scope". Absent if it feeds something
// else.
std::optional<SupplyKind> supplyKind(const std::filesystem::path& supply);

enum class ChargeStatus { unknown, charging, discharging, notCharging, full };

// The properties of one supply, in the kernel's units. Absent is what its driver doesn't tell.
struct PowerSupply {
    SupplyKind kind = SupplyKind::battery;
    ChargeStatus status = ChargeStatus::unknown;
    std::optional<std::int64_t> online;        // of a charger: 1, or 2 if its voltage can be set
    std::optional<std::int64_t> present;       // 0 if the bay is empty
    std::optional<std::int64_t> capacity;      // percent
    std::optional<std::int64_t> chargeLimit;   // percent at which it stops charging
    std::optional<std::int64_t> cycleCount;    // 0 where it isn't counted
    std::optional<std::int64_t> temperature;   // tenths of a degree Celsius
    std::optional<std::int64_t> voltage;       // microvolts
    std::optional<std::int64_t> designVoltage; // microvolts, the lowest
    // Some drivers turn the sign of these with the direction, most don't.
    std::optional<std::int64_t> power;   // microwatts
    std::optional<std::int64_t> current; // microamperes
    // A driver tells either energy, in microwatt hours, or charge, in microampere hours.
    std::optional<std::int64_t> energyNow;
    std::optional<std::int64_t> energyFull;
    std::optional<std::int64_t> energyDesign;
    std::optional<std::int64_t> chargeNow;
    std::optional<std::int64_t> chargeFull;
    std::optional<std::int64_t> chargeDesign;

    bool operator==(const PowerSupply&) const = default;
};

// From the text of its "uevent", which holds all properties.
PowerSupply parsePowerSupply(std::string_view uevent);

// The same property by property, from the files in its folder: a driver that fails at one of them
// gives no "uevent" at all.
PowerSupply readAttributes(const std::filesystem::path& supply);

// The files of one supply, kept open: a steady read is two system calls. The driver may ask an
// embedded controller for every one of them.
class PowerSupplyFiles {
  public:
    PowerSupplyFiles(SupplyKind kind, const std::filesystem::path& supply);

    PowerSupply read();

    SupplyKind kind() const { return kind_; }

  private:
    SupplyKind kind_;
    std::filesystem::path folder_;
    KeptFile uevent_;
    KeptFile chargeLimit_; // often another driver's, and then missing from the uevent
    std::vector<char> buffer_;
};

} // namespace tavero
