#include "counters/CPUSampler.h"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

namespace tavero {
namespace {

struct SettableCpu : CpuSource {
    std::optional<std::vector<CpuTicks>> now;
    LoadAverage load;
    CoreKinds kinds;

    std::optional<std::vector<CpuTicks>> ticks() override { return now; }
    LoadAverage loadAverage() override { return load; }
    CoreKinds coreKinds() override { return kinds; }
};

TEST(CPUSampler, TheFirstCallTellsTheAveragesSinceBoot) {
    SettableCpu source;
    source.now = {{.user = 10, .system = 20, .idle = 70}};
    const CPUSnapshot cpu = *CPUSampler().sample(source);
    EXPECT_DOUBLE_EQ(cpu.user, 0.1);
    EXPECT_DOUBLE_EQ(cpu.system, 0.2);
    EXPECT_DOUBLE_EQ(cpu.idle, 0.7);
}

TEST(CPUSampler, LaterCallsTellTheTimeBetween) {
    SettableCpu source;
    CPUSampler sampler;
    source.now = {{.user = 1000, .system = 1000, .idle = 1000}, {.idle = 3000}};
    sampler.sample(source);
    source.now = {{.user = 1006, .system = 1002, .idle = 1002}, {.idle = 3010}};
    const CPUSnapshot cpu = *sampler.sample(source);
    EXPECT_DOUBLE_EQ(cpu.user, 0.3);
    EXPECT_DOUBLE_EQ(cpu.system, 0.1);
    EXPECT_DOUBLE_EQ(cpu.idle, 0.6);
    EXPECT_EQ(cpu.perCore, (std::vector{0.8, 0.0}));
}

TEST(CPUSampler, NiceTimeCountsAsUserTime) {
    SettableCpu source;
    source.now = {{.user = 1, .idle = 5, .nice = 4}};
    const CPUSnapshot cpu = *CPUSampler().sample(source);
    EXPECT_DOUBLE_EQ(cpu.user, 0.5);
    EXPECT_DOUBLE_EQ(cpu.perCore.front(), 0.5);
}

TEST(CPUSampler, ACounterThatWrapsStillGivesTheSmallDifference) {
    SettableCpu source;
    CPUSampler sampler;
    source.now = {{.user = 0xFFFFFFFF, .system = 0xFFFFFFFE, .idle = 0xFFFFFFFD, .nice = 5}};
    sampler.sample(source);
    source.now = {{.user = 1, .system = 1, .idle = 2, .nice = 5}};
    const CPUSnapshot cpu = *sampler.sample(source);
    EXPECT_DOUBLE_EQ(cpu.user, 0.2);
    EXPECT_DOUBLE_EQ(cpu.system, 0.3);
    EXPECT_DOUBLE_EQ(cpu.idle, 0.5);
}

TEST(CPUSampler, TwoCountersNearTheirEndDoNotOverflowTheirSum) {
    SettableCpu source;
    source.now = {{.user = 0xFFFFFFFF, .nice = 0xFFFFFFFF}, {.idle = 0xFFFFFFFF}};
    const CPUSnapshot cpu = *CPUSampler().sample(source);
    EXPECT_NEAR(cpu.user, 2.0 / 3, 1e-9);
    EXPECT_EQ(cpu.perCore, (std::vector{1.0, 0.0}));
}

TEST(CPUSampler, AChangedNumberOfCpusStartsAgainFromBoot) {
    SettableCpu source;
    CPUSampler sampler;
    source.now = {{.user = 10, .idle = 10}, {.user = 10, .idle = 10}};
    sampler.sample(source);
    source.now = {{.user = 11, .idle = 33}};
    EXPECT_DOUBLE_EQ(sampler.sample(source)->user, 0.25);
    source.now = {{.user = 12, .idle = 33}, {.idle = 3}, {.idle = 12}};
    EXPECT_DOUBLE_EQ(sampler.sample(source)->user, 0.2);
    source.now = {{.user = 12, .idle = 33}, {.idle = 4}, {.idle = 13}};
    EXPECT_DOUBLE_EQ(sampler.sample(source)->user, 0);
}

TEST(CPUSampler, TwoReadsWithNoTickBetweenGiveNothingAndTheNextOneGoesOn) {
    SettableCpu source;
    CPUSampler sampler;
    source.now = {{.user = 10, .idle = 10}};
    sampler.sample(source);
    EXPECT_EQ(sampler.sample(source), std::nullopt);
    source.now = {{.user = 11, .idle = 13}};
    EXPECT_DOUBLE_EQ(sampler.sample(source)->user, 0.25);
}

TEST(CPUSampler, ACpuWithoutATickIsIdleBesideOthers) {
    SettableCpu source;
    source.now = {{}, {.user = 1, .idle = 1}};
    EXPECT_EQ(CPUSampler().sample(source)->perCore, (std::vector{0.0, 0.5}));
}

TEST(CPUSampler, ARefusedSourceGivesNothingAndKeepsThePreviousTicks) {
    SettableCpu source;
    CPUSampler sampler;
    source.now = {{.user = 100, .idle = 100}};
    sampler.sample(source);
    source.now.reset();
    EXPECT_EQ(sampler.sample(source), std::nullopt);
    source.now = {{.user = 101, .idle = 103}};
    EXPECT_DOUBLE_EQ(sampler.sample(source)->user, 0.25);
}

TEST(CPUSampler, AHostWithoutCpusGivesNothing) {
    SettableCpu source;
    source.now.emplace();
    EXPECT_EQ(CPUSampler().sample(source), std::nullopt);
}

TEST(CPUSampler, LoadAndKindsOfCoresArePassedOn) {
    SettableCpu source;
    source.now = std::vector{CpuTicks{.idle = 1}};
    source.load = {.one = 1, .five = 2, .fifteen = 3};
    source.kinds = {.performance = 6, .efficiency = 2};
    const CPUSnapshot cpu = *CPUSampler().sample(source);
    EXPECT_EQ(cpu.loadAverage, source.load);
    EXPECT_EQ(cpu.performanceCores, 6);
    EXPECT_EQ(cpu.efficiencyCores, 2);
}

} // namespace
} // namespace tavero
