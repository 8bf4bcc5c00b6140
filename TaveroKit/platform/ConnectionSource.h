#pragma once

#include "records/NetworkSnapshot.h"

#include <cstdint>
#include <optional>
#include <unordered_map>

namespace tavero {

// What each process moves over the network.
class NetworkUsageSource {
  public:
    virtual ~NetworkUsageSource() = default;

    // The bytes of each process since the previous call, by pid; empty at the first. Blocks for
    // half a second at most.
    virtual std::unordered_map<std::int32_t, NetworkBytes> read() = 0;
};

// The Wi-Fi link in use.
class WiFiSource {
  public:
    virtual ~WiFiSource() = default;

    // Absent without an interface, with the radio off and while not associated.
    virtual std::optional<WiFiLink> link() = 0;
};

// What the machine reaches the network by.
class ConnectionSource {
  public:
    virtual ~ConnectionSource() = default;

    // Kept up to date by the system's own notices. Never waits; `other` until the first one.
    virtual ConnectionKind current() = 0;
};

} // namespace tavero
