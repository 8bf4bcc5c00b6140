#include "platform/linux/LinuxPower.h"

#include "platform/linux/TemporaryTree.h"

#include <gtest/gtest.h>

#include <string>

namespace tavero {
namespace {

const std::string supplies = "sys/class/power_supply/";

bool onExternalPower(std::initializer_list<TemporaryTree::File> files) {
    TemporaryTree tree;
    for (const auto& [path, text] : files) tree.write(supplies + path, text);
    return LinuxPower(tree.root()).onExternalPower();
}

TEST(LinuxPower, ALaptopFollowsItsCharger) {
    const TemporaryTree tree{{supplies + "AC/type", "Mains\n"},
                             {supplies + "AC/online", "1\n"},
                             {supplies + "BAT0/type", "Battery\n"},
                             {supplies + "BAT0/status", "Full\n"}};
    LinuxPower power(tree.root());
    EXPECT_TRUE(power.onExternalPower());
    tree.write(supplies + "AC/online", "0\n");
    EXPECT_FALSE(power.onExternalPower());
    tree.write(supplies + "AC/online", "2\n");
    EXPECT_TRUE(power.onExternalPower());
    tree.write(supplies + "AC/online", "");
    EXPECT_FALSE(power.onExternalPower());
}

TEST(LinuxPower, AnyOfSeveralChargersWillDo) {
    EXPECT_TRUE(onExternalPower({{"AC/type", "Mains\n"},
                                 {"AC/online", "0\n"},
                                 {"ucsi/type", "USB_PD\n"},
                                 {"ucsi/online", "1\n"},
                                 {"BAT0/type", "Battery\n"}}));
}

TEST(LinuxPower, AMachineWithoutABatteryIsPluggedIn) {
    EXPECT_TRUE(onExternalPower({}));
    EXPECT_TRUE(onExternalPower({{"AC/type", "Mains\n"}, {"AC/online", "0\n"}}));
    EXPECT_TRUE(onExternalPower(
        {{"BAT0/type", "Battery\n"}, {"BAT0/present", "0\n"}, {"BAT0/status", "Discharging\n"}}));
}

TEST(LinuxPower, TheBatteryOfAMouseSaysNothing) {
    EXPECT_TRUE(onExternalPower({{"mouse/type", "Battery\n"},
                                 {"mouse/scope", "Device\n"},
                                 {"mouse/status", "Discharging\n"}}));
    EXPECT_FALSE(onExternalPower({{"pad/type", "USB\n"},
                                  {"pad/scope", "Device\n"},
                                  {"pad/online", "1\n"},
                                  {"AC/type", "Mains\n"},
                                  {"AC/online", "0\n"},
                                  {"BAT0/type", "Battery\n"}}));
}

TEST(LinuxPower, WithoutAChargerInSightTheBatteryTells) {
    EXPECT_FALSE(onExternalPower({{"BAT0/type", "Battery\n"}, {"BAT0/status", "Discharging\n"}}));
    EXPECT_TRUE(onExternalPower({{"BAT0/type", "Battery\n"}, {"BAT0/status", "Not charging\n"}}));
    EXPECT_TRUE(onExternalPower({{"BAT0/type", "Battery\n"}, {"BAT0/status", "Unknown\n"}}));
    EXPECT_TRUE(onExternalPower({{"BAT0/type", "Battery\n"}}));
    EXPECT_FALSE(onExternalPower({{"BAT0/type", "Battery\n"},
                                  {"BAT0/status", "Full\n"},
                                  {"BAT1/type", "Battery\n"},
                                  {"BAT1/status", "Discharging\n"}}));
}

TEST(LinuxPower, ABatteryThatIsPluggedInLaterCounts) {
    const TemporaryTree tree{{supplies + "AC/type", "Mains\n"}, {supplies + "AC/online", "0\n"}};
    LinuxPower power(tree.root());
    EXPECT_TRUE(power.onExternalPower());
    tree.write("BAT0/type", "Battery\n");
    tree.link(supplies + "BAT0", "../../../BAT0");
    EXPECT_FALSE(power.onExternalPower());
}

TEST(LinuxPower, TheFirmwaresProfileAsksToSaveEnergy) {
    const std::string profile = "sys/firmware/acpi/platform_profile";
    const TemporaryTree tree;
    LinuxPower power(tree.root());
    EXPECT_FALSE(power.lowPowerMode());
    tree.write(profile, "low-power\n");
    EXPECT_TRUE(power.lowPowerMode());
    for (const char* other : {"balanced\n", "performance\n", "low-power-more\n", ""}) {
        tree.write(profile, other);
        EXPECT_FALSE(power.lowPowerMode()) << other;
    }
}

} // namespace
} // namespace tavero
