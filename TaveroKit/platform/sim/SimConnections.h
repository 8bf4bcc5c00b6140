#pragma once

#include "network/PathMonitor.h"
#include "platform/mac/PropertyValue.h"
#include "platform/mac/network/MacWiFi.h"
#include "records/NetworkSnapshot.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace tavero {

// What the simulated Mac tells of its network beside the interfaces' counters, in the form its
// calls have.
struct SimConnections {
    // The statistics service's dictionary of each open connection, by a number of its own.
    std::map<std::uint64_t, PropertyMap> open;
    std::optional<WiFiState> wifi; // absent without an interface
    PathState path;

    // Opens the connection unless it is open.
    void set(std::uint64_t number, std::int32_t pid, const std::string& name,
             const NetworkBytes& bytes);
    // A Wi-Fi 6E link on the 6 GHz band, as fast as the signal (dBm) allows. 0 is no link.
    void setSignal(std::int64_t rssi);
};

} // namespace tavero
