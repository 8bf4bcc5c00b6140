#include "platform/linux/hardware/PowerSupply.h"

#include "platform/linux/hardware/SysfsNumber.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tavero {

namespace {

struct Property {
    std::string_view name; // of the file; the uevent writes it in capitals
    std::optional<std::int64_t> PowerSupply::*value;
};

constexpr std::array properties{
    Property{"online", &PowerSupply::online},
    Property{"present", &PowerSupply::present},
    Property{"capacity", &PowerSupply::capacity},
    Property{"charge_control_end_threshold", &PowerSupply::chargeLimit},
    Property{"cycle_count", &PowerSupply::cycleCount},
    Property{"temp", &PowerSupply::temperature},
    Property{"voltage_now", &PowerSupply::voltage},
    Property{"voltage_min_design", &PowerSupply::designVoltage},
    Property{"power_now", &PowerSupply::power},
    Property{"current_now", &PowerSupply::current},
    Property{"energy_now", &PowerSupply::energyNow},
    Property{"energy_full", &PowerSupply::energyFull},
    Property{"energy_full_design", &PowerSupply::energyDesign},
    Property{"charge_now", &PowerSupply::chargeNow},
    Property{"charge_full", &PowerSupply::chargeFull},
    Property{"charge_full_design", &PowerSupply::chargeDesign},
};

bool isInCapitals(std::string_view capitals, std::string_view name) {
    return std::equal(capitals.begin(), capitals.end(), name.begin(), name.end(),
                      [](char a, char b) {
                          return a == (b >= 'a' && b <= 'z' ? static_cast<char>(b - 'a' + 'A') : b);
                      });
}

ChargeStatus parseStatus(std::string_view text) {
    if (text == "Charging") return ChargeStatus::charging;
    if (text == "Discharging") return ChargeStatus::discharging;
    if (text == "Not charging") return ChargeStatus::notCharging;
    if (text == "Full") return ChargeStatus::full;
    return ChargeStatus::unknown;
}

} // namespace

std::optional<SupplyKind> supplyKind(const std::filesystem::path& supply) {
    if (readAttribute(supply / "scope") == "Device") return std::nullopt;
    const std::string type = readAttribute(supply / "type");
    if (type == "Battery") return SupplyKind::battery;
    if (type == "Mains" || type == "Wireless" || type.starts_with("USB"))
        return SupplyKind::charger;
    return std::nullopt;
}

PowerSupply parsePowerSupply(std::string_view uevent) {
    PowerSupply supply;
    for (TextCursor text(uevent); !text.atEnd(); text.nextLine()) {
        if (!text.skip("POWER_SUPPLY_")) continue;
        const std::string_view key = text.upTo('=');
        const std::string_view value = text.rest().substr(0, text.rest().find('\n'));
        if (key == "STATUS") supply.status = parseStatus(value);
        for (const Property& property : properties)
            if (isInCapitals(key, property.name)) supply.*property.value = sysfsNumber(value);
    }
    return supply;
}

PowerSupply readAttributes(const std::filesystem::path& supply) {
    PowerSupply result;
    result.status = parseStatus(readAttribute(supply / "status"));
    for (const Property& property : properties)
        result.*property.value = sysfsNumber(readAttribute(supply / property.name));
    return result;
}

PowerSupplyFiles::PowerSupplyFiles(SupplyKind kind, const std::filesystem::path& supply)
    : kind_(kind), folder_(supply), uevent_(supply / "uevent"),
      chargeLimit_(supply / "charge_control_end_threshold") {}

PowerSupply PowerSupplyFiles::read() {
    const std::optional<std::string_view> text = uevent_.read(buffer_);
    PowerSupply supply = text && !text->empty() ? parsePowerSupply(*text) : readAttributes(folder_);
    supply.kind = kind_;
    if (!supply.chargeLimit && kind_ == SupplyKind::battery)
        if (const auto limit = chargeLimit_.read(buffer_)) supply.chargeLimit = sysfsNumber(*limit);
    return supply;
}

} // namespace tavero
