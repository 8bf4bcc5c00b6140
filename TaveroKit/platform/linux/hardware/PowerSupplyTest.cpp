#include "platform/linux/hardware/PowerSupply.h"

#include "platform/linux/TemporaryTree.h"
#include "platform/linux/hardware/SysfsNumber.h"

#include <gtest/gtest.h>

namespace tavero {
namespace {

TEST(SysfsNumber, TakesANumberThatStandsAlone) {
    EXPECT_EQ(sysfsNumber("12\n"), 12);
    EXPECT_EQ(sysfsNumber("-273150"), -273150);
    EXPECT_EQ(sysfsNumber("0"), 0);
    for (const char* text : {"", "\n", "-", "x", "12 V", "1.5", "12\n\n", "0x10", "--1", "+1"})
        EXPECT_EQ(sysfsNumber(text), std::nullopt) << text;
}

TEST(SysfsNumber, NothingIsAsLargeAsABrokenCounter) {
    EXPECT_EQ(sysfsNumber("1000000000000"), 1'000'000'000'000);
    for (const char* text : {"1000000000001", "9223372036854775808", "-9223372036854775808",
                             "18446744073709551615", "99999999999999999999999"})
        EXPECT_EQ(sysfsNumber(text), std::nullopt) << text;
}

TEST(ParsePowerSupply, ReadsThePropertiesOfABattery) {
    const PowerSupply supply = parsePowerSupply("DEVTYPE=power_supply\n"
                                                "POWER_SUPPLY_NAME=BAT0\n"
                                                "POWER_SUPPLY_STATUS=Not charging\n"
                                                "POWER_SUPPLY_PRESENT=1\n"
                                                "POWER_SUPPLY_CYCLE_COUNT=12\n"
                                                "POWER_SUPPLY_VOLTAGE_NOW=11700000\n"
                                                "POWER_SUPPLY_CURRENT_NOW=-1500000\n"
                                                "POWER_SUPPLY_ENERGY_FULL_DESIGN=57000000\n"
                                                "POWER_SUPPLY_TEMP=312\n"
                                                "POWER_SUPPLY_CAPACITY=80\n"
                                                "POWER_SUPPLY_CAPACITY_LEVEL=Normal\n");
    EXPECT_EQ(supply, (PowerSupply{.status = ChargeStatus::notCharging,
                                   .present = 1,
                                   .capacity = 80,
                                   .cycleCount = 12,
                                   .temperature = 312,
                                   .voltage = 11700000,
                                   .current = -1500000,
                                   .energyDesign = 57000000}));
}

TEST(ParsePowerSupply, LeavesOutWhatIsBroken) {
    for (const char* text :
         {"", "POWER_SUPPLY_", "POWER_SUPPLY_CAPACITY",
          "POWER_SUPPLY_CAPACITY=", "POWER_SUPPLY_CAPACITY=full", "POWER_SUPPLY_CAPACITY\n=80",
          "CAPACITY=80", "POWER_SUPPLY_capacity=80", "POWER_SUPPLY_CAPACITY=9223372036854775808",
          "POWER_SUPPLY_STATUS=charging", "XPOWER_SUPPLY_CAPACITY=80"})
        EXPECT_EQ(parsePowerSupply(text), PowerSupply{}) << text;
}

TEST(PowerSupplyFiles, WithoutAUeventTheSingleFilesTell) {
    const TemporaryTree tree{{"BAT0/uevent", ""}, // one property failed
                             {"BAT0/status", "Discharging\n"},
                             {"BAT0/capacity", "41\n"},
                             {"BAT0/energy_now", "20000000\n"},
                             {"BAT0/cycle_count", "broken\n"}};
    EXPECT_EQ(
        PowerSupplyFiles(SupplyKind::battery, tree.root() / "BAT0").read(),
        (PowerSupply{.status = ChargeStatus::discharging, .capacity = 41, .energyNow = 20000000}));
}

TEST(PowerSupplyFiles, AnotherDriversChargeLimitIsFound) {
    const TemporaryTree tree{{"BAT0/uevent", "POWER_SUPPLY_CAPACITY=41\n"},
                             {"BAT0/charge_control_end_threshold", "80\n"}};
    PowerSupplyFiles files(SupplyKind::battery, tree.root() / "BAT0");
    EXPECT_EQ(files.read().chargeLimit, 80);
    tree.write("BAT0/charge_control_end_threshold", "60\n");
    EXPECT_EQ(files.read().chargeLimit, 60);
    tree.write("BAT0/uevent", "POWER_SUPPLY_CHARGE_CONTROL_END_THRESHOLD=90\n");
    EXPECT_EQ(files.read().chargeLimit, 90);
}

TEST(SupplyKind, IsThatOfWhatFeedsTheMachine) {
    const TemporaryTree tree{
        {"AC/type", "Mains\n"},      {"usb/type", "USB_PD\n"},    {"coil/type", "Wireless\n"},
        {"BAT0/type", "Battery\n"},  {"BAT0/scope", "System\n"},  {"UPS/type", "UPS\n"},
        {"mouse/type", "Battery\n"}, {"mouse/scope", "Device\n"}, {"odd/type", "Battery pack\n"}};
    EXPECT_EQ(supplyKind(tree.root() / "AC"), SupplyKind::charger);
    EXPECT_EQ(supplyKind(tree.root() / "usb"), SupplyKind::charger);
    EXPECT_EQ(supplyKind(tree.root() / "coil"), SupplyKind::charger);
    EXPECT_EQ(supplyKind(tree.root() / "BAT0"), SupplyKind::battery);
    for (const char* other : {"UPS", "mouse", "odd", "none"})
        EXPECT_EQ(supplyKind(tree.root() / other), std::nullopt) << other;
}

} // namespace
} // namespace tavero
