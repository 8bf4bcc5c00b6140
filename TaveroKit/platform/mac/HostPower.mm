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
};

} // namespace

std::unique_ptr<PowerSource> hostPower() { return std::make_unique<HostPower>(); }

} // namespace tavero
