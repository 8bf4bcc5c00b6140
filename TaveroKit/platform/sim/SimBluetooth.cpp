#include "platform/sim/SimBluetooth.h"

#include <nlohmann/json.hpp>

#include <utility>

namespace tavero {

namespace {

using Json = nlohmann::ordered_json;

const char* attribute(bool on) { return on ? "attrib_on" : "attrib_off"; }

// One that isn't connected tells no battery and no signal.
Json properties(const SimBluetoothDevice& device) {
    Json properties{{"device_address", device.address}, {"device_minorType", device.kind}};
    if (!device.isConnected) return properties;
    for (const auto& [key, percent] : device.batteries)
        properties[key] = std::to_string(percent) + "%";
    if (device.rawRSSI != 127) properties["device_rssi"] = std::to_string(device.rawRSSI);
    return properties;
}

} // namespace

void SimBluetoothDevice::setNearby(bool nearby) {
    if (std::exchange(isNearby, nearby) != nearby) isConnected = nearby;
}

std::string SimBluetooth::report() const {
    Json connected = Json::array();
    Json others = Json::array();
    for (const SimBluetoothDevice& device : devices)
        (isOn && device.isConnected ? connected : others)
            .push_back({{device.name, properties(device)}});
    Json controller{{"controller_properties",
                     {{"controller_discoverable", attribute(isDiscoverable)},
                      {"controller_state", attribute(isOn)}}}};
    if (!connected.empty()) controller["device_connected"] = std::move(connected);
    if (!others.empty()) controller["device_not_connected"] = std::move(others);
    return Json{{"SPBluetoothDataType", Json::array({std::move(controller)})}}.dump(2);
}

} // namespace tavero
