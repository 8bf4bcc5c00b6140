#include "platform/mac/Host.h"

#import <Foundation/Foundation.h>
#import <IOKit/ps/IOPowerSources.h>

namespace tavero {

namespace {

class HostPower : public PowerSource {
  public:
    bool lowPowerMode() override { return NSProcessInfo.processInfo.lowPowerModeEnabled; }

    bool onExternalPower() override {
        return IOPSGetTimeRemainingEstimate() == kIOPSTimeRemainingUnlimited;
    }

    ThermalState thermalState() override {
        switch (NSProcessInfo.processInfo.thermalState) {
        case NSProcessInfoThermalStateNominal:
            return ThermalState::nominal;
        case NSProcessInfoThermalStateFair:
            return ThermalState::fair;
        case NSProcessInfoThermalStateSerious:
            return ThermalState::serious;
        case NSProcessInfoThermalStateCritical:
            return ThermalState::critical;
        }
        return ThermalState::nominal; // one that a later system adds
    }
};

} // namespace

std::unique_ptr<PowerSource> hostPower() { return std::make_unique<HostPower>(); }

} // namespace tavero
