#include "platform/linux/hardware/LinuxBatteryPacks.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <vector>

namespace tavero {

namespace {

// Beyond these a figure is a controller's mistake and not this machine's.
constexpr double mostWatts = 1000;
constexpr double mostWattHours = 10'000;
constexpr double mostMinutes = 10 * 24 * 60;
constexpr std::int64_t mostCycles = 100'000;
constexpr double coldest = -40;
constexpr double warmest = 120;

// A smaller power says nothing of when it will end.
constexpr double leastTellingWatts = 0.5;

constexpr double perMillion = 1e-6;

// A pack in watts and watt hours. Where a driver tells charge and no voltage, the three amounts are
// ampere hours, good for comparing with each other.
struct Pack {
    std::optional<double> now;
    std::optional<double> full;
    std::optional<double> design;
    bool isInWattHours = false;
    std::optional<double> percent;
    std::optional<double> drawn; // watts out of it, negative while they go in
    double limit = 1;            // fraction of `full` up to which it is charged
};

std::optional<double> amount(std::optional<std::int64_t> value, double factor) {
    if (!value || *value < 0) return std::nullopt;
    const double result = static_cast<double>(*value) * factor;
    return result <= mostWattHours ? std::optional(result) : std::nullopt;
}

std::optional<double> volts(const PowerSupply& supply) {
    const auto voltage = supply.voltage.value_or(0) > 0 ? supply.voltage : supply.designVoltage;
    if (!voltage || *voltage <= 0) return std::nullopt;
    return static_cast<double>(*voltage) * perMillion;
}

std::optional<double> fraction(std::optional<double> part, std::optional<double> whole) {
    if (!part || !whole || !(*whole > 0)) return std::nullopt;
    return std::min(*part / *whole, 1.0);
}

std::optional<double> watts(const PowerSupply& supply) {
    const std::optional<double> voltage = volts(supply);
    std::optional<double> result;
    if (supply.power)
        result = static_cast<double>(*supply.power) * perMillion;
    else if (supply.current && voltage)
        result = static_cast<double>(*supply.current) * perMillion * *voltage;
    if (result && std::abs(*result) <= mostWatts) return result;
    const bool isIdle =
        supply.status == ChargeStatus::full || supply.status == ChargeStatus::notCharging;
    return isIdle && !result ? std::optional(0.0) : std::nullopt;
}

// The status tells the direction; where it is silent, a sign does, or that there is no charger.
std::optional<double> drawnWatts(const PowerSupply& supply, bool onExternalPower) {
    const std::optional<double> power = watts(supply);
    if (!power || *power == 0) return power;
    const bool isOutward =
        supply.status == ChargeStatus::discharging ||
        (supply.status != ChargeStatus::charging && (*power < 0 || !onExternalPower));
    return isOutward ? std::abs(*power) : -std::abs(*power);
}

std::optional<double> percent(const PowerSupply& supply, const Pack& pack) {
    if (supply.capacity && *supply.capacity >= 0 && *supply.capacity <= 100)
        return static_cast<double>(*supply.capacity);
    if (const auto charge = fraction(pack.now, pack.full)) return *charge * 100;
    return std::nullopt;
}

Pack makePack(const PowerSupply& supply, bool onExternalPower) {
    Pack pack;
    const bool tellsEnergy = supply.energyNow || supply.energyFull;
    const std::optional<double> voltage = volts(supply);
    pack.isInWattHours = tellsEnergy || voltage;
    const double factor = perMillion * (tellsEnergy ? 1 : voltage.value_or(1));
    pack.now = amount(tellsEnergy ? supply.energyNow : supply.chargeNow, factor);
    pack.full = amount(tellsEnergy ? supply.energyFull : supply.chargeFull, factor);
    pack.design = amount(tellsEnergy ? supply.energyDesign : supply.chargeDesign, factor);
    pack.percent = percent(supply, pack);
    pack.drawn = drawnWatts(supply, onExternalPower);
    if (supply.chargeLimit && *supply.chargeLimit > 0 && *supply.chargeLimit < 100)
        pack.limit = static_cast<double>(*supply.chargeLimit) / 100;
    return pack;
}

// Absent if any pack lacks it.
template <typename Part>
std::optional<double> total(const std::vector<Pack>& packs, Part part) {
    double sum = 0;
    for (const Pack& pack : packs) {
        const std::optional<double> value = part(pack);
        if (!value) return std::nullopt;
        sum += *value;
    }
    return sum;
}

std::optional<double> wattHours(const Pack& pack, std::optional<double> amount) {
    return pack.isInWattHours ? amount : std::nullopt;
}

// By what the packs hold, else by their mean. A single pack's own figure is the best.
std::optional<std::int64_t> percent(const std::vector<Pack>& packs) {
    const auto now = total(packs, [](const Pack& pack) { return wattHours(pack, pack.now); });
    const auto full = total(packs, [](const Pack& pack) { return wattHours(pack, pack.full); });
    const std::optional<double> charge = fraction(now, full);
    if (packs.size() > 1 && charge) return std::llround(*charge * 100);
    double sum = 0;
    int count = 0;
    for (const Pack& pack : packs) {
        if (!pack.percent) continue;
        sum += *pack.percent;
        ++count;
    }
    if (count == 0) return std::nullopt;
    return std::llround(sum / count);
}

std::optional<double> health(const std::vector<Pack>& packs) {
    double full = 0;
    double design = 0;
    for (const Pack& pack : packs) {
        if (!pack.full || !(*pack.full > 0) || !pack.design) continue;
        full += *pack.full;
        design += *pack.design;
    }
    return fraction(full, design);
}

std::optional<std::int64_t> minutes(std::optional<double> wattHours, std::optional<double> watts) {
    if (!wattHours || !watts || *watts < leastTellingWatts) return std::nullopt;
    const double result = *wattHours / *watts * 60;
    if (result > mostMinutes) return std::nullopt;
    return static_cast<std::int64_t>(result);
}

std::optional<std::int64_t> minutesToFull(const std::vector<Pack>& packs, double watts) {
    const auto missing = total(packs, [](const Pack& pack) -> std::optional<double> {
        if (!pack.isInWattHours || !pack.now || !pack.full) return std::nullopt;
        return std::max(*pack.full * pack.limit - *pack.now, 0.0);
    });
    return missing && *missing > 0 ? minutes(missing, watts) : std::nullopt;
}

std::optional<double> celsius(const PowerSupply& supply) {
    if (!supply.temperature) return std::nullopt;
    const double result = static_cast<double>(*supply.temperature) / 10;
    return result > coldest && result < warmest ? std::optional(result) : std::nullopt;
}

bool isPack(const PowerSupply& supply) {
    return supply.kind == SupplyKind::battery && supply.present != 0;
}

// What needs no sum.
void addPack(BatterySnapshot& battery, const PowerSupply& supply) {
    battery.isCharging |= supply.status == ChargeStatus::charging;
    battery.temperatureCelsius = std::max(battery.temperatureCelsius, celsius(supply));
    if (supply.cycleCount && *supply.cycleCount > 0 && *supply.cycleCount <= mostCycles)
        battery.cycleCount = std::max(battery.cycleCount, supply.cycleCount);
}

} // namespace

bool isOnExternalPower(std::span<const PowerSupply> supplies) {
    bool hasPack = false;
    bool hasCharger = false;
    bool isOnline = false;
    bool isDischarging = false;
    for (const PowerSupply& supply : supplies) {
        const bool isCharger = supply.kind == SupplyKind::charger;
        hasPack |= isPack(supply);
        hasCharger |= isCharger;
        isOnline |= isCharger && supply.online.value_or(0) > 0;
        isDischarging |= isPack(supply) && supply.status == ChargeStatus::discharging;
    }
    if (!hasPack) return true;
    return hasCharger ? isOnline : !isDischarging;
}

std::optional<BatterySnapshot> combinePacks(std::span<const PowerSupply> supplies) {
    BatterySnapshot battery;
    battery.onExternalPower = isOnExternalPower(supplies);
    std::vector<Pack> packs;
    for (const PowerSupply& supply : supplies) {
        if (!isPack(supply)) continue;
        packs.push_back(makePack(supply, battery.onExternalPower));
        addPack(battery, supply);
    }
    const std::optional<std::int64_t> charge = percent(packs);
    if (!charge) return std::nullopt;
    battery.percent = *charge;
    battery.health = health(packs);
    battery.watts = total(packs, [](const Pack& pack) { return pack.drawn; });
    battery.remainingWattHours =
        total(packs, [](const Pack& pack) { return wattHours(pack, pack.now); });
    if (!battery.onExternalPower)
        battery.minutesToEmpty = minutes(battery.remainingWattHours, battery.watts);
    if (battery.isCharging && battery.watts)
        battery.minutesToFull = minutesToFull(packs, -*battery.watts);
    // On battery, a power that isn't drawn can only be an old reading.
    battery.currentIsStale = !battery.onExternalPower && !(battery.watts && *battery.watts > 0);
    return battery;
}

} // namespace tavero
