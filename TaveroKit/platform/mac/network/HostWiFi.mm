#include "platform/mac/Host.h"

#import <CoreWLAN/CoreWLAN.h>

namespace tavero {

namespace {

class HostWiFi : public WiFiInterface {
  public:
    std::optional<WiFiState> state() override {
        @autoreleasepool {
            CWInterface* interface = [[CWWiFiClient sharedWiFiClient] interface];
            if (interface == nil) return std::nullopt;
            WiFiState state{
                .isPowerOn = static_cast<bool>([interface powerOn]),
                .rssi = [interface rssiValue],
                .transmitRate = [interface transmitRate],
                .phyMode = [interface activePHYMode],
            };
            if (CWChannel* channel = [interface wlanChannel])
                state.channelBand = [channel channelBand];
            return state;
        }
    }
};

} // namespace

std::unique_ptr<WiFiInterface> hostWiFi() { return std::make_unique<HostWiFi>(); }

} // namespace tavero
