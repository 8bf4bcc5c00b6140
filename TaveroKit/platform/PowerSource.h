#pragma once

namespace tavero {

// How the system rates its own heat.
enum class ThermalState { nominal, fair, serious, critical };

// Where the machine's power comes from right now and what becomes of it: what Tavero's own pace
// goes by, and whether it warns of heat.
class PowerSource {
  public:
    virtual ~PowerSource() = default;

    // The user or the system asked everybody to save energy.
    virtual bool lowPowerMode() = 0;
    // Plugged in, or a machine without a battery.
    virtual bool onExternalPower() = 0;
    // Nominal where the system rates nothing.
    virtual ThermalState thermalState() { return ThermalState::nominal; }
};

} // namespace tavero
