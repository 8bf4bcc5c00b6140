#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tavero {

// A device that the simulated Mac is paired with.
struct SimBluetoothDevice {
    struct Battery {
        std::string key; // as the profiler calls it: "device_batteryLevelMain"
        std::int64_t percent = 0;
    };

    std::string name;
    std::string kind;
    std::string address; // with colons
    std::vector<Battery> batteries;
    std::int64_t rawRSSI = 127; // dBm; 127 if it isn't known
    bool isConnected = false;
    bool isNearby = true; // and on, so that it can be connected

    // It comes near and connects by itself, or it goes away.
    void setNearby(bool nearby);
};

// What the simulated Mac tells of Bluetooth, in the form its calls have.
struct SimBluetooth {
    bool isOn = true;
    bool isDiscoverable = false;
    std::vector<SimBluetoothDevice> devices;
    std::string controllerName = "Anna’s MacBook";

    std::int64_t authorization = 0; // of CBManager: the user hasn't been asked
    bool userAllows = true;         // what the user says when asked
    bool hasTool = true;            // the profiler can be run

    // As the profiler prints it.
    std::string report() const;
};

} // namespace tavero
