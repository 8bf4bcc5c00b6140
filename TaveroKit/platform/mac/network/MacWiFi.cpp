#include "platform/mac/network/MacWiFi.h"

#include <cmath>
#include <string>
#include <utility>

namespace tavero {

namespace {

// CWPHYMode
constexpr std::int64_t modeNone = 0;
constexpr std::int64_t mode11g = 3; // and 1 and 2, 11a and 11b
constexpr std::int64_t mode11n = 4;
constexpr std::int64_t mode11ac = 5;
constexpr std::int64_t mode11ax = 6;

constexpr std::int64_t band6GHz = 3; // CWChannelBand

} // namespace

std::optional<std::string_view> wifiStandard(std::int64_t phyMode,
                                             std::optional<std::int64_t> channelBand) {
    if (phyMode <= modeNone) return std::nullopt;
    if (phyMode <= mode11g) return "Wi-Fi";
    if (phyMode == mode11n) return "Wi-Fi 4";
    if (phyMode == mode11ac) return "Wi-Fi 5";
    if (phyMode == mode11ax) return channelBand == band6GHz ? "Wi-Fi 6E" : "Wi-Fi 6";
    return "Wi-Fi 7"; // 11be and what comes after it
}

MacWiFi::MacWiFi(std::unique_ptr<WiFiInterface> interface) : interface_(std::move(interface)) {}

std::optional<WiFiLink> MacWiFi::link() {
    const std::optional<WiFiState> state = interface_->state();
    if (!state || !state->isPowerOn || state->rssi == 0) return std::nullopt;
    WiFiLink link{.rssi = state->rssi};
    if (std::isfinite(state->transmitRate)) link.linkSpeed = state->transmitRate;
    if (const auto standard = wifiStandard(state->phyMode, state->channelBand))
        link.standard = std::string(*standard);
    return link;
}

} // namespace tavero
