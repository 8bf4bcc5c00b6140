#include "bluetooth/DeviceKind.h"

#include "apps/Text.h"

namespace tavero::DeviceKind {

namespace {

struct Row {
    bool isName; // or else the kind
    std::string_view part;
    std::string_view symbol;
};

// The first hit wins.
constexpr Row rows[] = {
    {false, "headphone", "headphones"},
    {false, "headset", "headphones"},
    {true, "airpods", "airpods"},
    {false, "keyboard", "keyboard"},
    {false, "mouse", "computermouse"},
    {false, "trackpad", "rectangle.and.hand.point.up.left"},
    {false, "speaker", "hifispeaker"},
    {false, "gamepad", "gamecontroller"},
    {false, "game", "gamecontroller"},
    {false, "joystick", "gamecontroller"},
    {true, "ipad", "ipad"},
    {true, "iphone", "iphone"},
    {false, "phone", "iphone"},
};

bool contains(const std::string& text, std::string_view part) {
    return text.find(part) != std::string::npos;
}

} // namespace

std::optional<std::string> label(const BluetoothDevice& device) {
    if (device.kind && !device.kind->empty()) return device.kind;
    const std::string name = lowerCase(device.name);
    if (contains(name, "ipad")) return "Tablet";
    if (contains(name, "iphone")) return "Phone";
    return std::nullopt;
}

std::string_view symbol(const BluetoothDevice& device) {
    const std::string kind = lowerCase(device.kind.value_or(""));
    const std::string name = lowerCase(device.name);
    for (const auto& [isName, part, symbol] : rows)
        if (contains(isName ? name : kind, part)) return symbol;
    return "dot.radiowaves.left.and.right";
}

} // namespace tavero::DeviceKind
