#include "platform/mac/hardware/MacBattery.h"

#include "platform/mac/hardware/PowerReader.h"

#include <utility>
#include <vector>

namespace tavero {

MacBattery::MacBattery(std::shared_ptr<MacRegistry> registry,
                       std::shared_ptr<MacPowerSources> sources)
    : registry_(std::move(registry)), sources_(std::move(sources)) {}

std::optional<BatterySnapshot> MacBattery::battery() {
    const std::vector<PropertyMap> drivers = registry_->services("AppleSmartBattery");
    if (drivers.empty()) return std::nullopt;
    return PowerReader::battery(drivers.front(), sources_->descriptions());
}

} // namespace tavero
