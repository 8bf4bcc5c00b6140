#include "platform/mac/hardware/MacBattery.h"

#include "platform/sim/SimMachine.h"

#include <gtest/gtest.h>

namespace tavero {
namespace {

std::optional<BatterySnapshot> batteryOf(const SimMachine& sim) {
    return MacBattery(sim.registry(), sim.powerSources()).battery();
}

TEST(MacBattery, ADesktopHasNone) {
    SimMachine sim;
    sim.state().services.erase("AppleSmartBattery");
    EXPECT_EQ(batteryOf(sim), std::nullopt);
}

TEST(MacBattery, TheFirstDriverThatCouldBeReadCounts) {
    SimMachine sim;
    sim.state().hardware.powerSources.clear();
    sim.state().services["AppleSmartBattery"] = {{{"CurrentCapacity", {std::int64_t{41}}}},
                                                 {{"CurrentCapacity", {std::int64_t{42}}}}};
    EXPECT_EQ(batteryOf(sim)->percent, 41);
    sim.state().services["AppleSmartBattery"].front()["BatteryInstalled"] = {false};
    EXPECT_EQ(batteryOf(sim), std::nullopt);
}

TEST(MacBattery, WithoutAListOfPowerSourcesTheDriversFiguresServe) {
    SimMachine sim;
    sim.state().setHardware({.watts = 10, .warmth = 10, .onExternalPower = false, .charge = 0.5});
    const BatterySnapshot listed = *batteryOf(sim);
    sim.state().hardware.powerSources.clear();
    EXPECT_EQ(batteryOf(sim), listed);
    EXPECT_EQ(listed.percent, 50);
    EXPECT_EQ(listed.minutesToEmpty, 156);
}

} // namespace
} // namespace tavero
