#include "records/BluetoothSnapshot.h"

#include <gtest/gtest.h>

namespace tavero {
namespace {

using Battery = BluetoothDevice::Battery;

BluetoothDevice with(std::vector<Battery> batteries) {
    return {.name = "Earbuds", .batteries = std::move(batteries)};
}

TEST(BluetoothDevice, TheLowestBatteryIsOfTheEarbudsAndNotOfTheirCase) {
    EXPECT_EQ(with({{"Left", 50}, {"Right", 40}, {"Case", 5}}).lowestBattery(),
              (Battery{"Right", 40}));
    EXPECT_EQ(with({{"Case", 5}, {"Left", 50}}).lowestBattery(), (Battery{"Left", 50}));
}

TEST(BluetoothDevice, ACaseAloneIsTheLowestBattery) {
    EXPECT_EQ(with({{"Case", 5}}).lowestBattery(), (Battery{"Case", 5}));
    EXPECT_EQ(with({{"Case", 9}, {"Case", 5}}).lowestBattery(), (Battery{"Case", 5}));
}

TEST(BluetoothDevice, TheFirstOfEquallyLowBatteriesIsTheLowest) {
    EXPECT_EQ(with({{"Battery", 60}, {"Left", 40}, {"Right", 40}}).lowestBattery(),
              (Battery{"Left", 40}));
}

TEST(BluetoothDevice, WithoutBatteriesThereIsNoLowest) {
    EXPECT_EQ(with({}).lowestBattery(), std::nullopt);
}

} // namespace
} // namespace tavero
