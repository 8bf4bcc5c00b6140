#include "monitor/SavingEnergy.h"

namespace tavero {

bool savingEnergy(PowerSource* power, const Settings& settings) {
    if (!power || !settings.get(keys::slowOnBattery)) return false;
    return power->lowPowerMode() || !power->onExternalPower();
}

} // namespace tavero
