#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tavero {

// A Bluetooth device that is connected to this machine or was paired with it.
struct BluetoothDevice {
    // One of its batteries: earbuds have up to three.
    struct Battery {
        std::string label;        // "Battery", "Left", "Right" or "Case"
        std::int64_t percent = 0; // charge, 0 to 100

        bool operator==(const Battery&) const = default;
    };

    std::string name;                   // without white space at its ends
    std::optional<std::string> kind;    // what it says it is: "Headphones"
    std::vector<Battery> batteries;     // empty if it reports none
    std::optional<std::string> address; // absent if not told
    std::optional<std::int64_t> rssi;   // dBm; absent if not told

    // The battery that says how long the device will last: the lowest, the first of several. A
    // charging case is a poor guide to that, so it counts only when alone. Absent without
    // batteries.
    std::optional<Battery> lowestBattery() const {
        const auto rank = [](const Battery& battery) {
            return std::pair(battery.label == "Case", battery.percent);
        };
        const auto lowest =
            std::min_element(batteries.begin(), batteries.end(),
                             [&](const Battery& a, const Battery& b) { return rank(a) < rank(b); });
        return lowest == batteries.end() ? std::nullopt : std::optional(*lowest);
    }

    bool operator==(const BluetoothDevice&) const = default;
};

// One reading of Bluetooth.
struct BluetoothSnapshot {
    bool isOn = false;                      // the controller is powered
    std::vector<BluetoothDevice> connected; // in the order they are reported
    std::vector<BluetoothDevice> paired;    // those that are not connected, likewise
    bool isDiscoverable = false;            // others can find this machine

    bool operator==(const BluetoothSnapshot&) const = default;
};

} // namespace tavero
