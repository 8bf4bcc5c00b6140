#pragma once

#include "platform/PowerSource.h"
#include "settings/Settings.h"

namespace tavero {

// Whether Tavero should take it slower: on battery or in a low power mode, unless the user turned
// slowing down off. `power` is null where a machine cannot tell.
bool savingEnergy(PowerSource* power, const Settings& settings);

} // namespace tavero
