#include "platform/sim/SimEnergy.h"

#include "platform/sim/SimHardware.h"

#include <gtest/gtest.h>

namespace tavero {
namespace {

// The charge of a machine that always draws an hour-th of its battery an hour.
double charge(const Scenario::Battery& battery, double time) {
    return simCharge(battery, time, [](double at) { return at * simBatteryJoules / 36'000; });
}

TEST(SimEnergy, WorkOnAPerformanceCoreCostsMoreThanOnAnEfficiencyCore) {
    std::vector<SimTasks::CpuTime> cpus(8);
    const double idle = simJoules(cpus, 0, 10);
    cpus[0].user = 5;
    const double efficient = simJoules(cpus, 0, 10);
    cpus[0].user = 0;
    cpus[4] = {.user = 4, .system = 1};
    const double performant = simJoules(cpus, 0, 10);
    EXPECT_GT(idle, 0);
    EXPECT_GT(efficient, idle);
    EXPECT_GT(performant, efficient);
    EXPECT_GT(simJoules(cpus, 1, 10), performant);
}

TEST(SimEnergy, TheBatteryDrainsWhileUnpluggedAndChargesAfterwards) {
    const Scenario::Battery battery{.unplugged = {.begins = 3600, .lasts = 7200, .every = 86'400}};
    EXPECT_EQ(charge(battery, 0), 1);
    EXPECT_EQ(charge(battery, 3600), 1);
    EXPECT_DOUBLE_EQ(charge(battery, 7200), 0.9);
    EXPECT_DOUBLE_EQ(charge(battery, 10'800), 0.8);
    EXPECT_DOUBLE_EQ(charge(battery, 10'900), 0.8 + simChargingWatts * 100 / simBatteryJoules);
    EXPECT_EQ(charge(battery, 20'000), 1);
    EXPECT_DOUBLE_EQ(charge(battery, 86'400 + 7200), 0.9);
}

TEST(SimEnergy, AnEmptyBatteryKeepsALittle) {
    EXPECT_DOUBLE_EQ(charge({.unplugged = {.begins = 0}, .charge = 0.4}, 1e6), 0.01);
}

TEST(SimEnergy, AMachineThatIsNeverUnpluggedKeepsItsCharge) {
    EXPECT_EQ(charge({.charge = 0.7}, 1e6), 0.7);
}

} // namespace
} // namespace tavero
