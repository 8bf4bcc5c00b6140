#include "platform/linux/hardware/LinuxBattery.h"

#include "platform/linux/FileDescriptor.h"
#include "platform/linux/TemporaryTree.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <chrono>
#include <string>
#include <thread>

namespace tavero {
namespace {

const std::filesystem::path machines = TAVERO_HARDWARE_MACHINES;
constexpr std::chrono::minutes plenty{5};

const std::string pack = "sys/class/power_supply/BAT0/";

std::string charge(int percent) {
    return "POWER_SUPPLY_STATUS=Discharging\nPOWER_SUPPLY_CAPACITY=" + std::to_string(percent) +
           "\n";
}

TEST(LinuxBattery, ALaptopThatTellsEnergy) {
    const auto battery = LinuxBattery(machines / "composed-energy-laptop", plenty).battery();
    ASSERT_TRUE(battery);
    EXPECT_EQ(battery->percent, 62);
    EXPECT_FALSE(battery->onExternalPower);
    EXPECT_FALSE(battery->isCharging);
    EXPECT_DOUBLE_EQ(*battery->watts, 11.5);
    EXPECT_DOUBLE_EQ(*battery->remainingWattHours, 31.1);
    EXPECT_EQ(battery->minutesToEmpty, 162);
    EXPECT_DOUBLE_EQ(*battery->health, 0.88);
    EXPECT_EQ(battery->cycleCount, 321);
}

TEST(LinuxBattery, ATabletThatTellsCharge) {
    const auto battery = LinuxBattery(machines / "composed-charge-tablet", plenty).battery();
    ASSERT_TRUE(battery);
    EXPECT_EQ(battery->percent, 70);
    EXPECT_TRUE(battery->onExternalPower);
    EXPECT_TRUE(battery->isCharging);
    EXPECT_NEAR(*battery->watts, -11.7292, 1e-9);
    EXPECT_EQ(battery->minutesToFull, 57);
    EXPECT_NEAR(*battery->health, 4.52 / 4.98, 1e-12);
    EXPECT_DOUBLE_EQ(*battery->temperatureCelsius, 31.2);
    EXPECT_EQ(battery->cycleCount, 187);
}

TEST(LinuxBattery, TwoPacksThatChargeToALimit) {
    const auto battery = LinuxBattery(machines / "composed-two-pack-laptop", plenty).battery();
    ASSERT_TRUE(battery);
    EXPECT_EQ(battery->percent, 65);
    EXPECT_TRUE(battery->isCharging);
    EXPECT_NEAR(*battery->watts, -23.9, 1e-9);
    EXPECT_EQ(battery->minutesToFull, 30);
    EXPECT_NEAR(*battery->health, 82 / 94.76, 1e-12);
    EXPECT_EQ(battery->cycleCount, 412);
}

TEST(LinuxBattery, AMouseAndABoxBesideTheDesktopAreNone) {
    EXPECT_EQ(LinuxBattery(machines / "composed-k10temp-desktop", plenty).battery(), std::nullopt);
}

TEST(LinuxBattery, APackThatIsTakenOutAndPutBackIsNoticed) {
    const TemporaryTree tree;
    LinuxBattery source(tree.root(), plenty);
    EXPECT_EQ(source.battery(), std::nullopt);
    tree.write("devices/BAT0/type", "Battery\n");
    tree.write("devices/BAT0/uevent", charge(40));
    tree.link("sys/class/power_supply/BAT0", "../../../devices/BAT0");
    EXPECT_EQ(source.battery()->percent, 40);
    tree.remove("sys/class/power_supply/BAT0");
    EXPECT_EQ(source.battery(), std::nullopt);
    tree.link("sys/class/power_supply/BAT0", "../../../devices/BAT0");
    EXPECT_EQ(source.battery()->percent, 40);
}

TEST(LinuxBattery, APackWhoseFilesVanishMidwayIsAbsent) {
    const TemporaryTree tree{{pack + "type", "Battery\n"}, {pack + "uevent", charge(40)}};
    LinuxBattery source(tree.root(), plenty);
    EXPECT_TRUE(source.battery());
    tree.write(pack + "uevent", "");
    EXPECT_EQ(source.battery(), std::nullopt);
    tree.write(pack + "uevent", charge(39));
    EXPECT_EQ(source.battery()->percent, 39);
}

TEST(LinuxBattery, ADriverThatHangsHoldsUpNobodyAndGivesTheLastReading) {
    const TemporaryTree tree{{pack + "type", "Battery\n"},
                             {pack + "status", "Discharging\n"},
                             {pack + "capacity", "40\n"}};
    LinuxBattery source(tree.root(), std::chrono::seconds(1));
    // Under a sanitizer on a busy machine the first reading may itself take its time.
    while (!source.battery()) std::this_thread::yield();
    // Opening this one waits for somebody who writes to it.
    const std::string slow = (tree.root() / (pack + "uevent")).string();
    ASSERT_EQ(::mkfifo(slow.c_str(), 0600), 0);
    tree.write(pack + "capacity", "30\n");
    EXPECT_EQ(source.battery()->percent, 40);
    EXPECT_EQ(source.battery()->percent, 40);
    // The driver gives up at last, and the single files tell.
    ASSERT_TRUE(FileDescriptor(slow.c_str(), O_WRONLY).isOpen());
    tree.remove(pack + "uevent");
    while (source.battery()->percent != 30) std::this_thread::yield();
}

TEST(LinuxBattery, OnThisMachine) {
    LinuxBattery source("/", plenty);
    const auto battery = source.battery();
    if (!battery) return;
    EXPECT_GE(battery->percent, 0);
    EXPECT_LE(battery->percent, 100);
    if (battery->health) {
        EXPECT_GT(*battery->health, 0);
        EXPECT_LE(*battery->health, 1);
    }
    EXPECT_FALSE(battery->onExternalPower && battery->minutesToEmpty);
}

} // namespace
} // namespace tavero
