#include "platform/mac/hardware/MacGPU.h"

#include "hardware/AppGPUSampler.h"
#include "platform/sim/SimMachine.h"

#include <gtest/gtest.h>

#include <limits>

namespace tavero {
namespace {

MacGPU gpuOf(const SimMachine& sim) { return {sim.registry(), sim.processTable()}; }

TEST(MacGPU, TellsOfTheFirstAccelerator) {
    SimMachine sim;
    const PropertyMap statistics{{"Device Utilization %", {std::int64_t{37}}}};
    sim.state().services["IOAccelerator"] = {{{"PerformanceStatistics", {statistics}}}, {}};
    EXPECT_EQ(gpuOf(sim).gpu(), (GPUSnapshot{.device = 0.37}));
    sim.state().services["IOAccelerator"].insert(sim.state().services["IOAccelerator"].begin(),
                                                 PropertyMap{});
    EXPECT_EQ(gpuOf(sim).gpu(), std::nullopt);
}

TEST(MacGPU, AMacWithoutAnAcceleratorTellsNothing) {
    SimMachine sim;
    sim.state().services.clear();
    sim.state().children.clear();
    EXPECT_EQ(gpuOf(sim).gpu(), std::nullopt);
    EXPECT_TRUE(gpuOf(sim).gpuTimes().empty());
}

TEST(MacGPU, TakesTheTimesOfTheAcceleratorsClients) {
    SimMachine sim;
    sim.state().setHardware({.gpuClients = {{.pid = 5, .name = "a", .nanoseconds = 70},
                                            {.pid = 5, .name = "a", .nanoseconds = 7},
                                            {.pid = 9, .name = "b", .nanoseconds = 1}}});
    EXPECT_EQ(gpuOf(sim).gpuTimes(),
              (std::unordered_map<std::int32_t, std::uint64_t>{{5, 77}, {9, 1}}));
}

TEST(MacGPU, UptimeIsInNanoseconds) {
    SimMachine sim;
    sim.state().timebase = {.numer = 125, .denom = 3};
    sim.state().absoluteTime = 24'000'000;
    EXPECT_EQ(gpuOf(sim).uptime(), 1'000'000'000u);
}

TEST(MacGPU, UptimeStaysRightAfterThousandsOfYears) {
    SimMachine sim;
    sim.state().timebase = {.numer = 125, .denom = 3};
    sim.state().absoluteTime = 300'000'000'000'000'001; // times 125 is more than 64 bits hold
    EXPECT_EQ(gpuOf(sim).uptime(), 12'500'000'000'000'000'041u);
}

TEST(MacGPU, ABrokenTimebaseStandsStill) {
    SimMachine sim;
    sim.state().timebase = {.numer = 1, .denom = 0};
    sim.state().absoluteTime = 5;
    EXPECT_EQ(gpuOf(sim).uptime(), 0u);
}

TEST(MacGPU, AProcessSharesTheGPUByItsTimeBetweenTwoSamples) {
    SimMachine sim;
    MacGPU source = gpuOf(sim);
    AppGPUSampler sampler;
    const auto at = [&](std::uint64_t seconds, std::uint64_t nanoseconds) {
        sim.state().absoluteTime = seconds * 24'000'000;
        sim.state().setHardware({.gpuClients = {{.pid = 5, .nanoseconds = nanoseconds}}});
        return sampler.sample(source);
    };
    EXPECT_TRUE(at(10, 1'000'000'000).empty());
    EXPECT_DOUBLE_EQ(at(12, 1'500'000'000).at(5), 0.25);
}

} // namespace
} // namespace tavero
