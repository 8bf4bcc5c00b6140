#include "records/NetworkSnapshot.h"

#include <algorithm>

namespace tavero {

std::string_view rawValue(ConnectionKind kind) {
    switch (kind) {
    case ConnectionKind::wifi:
        return "wifi";
    case ConnectionKind::wired:
        return "wired";
    case ConnectionKind::cellular:
        return "cellular";
    case ConnectionKind::other:
        return "other";
    case ConnectionKind::offline:
        return "offline";
    }
    return "other";
}

std::string_view title(ConnectionKind kind) {
    switch (kind) {
    case ConnectionKind::wifi:
        return "Wi-Fi";
    case ConnectionKind::wired:
        return "Wired";
    // What a person does to get a cellular path to this machine.
    case ConnectionKind::cellular:
        return "Hotspot";
    case ConnectionKind::other:
        return "Connected";
    case ConnectionKind::offline:
        return "Offline";
    }
    return "Connected";
}

std::string_view WiFiLink::signal() const {
    if (rssi >= -55) return "Strong";
    if (rssi >= -67) return "Good";
    if (rssi >= -75) return "Fair";
    return "Weak";
}

double WiFiLink::signalFraction() const {
    return std::clamp((static_cast<double>(rssi) + 90) / 60, 0.0, 1.0);
}

} // namespace tavero
