#pragma once

#include "platform/linux/hardware/PowerSupply.h"
#include "records/PowerSnapshot.h"

#include <optional>
#include <span>

namespace tavero {

// True if a charger is online or there is no battery. A machine whose chargers can't be seen is on
// battery power while a battery says that it discharges.
bool isOnExternalPower(std::span<const PowerSupply> supplies);

// One battery out of all packs in the machine. Absent if there is none, or none tells its charge.
//
// Charge, energy and power add up; a sum that lacks a pack is absent, not too small. The time left
// goes by the power of the moment, to full only as far as the packs' charge limits. The count of
// cycles is that of the pack with most, the temperature that of the warmest.
std::optional<BatterySnapshot> combinePacks(std::span<const PowerSupply> supplies);

} // namespace tavero
