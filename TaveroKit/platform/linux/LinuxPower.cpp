#include "platform/linux/LinuxPower.h"

#include "platform/linux/hardware/PowerSupply.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

namespace tavero {

LinuxPower::LinuxPower(const std::filesystem::path& root)
    : profile_(root / "sys/firmware/acpi/platform_profile"),
      supplies_(root / "sys/class/power_supply") {}

bool LinuxPower::lowPowerMode() {
    const std::optional<std::string_view> profile = profile_.read(buffer_);
    return profile && (*profile == "low-power\n" || *profile == "low-power");
}

bool LinuxPower::onExternalPower() {
    if (supplies_.changed()) findSupplies();
    if (batteries_.empty()) return true;
    if (!chargers_.empty())
        return std::any_of(chargers_.begin(), chargers_.end(),
                           [this](KeptFile& charger) { return isOnline(charger); });
    return std::none_of(batteries_.begin(), batteries_.end(),
                        [this](KeptFile& battery) { return isDischarging(battery); });
}

void LinuxPower::findSupplies() {
    chargers_.clear();
    batteries_.clear();
    for (const std::string& name : supplies_.names()) {
        const std::filesystem::path supply = supplies_.path() / name;
        const std::optional<SupplyKind> kind = supplyKind(supply);
        if (kind == SupplyKind::charger) chargers_.emplace_back(supply / "online");
        // A bay may be empty.
        if (kind == SupplyKind::battery && readAttribute(supply / "present") != "0")
            batteries_.emplace_back(supply / "status");
    }
}

// A charger tells 1, or 2 if its voltage can be set.
bool LinuxPower::isOnline(KeptFile& charger) {
    const std::optional<std::string_view> online = charger.read(buffer_);
    return online && (online->starts_with('1') || online->starts_with('2'));
}

bool LinuxPower::isDischarging(KeptFile& battery) {
    const std::optional<std::string_view> status = battery.read(buffer_);
    return status && status->starts_with("Discharging");
}

} // namespace tavero
