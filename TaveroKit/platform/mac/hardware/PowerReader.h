#pragma once

#include "platform/mac/PropertyValue.h"
#include "records/PowerSnapshot.h"

#include <optional>
#include <span>

namespace tavero::PowerReader {

// A Mac's battery, from the properties of its driver ("AppleSmartBattery") and the system's list of
// power sources, which knows charge and times better than the driver. Absent if the driver says
// that no battery is installed.
std::optional<BatterySnapshot> battery(const PropertyMap& properties,
                                       std::span<const PropertyMap> powerSources);

} // namespace tavero::PowerReader
