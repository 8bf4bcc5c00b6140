#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tavero {

// Bytes through the physical interfaces, cumulative.
struct NetworkSnapshot {
    std::uint64_t bytesIn = 0;
    std::uint64_t bytesOut = 0;

    bool operator==(const NetworkSnapshot&) const = default;
};

// Bytes that went over the network.
struct NetworkBytes {
    std::uint64_t received = 0;
    std::uint64_t sent = 0;

    bool operator==(const NetworkBytes&) const = default;
};

// What the machine reaches the network by.
enum class ConnectionKind { wifi, wired, cellular, other, offline };

std::string_view rawValue(ConnectionKind kind); // the stable name: "wifi"
std::string_view title(ConnectionKind kind);    // what a person reads: "Wi-Fi"

// The Wi-Fi link in use.
struct WiFiLink {
    std::int64_t rssi = 0;               // dBm
    double linkSpeed = 0;                // Mbit/s
    std::optional<std::string> standard; // "Wi-Fi 6"; absent if unknown

    std::string_view signal() const; // "Strong", "Good", "Fair", "Weak"
    double signalFraction() const;   // 0 at -90 dBm, 1 at -30 dBm

    bool operator==(const WiFiLink&) const = default;
};

} // namespace tavero
