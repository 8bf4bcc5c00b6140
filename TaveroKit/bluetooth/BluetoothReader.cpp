#include "bluetooth/BluetoothReader.h"

#include "bluetooth/DeviceName.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tavero {

namespace {

// Keeps members in the order of the file. It looks through all of an object's members for each new
// one, so the report must have an end; hundreds of devices fit.
using Json = nlohmann::ordered_json;
constexpr std::size_t longestReport = 262'144; // bytes

struct BatteryKey {
    const char* key;
    const char* label;
};
constexpr BatteryKey batteryKeys[] = {{"device_batteryLevelMain", "Battery"},
                                      {"device_batteryLevel", "Battery"},
                                      {"device_batteryLevelLeft", "Left"},
                                      {"device_batteryLevelRight", "Right"},
                                      {"device_batteryLevelCase", "Case"}};

std::optional<std::string> text(const Json& object, const char* key) {
    const auto found = object.find(key);
    if (found == object.end() || !found->is_string()) return std::nullopt;
    return found->get<std::string>();
}

std::optional<std::int64_t> integer(std::string_view text) {
    if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

// "85 %" and "85%" are the same charge.
std::optional<std::int64_t> percent(std::string text) {
    std::erase_if(text, [](char character) { return character < '0' || character > '9'; });
    return integer(text);
}

BluetoothDevice device(const std::string& key, const Json& properties) {
    BluetoothDevice device{.name = deviceName(key),
                           .kind = text(properties, "device_minorType"),
                           .address = text(properties, "device_address")};
    for (const auto& [batteryKey, label] : batteryKeys) {
        const std::optional<std::string> level = text(properties, batteryKey);
        const std::optional<std::int64_t> charge = level ? percent(*level) : std::nullopt;
        if (charge) device.batteries.push_back({.label = label, .percent = *charge});
    }
    if (const auto rssi = text(properties, "device_rssi")) device.rssi = integer(*rssi);
    return device;
}

// Each object of the list maps names to properties.
std::vector<BluetoothDevice> devices(const Json& controller, const char* key) {
    const auto list = controller.find(key);
    if (list == controller.end() || !list->is_array()) return {};
    if (!std::all_of(list->begin(), list->end(),
                     [](const Json& entry) { return entry.is_object(); }))
        return {};
    std::vector<BluetoothDevice> devices;
    for (const Json& entry : *list)
        for (const auto& [name, properties] : entry.items())
            if (properties.is_object()) devices.push_back(device(name, properties));
    return devices;
}

} // namespace

std::optional<BluetoothSnapshot> parseBluetoothReport(std::string_view json) {
    if (json.size() > longestReport) return std::nullopt;
    const Json top = Json::parse(json, nullptr, /* allow_exceptions */ false);
    if (!top.is_object()) return std::nullopt;
    const auto reports = top.find("SPBluetoothDataType");
    if (reports == top.end() || !reports->is_array() || reports->empty()) return std::nullopt;
    const Json& report = reports->front();
    if (!report.is_object()) return std::nullopt;

    const auto found = report.find("controller_properties");
    const Json properties =
        found != report.end() && found->is_object() ? *found : Json(Json::object());
    return BluetoothSnapshot{
        // A machine that says nothing of it is taken to be on.
        .isOn = text(properties, "controller_state") != "attrib_off",
        .connected = devices(report, "device_connected"),
        .paired = devices(report, "device_not_connected"),
        .isDiscoverable = text(properties, "controller_discoverable") == "attrib_on",
    };
}

std::optional<BluetoothSnapshot> BluetoothReader::read() {
    const std::optional<std::string> report = source_->report();
    return report ? parseBluetoothReport(*report) : std::nullopt;
}

} // namespace tavero
