#include "platform/linux/hardware/LinuxBattery.h"

#include "platform/linux/hardware/LinuxBatteryPacks.h"
#include "platform/linux/hardware/PowerSupply.h"

#include <algorithm>
#include <string>
#include <vector>

namespace tavero {

// Belongs to the call that goes on, whatever becomes of the source.
struct LinuxBattery::Reading {
    std::vector<PowerSupplyFiles> files;
    std::vector<PowerSupply> supplies;
    std::optional<BatterySnapshot> battery;

    void read() {
        supplies.clear();
        for (PowerSupplyFiles& supply : files) supplies.push_back(supply.read());
        battery = combinePacks(supplies);
    }
};

LinuxBattery::LinuxBattery(const std::filesystem::path& root, std::chrono::milliseconds limit)
    : supplies_(root / "sys/class/power_supply"), calls_(limit) {}

std::optional<BatterySnapshot> LinuxBattery::battery() {
    if (supplies_.changed()) findSupplies();
    if (!reading_) return std::nullopt;
    if (calls_.run([reading = reading_] { reading->read(); })) last_ = reading_->battery;
    return last_;
}

void LinuxBattery::findSupplies() {
    auto reading = std::make_shared<Reading>();
    for (const std::string& name : supplies_.names()) {
        const std::filesystem::path supply = supplies_.path() / name;
        if (const auto kind = supplyKind(supply)) reading->files.emplace_back(*kind, supply);
    }
    const bool hasPack = std::any_of(
        reading->files.begin(), reading->files.end(),
        [](const PowerSupplyFiles& files) { return files.kind() == SupplyKind::battery; });
    reading_ = hasPack ? std::move(reading) : nullptr;
    if (!reading_) last_.reset();
}

} // namespace tavero
