#pragma once

#include "platform/linux/network/NetlinkChannel.h"
#include "records/NetworkSnapshot.h"

#include <cstdint>
#include <optional>

namespace tavero {

// The answers of the kernel's Wi-Fi configuration (nl80211), as messages without their header.

// The number by which a family of generic netlink is addressed.
std::optional<std::uint16_t> parseFamily(NetlinkBytes body);

struct WiFiInterface {
    std::uint32_t number = 0;
    std::uint32_t frequency = 0; // MHz, 0 if it isn't told

    bool operator==(const WiFiInterface&) const = default;
};

// Absent unless it is one that joins networks: an access point of our own is no link.
std::optional<WiFiInterface> parseInterface(NetlinkBytes body);

// The link to an access point. Absent without a signal in dBm. The standard is that of the rates in
// use, the better one of both directions: what little is sent on an idle link goes at an old rate.
std::optional<WiFiLink> parseStation(NetlinkBytes body, std::uint32_t frequency);

// The first interface that is associated, by a channel of generic netlink. Absent if there is none,
// or the kernel has no Wi-Fi.
std::optional<WiFiLink> readWiFiLink(NetlinkChannel& channel);

} // namespace tavero
