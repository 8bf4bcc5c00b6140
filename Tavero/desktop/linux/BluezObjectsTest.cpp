#include "desktop/linux/BluezObjects.h"

#include "bluetooth/DeviceKind.h"

#include <QDBusVariant>

#include <gtest/gtest.h>

namespace tavero {
namespace {

const QDBusObjectPath headset("/org/bluez/hci0/dev_0C_11_22_33_44_55");

QVariant percentage(int value) { return QVariant::fromValue(static_cast<uchar>(value)); }
QVariant signal(int value) { return QVariant::fromValue(static_cast<short>(value)); }

BluezObjects withAdapter(const QVariantMap& properties) {
    BluezObjects objects;
    objects[QDBusObjectPath("/org/bluez/hci0")]["org.bluez.Adapter1"] = properties;
    return objects;
}

BluezObjects withDevice(const QVariantMap& properties) {
    BluezObjects objects;
    objects[headset]["org.bluez.Device1"] = properties;
    return objects;
}

TEST(BluezObjects, AConnectedHeadsetHasAllItsFigures) {
    BluezObjects objects = withDevice({{"Alias", "Anna’s Headset "},
                                       {"Address", "0C:11:22:33:44:55"},
                                       {"Icon", "audio-headset"},
                                       {"Paired", true},
                                       {"Connected", true},
                                       {"RSSI", signal(-48)}});
    objects[headset]["org.bluez.Battery1"] = {{"Percentage", percentage(85)}};
    EXPECT_EQ(bluetoothSnapshot(objects).connected,
              (std::vector<BluetoothDevice>{{.name = "Anna’s Headset",
                                             .kind = "Headset",
                                             .batteries = {{"Battery", 85}},
                                             .address = "0C:11:22:33:44:55",
                                             .rssi = -48}}));
}

TEST(BluezObjects, DevicesAreConnectedOrPairedOrOnlyPassingBy) {
    BluezObjects objects;
    const auto add = [&](const QString& path, bool paired, bool connected) {
        objects[QDBusObjectPath(path)]["org.bluez.Device1"] = {
            {"Alias", path}, {"Paired", paired}, {"Connected", connected}};
    };
    add("/d", true, false);
    add("/c", false, false);
    add("/b", false, true); // some connect without ever being paired
    add("/a", true, true);
    const BluetoothSnapshot snapshot = bluetoothSnapshot(objects);
    EXPECT_EQ(snapshot.connected, (std::vector<BluetoothDevice>{{.name = "/a"}, {.name = "/b"}}));
    EXPECT_EQ(snapshot.paired, (std::vector<BluetoothDevice>{{.name = "/d"}}));
}

TEST(BluezObjects, AnAdapterTellsWhetherItIsOnAndDiscoverable) {
    EXPECT_EQ(bluetoothSnapshot({}), BluetoothSnapshot{});
    EXPECT_EQ(bluetoothSnapshot(withAdapter({{"Powered", false}, {"Discoverable", false}})),
              BluetoothSnapshot{});
    EXPECT_EQ(bluetoothSnapshot(withAdapter({{"Powered", true}, {"Discoverable", true}})),
              (BluetoothSnapshot{.isOn = true, .isDiscoverable = true}));
}

TEST(BluezObjects, OneOfTwoAdaptersIsEnough) {
    BluezObjects objects = withAdapter({{"Powered", true}});
    objects[QDBusObjectPath("/org/bluez/hci1")]["org.bluez.Adapter1"] = {{"Powered", false}};
    EXPECT_TRUE(bluetoothSnapshot(objects).isOn);
}

TEST(BluezObjects, PropertiesOfAnotherTypeAreAbsentAndTheDeviceStays) {
    for (const QVariant& value : {QVariant(), QVariant(7), QVariant(1.5), QVariant(QStringList()),
                                  QVariant(QVariantMap()), QVariant(-1LL)}) {
        BluezObjects objects = withDevice({{"Connected", true},
                                           {"Alias", value},
                                           {"Address", value},
                                           {"Icon", value},
                                           {"RSSI", value}});
        objects[headset]["org.bluez.Battery1"] = {{"Percentage", value}};
        EXPECT_EQ(bluetoothSnapshot(objects).connected, std::vector<BluetoothDevice>(1));
        EXPECT_FALSE(bluetoothSnapshot(withAdapter({{"Powered", value}})).isOn);
        EXPECT_TRUE(bluetoothSnapshot(withDevice({{"Connected", value}, {"Paired", value}}))
                        .connected.empty());
    }
}

TEST(BluezObjects, AValueWrappedTwiceIsUnwrapped) {
    const auto snapshot = bluetoothSnapshot(
        withAdapter({{"Powered", QVariant::fromValue(QDBusVariant(QVariant(true)))}}));
    EXPECT_TRUE(snapshot.isOn);
}

TEST(BluezObjects, IconsTellTheKindThatSurfacesHaveSymbolsFor) {
    const auto deviceWith = [](const char* icon) {
        return bluetoothSnapshot(withDevice({{"Connected", true}, {"Icon", icon}})).connected.at(0);
    };
    const auto symbol = [&](const char* icon) { return DeviceKind::symbol(deviceWith(icon)); };
    EXPECT_EQ(symbol("audio-headset"), "headphones");
    EXPECT_EQ(symbol("audio-headphones"), "headphones");
    EXPECT_EQ(symbol("audio-card"), "hifispeaker");
    EXPECT_EQ(symbol("input-keyboard"), "keyboard");
    EXPECT_EQ(symbol("input-mouse"), "computermouse");
    EXPECT_EQ(symbol("input-gaming"), "gamecontroller");
    EXPECT_EQ(symbol("phone"), "iphone");
    EXPECT_EQ(deviceWith("input-tablet").kind, "Tablet");
    EXPECT_EQ(deviceWith("toaster").kind, std::nullopt);
    EXPECT_EQ(deviceWith("").kind, std::nullopt);
}

TEST(BluezObjects, ADeviceIsFoundByItsAddressAPairedOneFirst) {
    BluezObjects objects;
    const auto add = [&](const char* path, const char* address, bool paired) {
        objects[QDBusObjectPath(path)]["org.bluez.Device1"] = {{"Address", address},
                                                               {"Paired", paired}};
    };
    add("/hci0/a", "0C:11", false);
    add("/hci1/a", "0C:11", true);
    add("/hci1/b", "0C:22", false);
    EXPECT_EQ(devicePath(objects, "0C:11"), "/hci1/a");
    EXPECT_EQ(devicePath(objects, "0C:22"), "/hci1/b");
    EXPECT_EQ(devicePath(objects, "0C:33"), std::nullopt);
    EXPECT_EQ(devicePath(objects, ""), std::nullopt);
}

TEST(BluezObjects, TheMachineHasTheNameOfItsAdapter) {
    EXPECT_EQ(adapterName({}), std::nullopt);
    EXPECT_EQ(adapterName(withAdapter({{"Alias", 7}})), std::nullopt);
    EXPECT_EQ(adapterName(withAdapter({{"Alias", "workbench"}})), "workbench");
}

} // namespace
} // namespace tavero
