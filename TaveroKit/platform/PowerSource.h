#pragma once

namespace tavero {

// Where the machine's power comes from right now, as far as Tavero's own pace goes by it.
class PowerSource {
  public:
    virtual ~PowerSource() = default;

    // The user or the system asked everybody to save energy.
    virtual bool lowPowerMode() = 0;
    // Plugged in, or a machine without a battery.
    virtual bool onExternalPower() = 0;
};

} // namespace tavero
