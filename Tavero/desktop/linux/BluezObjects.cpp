#include "desktop/linux/BluezObjects.h"

#include "bluetooth/DeviceName.h"

#include <QDBusMetaType>
#include <QDBusVariant>

#include <string_view>

namespace tavero {

namespace {

const QString adapterInterface = QStringLiteral("org.bluez.Adapter1");
const QString deviceInterface = QStringLiteral("org.bluez.Device1");
const QString batteryInterface = QStringLiteral("org.bluez.Battery1");

// What the icon of a device says that it is, in the words of DeviceKind.
struct Kind {
    std::string_view icon;
    const char* name;
};
constexpr Kind kinds[] = {
    {"audio-card", "Speaker"},
    {"audio-headphones", "Headphones"},
    {"audio-headset", "Headset"},
    {"camera-photo", "Camera"},
    {"camera-video", "Camera"},
    {"computer", "Computer"},
    {"input-gaming", "Gamepad"},
    {"input-keyboard", "Keyboard"},
    {"input-mouse", "Mouse"},
    {"input-tablet", "Tablet"},
    {"modem", "Modem"},
    {"multimedia-player", "Media player"},
    {"network-wireless", "Network"},
    {"phone", "Phone"},
    {"printer", "Printer"},
    {"scanner", "Scanner"},
    {"unknown", ""},
    {"video-display", "Display"},
};

template <typename Value>
std::optional<Value> property(const QVariantMap& properties, const char* name) {
    QVariant value = properties.value(QLatin1String(name));
    if (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    if (value.metaType() != QMetaType::fromType<Value>()) return std::nullopt;
    return value.value<Value>();
}

std::optional<std::string> text(const QVariantMap& properties, const char* name) {
    const auto value = property<QString>(properties, name);
    return value ? std::optional(value->toStdString()) : std::nullopt;
}

bool isTrue(const QVariantMap& properties, const char* name) {
    return property<bool>(properties, name).value_or(false);
}

std::optional<std::string> kind(const QVariantMap& properties) {
    const std::string icon = text(properties, "Icon").value_or("");
    for (const auto& [name, kind] : kinds)
        if (icon == name && *kind != '\0') return kind;
    return std::nullopt;
}

BluetoothDevice device(const BluezInterfaces& interfaces) {
    const QVariantMap properties = interfaces.value(deviceInterface);
    const auto alias = text(properties, "Alias"); // what the user calls it, else its own name
    BluetoothDevice device{.name = deviceName(alias.value_or("")),
                           .kind = kind(properties),
                           .address = text(properties, "Address")};
    if (const auto rssi = property<short>(properties, "RSSI")) device.rssi = *rssi;
    if (const auto charge = property<uchar>(interfaces.value(batteryInterface), "Percentage"))
        device.batteries.push_back({.label = "Battery", .percent = *charge});
    return device;
}

} // namespace

void registerBluezTypes() {
    qDBusRegisterMetaType<BluezInterfaces>();
    qDBusRegisterMetaType<BluezObjects>();
}

BluetoothSnapshot bluetoothSnapshot(const BluezObjects& objects) {
    BluetoothSnapshot snapshot;
    for (const BluezInterfaces& interfaces : objects) {
        const QVariantMap adapter = interfaces.value(adapterInterface);
        snapshot.isOn = snapshot.isOn || isTrue(adapter, "Powered");
        snapshot.isDiscoverable = snapshot.isDiscoverable || isTrue(adapter, "Discoverable");
        // One that was only seen in passing is neither connected nor paired.
        const QVariantMap properties = interfaces.value(deviceInterface);
        if (isTrue(properties, "Connected"))
            snapshot.connected.push_back(device(interfaces));
        else if (isTrue(properties, "Paired"))
            snapshot.paired.push_back(device(interfaces));
    }
    return snapshot;
}

std::optional<QString> devicePath(const BluezObjects& objects, const std::string& address) {
    std::optional<QString> found;
    for (const auto& [path, interfaces] : objects.toStdMap()) {
        const QVariantMap properties = interfaces.value(deviceInterface);
        if (text(properties, "Address") != address) continue;
        if (isTrue(properties, "Paired")) return path.path();
        if (!found) found = path.path();
    }
    return found;
}

std::optional<std::string> adapterName(const BluezObjects& objects) {
    for (const BluezInterfaces& interfaces : objects)
        if (auto name = text(interfaces.value(adapterInterface), "Alias")) return name;
    return std::nullopt;
}

} // namespace tavero
