#pragma once

#include "platform/ConnectionSource.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

namespace tavero {

// What the Mac's Wi-Fi interface says of itself: CWInterface.
struct WiFiState {
    bool isPowerOn = false;
    std::int64_t rssi = 0;                   // dBm, 0 while not associated
    double transmitRate = 0;                 // Mbit/s
    std::int64_t phyMode = 0;                // CWPHYMode
    std::optional<std::int64_t> channelBand; // CWChannelBand; absent without a channel
};

// The default Wi-Fi interface: CWWiFiClient.
class WiFiInterface {
  public:
    virtual ~WiFiInterface() = default;

    // Absent if there is no such interface. Asks a service of the system and waits for it.
    virtual std::optional<WiFiState> state() = 0;
};

// "Wi-Fi 6" for the PHY mode of 802.11ax. Absent for a mode that has no name.
std::optional<std::string_view> wifiStandard(std::int64_t phyMode,
                                             std::optional<std::int64_t> channelBand);

// The link of a Mac's Wi-Fi interface.
class MacWiFi final : public WiFiSource {
  public:
    explicit MacWiFi(std::unique_ptr<WiFiInterface> interface);

    std::optional<WiFiLink> link() override;

  private:
    std::unique_ptr<WiFiInterface> interface_;
};

} // namespace tavero
