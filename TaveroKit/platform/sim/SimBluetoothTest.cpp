#include "platform/sim/SimBluetooth.h"

#include "bluetooth/BluetoothReader.h"
#include "platform/sim/SimMachine.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <optional>

namespace tavero {
namespace {

using namespace std::chrono_literals;

TEST(SimBluetooth, ItsReportIsWhatTheReaderReads) {
    SimMachine sim;
    SimBluetooth& bluetooth = sim.state().bluetooth;
    bluetooth.isDiscoverable = true;
    bluetooth.devices = {{.name = "Anna’s \"Mouse\"",
                          .kind = "Mouse",
                          .address = "0C:11",
                          .batteries = {{"device_batteryLevelMain", 40}},
                          .rawRSSI = -50,
                          .isConnected = true},
                         {.name = "Kitchen", .kind = "Speaker", .address = "0C:22"}};
    BluetoothReader reader(sim.bluetoothReport());
    EXPECT_EQ(
        reader.read(),
        (BluetoothSnapshot{.isOn = true,
                           .connected = {{.name = "Anna’s \"Mouse\"",
                                          .kind = "Mouse",
                                          .batteries = {{"Battery", 40}},
                                          .address = "0C:11",
                                          .rssi = -50}},
                           .paired = {{.name = "Kitchen", .kind = "Speaker", .address = "0C:22"}},
                           .isDiscoverable = true}));

    bluetooth.isOn = false;
    EXPECT_FALSE(reader.read()->isOn);
    EXPECT_TRUE(reader.read()->connected.empty());
    bluetooth.hasTool = false;
    EXPECT_EQ(reader.read(), std::nullopt);
}

TEST(SimBluetooth, ADeviceConnectsOnlyWhileItIsNear) {
    SimMachine sim;
    sim.state().bluetooth.devices = {{.name = "Mouse", .address = "0C:11"}};
    SimBluetoothDevice& mouse = sim.state().bluetooth.devices.front();
    const auto calls = sim.bluetoothCalls();
    EXPECT_EQ(calls->device("0C-22"), nullptr);
    const auto device = calls->device("0C-11");
    ASSERT_TRUE(device);

    std::optional<std::int32_t> status;
    const auto completed = [&](std::int32_t value) { status = value; };
    EXPECT_EQ(device->openConnection(completed), 0);
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(device->isConnected());
    EXPECT_NE(device->openConnection(completed), 0); // it is connected already

    mouse.setNearby(false);
    EXPECT_FALSE(device->isConnected());
    EXPECT_EQ(device->openConnection(completed), 0);
    EXPECT_NE(status, 0);

    mouse.setNearby(true);
    EXPECT_TRUE(device->isConnected());
    EXPECT_EQ(device->closeConnection(), 0);
    mouse.setNearby(true); // and stays as its user left it
    EXPECT_FALSE(device->isConnected());
}

TEST(SimBluetooth, TheEarbudsRunLowAreChargedAndComeBack) {
    Date now{};
    SimMachine sim(earbudsRunningLow(), [&] { return now; });
    BluetoothReader reader(sim.bluetoothReport());
    const auto lowest = [&](std::chrono::minutes time) -> std::optional<std::int64_t> {
        now = Date(time);
        const BluetoothSnapshot snapshot = *reader.read();
        for (const BluetoothDevice& device : snapshot.connected)
            if (device.name == "Anna’s Earbuds") return device.lowestBattery()->percent;
        return std::nullopt;
    };
    EXPECT_EQ(lowest(0min), 22);
    EXPECT_EQ(lowest(10min), 17);
    EXPECT_EQ(lowest(30min), 7);
    EXPECT_EQ(lowest(40min), std::nullopt); // in their case
    EXPECT_EQ(lowest(81min), 97);
    EXPECT_EQ(lowest(24h), 57);
}

TEST(SimBluetooth, ChargesAreNeverBelowNothingOrAboveFull) {
    for (const Scenario& scenario : scenarios()) {
        Date now{};
        SimMachine sim(scenario, [&] { return now; });
        BluetoothReader reader(sim.bluetoothReport());
        for (int minute = 0; minute < 600; minute += 5, now += 5min) {
            const auto snapshot = reader.read();
            ASSERT_TRUE(snapshot);
            EXPECT_EQ(snapshot->connected.size() + snapshot->paired.size(), 3u);
            for (const BluetoothDevice& device : snapshot->connected)
                for (const BluetoothDevice::Battery& battery : device.batteries) {
                    ASSERT_GE(battery.percent, 0) << scenario.name << " after " << minute;
                    ASSERT_LE(battery.percent, 100) << scenario.name << " after " << minute;
                }
        }
    }
}

} // namespace
} // namespace tavero
