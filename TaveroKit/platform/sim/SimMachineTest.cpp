#include "platform/sim/SimMachine.h"

#include "counters/CPUSampler.h"
#include "counters/MemoryReader.h"
#include "counters/NetworkReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>

namespace tavero {
namespace {

using namespace std::chrono_literals;

// A Mac and the clock that moves it.
class ScenarioRun {
  public:
    explicit ScenarioRun(Scenario scenario)
        : sim_(std::move(scenario), [clock = clock_] { return *clock; }), machine_(sim_.machine()) {
    }

    Machine& after(Date::duration time) {
        *clock_ += time;
        return machine_;
    }
    Machine& now() { return machine_; }

  private:
    std::shared_ptr<Date> clock_ = std::make_shared<Date>(Date(std::chrono::days(20'000)));
    SimMachine sim_;
    Machine machine_;
};

std::uint64_t all(const CpuTicks& ticks) {
    return std::uint64_t{ticks.user} + ticks.system + ticks.idle + ticks.nice;
}

TEST(SimMachine, StandsStillWithoutAScenario) {
    const Machine machine = SimMachine().machine();
    EXPECT_EQ(machine.cpu->ticks(), machine.cpu->ticks());
    EXPECT_EQ(machine.cpu->coreKinds(), (CoreKinds{.performance = 4, .efficiency = 4}));
    EXPECT_EQ(machine.memory->counts()->total, 16ull << 30);
    EXPECT_EQ(machine.memory->counts()->pageSize, 16384u);
    EXPECT_TRUE(machine.power->onExternalPower());
}

TEST(SimMachine, AnswersWhatATestSets) {
    SimMachine sim;
    const Machine machine = sim.machine();
    sim.state().setTicks({{.user = 1, .system = 2, .idle = 3, .nice = 4}});
    sim.state().loadAverage = {.one = 1.5, .five = 2.5, .fifteen = 3.5};
    sim.state().lowPowerMode = true;
    sim.state().onExternalPower = false;
    const MemoryCounts memory{.pageSize = 4096,
                              .internal = 5,
                              .purgeable = 4,
                              .wired = 3,
                              .compressor = 2,
                              .external = 1,
                              .swapUsed = 7,
                              .swapTotal = 8,
                              .total = 9,
                              .pressureLevel = 2,
                              .freeLevel = std::nullopt};
    sim.state().setMemory(memory);

    EXPECT_EQ(machine.cpu->ticks(),
              (std::vector<CpuTicks>{{.user = 1, .system = 2, .idle = 3, .nice = 4}}));
    EXPECT_EQ(machine.cpu->loadAverage().five, 2.5);
    EXPECT_EQ(machine.memory->counts(), memory);
    EXPECT_TRUE(machine.power->lowPowerMode());
    EXPECT_FALSE(machine.power->onExternalPower());
}

TEST(SimMachine, HasOneDiskOneVolumeAndWiFi) {
    const Machine machine = SimMachine().machine();
    EXPECT_EQ(machine.disk->disks().size(), 1u);
    EXPECT_EQ(machine.disk->volumes().front().path, "/");
    const VolumeSpace space = *machine.disk->space("/");
    EXPECT_GT(space.availableForImportantUsage, space.available);
    EXPECT_EQ(machine.network->interfaces()->size(), 1u);
}

TEST(SimMachine, ItsMachinesOutliveIt) {
    std::optional<SimMachine> sim(std::in_place);
    const Machine machine = sim->machine();
    sim.reset();
    EXPECT_EQ(machine.cpu->ticks()->size(), 8u);
    EXPECT_TRUE(machine.memory->counts());
}

TEST(SimMachine, SaysTheSameHoweverOftenItWasAsked) {
    ScenarioRun often(runawayApp());
    ScenarioRun once(runawayApp());
    for (int i = 0; i < 599; ++i) often.after(1s).cpu->ticks();
    EXPECT_EQ(often.after(1s).cpu->ticks(), once.after(600s).cpu->ticks());
    EXPECT_EQ(often.now().memory->counts(), once.now().memory->counts());
}

TEST(SimMachine, AClockThatStepsBackStandsStill) {
    ScenarioRun run(idleAfternoon());
    const auto ticks = run.after(1h).cpu->ticks();
    EXPECT_EQ(run.after(-30min).cpu->ticks(), ticks);
    EXPECT_NE(run.after(31min).cpu->ticks(), ticks);
}

TEST(SimMachine, IsMostlyIdleOnAnIdleAfternoonWithABurstEveryCoupleOfMinutes) {
    ScenarioRun run(idleAfternoon());
    CPUSampler sampler;
    sampler.sample(*run.now().cpu);
    int bursts = 0;
    double total = 0;
    for (int second = 0; second < 1300; ++second) {
        const auto cpu = sampler.sample(*run.after(1s).cpu);
        total += cpu->total();
        bursts += cpu->perCore[4] > 0.5;
    }
    EXPECT_LT(total / 1300, 0.15);
    EXPECT_GT(total / 1300, 0.03);
    EXPECT_NEAR(bursts, 90, 12); // ten bursts of nine seconds
}

TEST(SimMachine, TheFirstReadTellsTheTimeSinceItStarted) {
    ScenarioRun run(idleAfternoon());
    const auto cpu = CPUSampler().sample(*run.now().cpu);
    EXPECT_NEAR(cpu->user, 0.05, 0.001);
    EXPECT_NEAR(cpu->system, 0.03, 0.001);
}

TEST(SimMachine, ARunawayAppKeepsOneCoreBusyAndTheOthersAsTheyWere) {
    ScenarioRun run(runawayApp());
    CPUSampler sampler;
    sampler.sample(*run.now().cpu);
    EXPECT_LT(sampler.sample(*run.after(50s).cpu)->perCore[7], 0.1);
    sampler.sample(*run.after(30s).cpu);
    const auto cpu = sampler.sample(*run.after(10min).cpu);
    EXPECT_GT(cpu->perCore[7], 0.9);
    EXPECT_LT(cpu->perCore[6], 0.1);
    EXPECT_GT(cpu->loadAverage.one, 1);
}

TEST(SimMachine, MemoryPressureRisesFromNormalThroughWarningToCritical) {
    ScenarioRun run(memoryPressure());
    std::vector<MemoryPressure> seen;
    std::uint64_t swapBefore = 0;
    for (int i = 0; i < 15 * 60; ++i) {
        const auto memory = MemoryReader::read(*run.after(1s).memory);
        if (seen.empty() || seen.back() != memory->pressure) seen.push_back(memory->pressure);
        EXPECT_GE(memory->swapUsed, swapBefore);
        EXPECT_GE(memory->swapTotal, memory->swapUsed);
        swapBefore = memory->swapUsed;
    }
    EXPECT_EQ(seen.front(), MemoryPressure::normal);
    EXPECT_EQ(seen.back(), MemoryPressure::critical);
    EXPECT_THAT(seen, testing::Contains(MemoryPressure::warning));
    EXPECT_GT(swapBefore, 4'000'000'000u);
}

TEST(SimMachine, APageLoadsOverTheNetworkAndFromTheDisk) {
    ScenarioRun run(idleAfternoon());
    NetworkSource& network = *run.now().network;
    DiskSource& disk = *run.now().disk;
    const auto quietly = network.interfaces()->front().bytesIn;
    const auto readQuietly = disk.disks().front().bytesRead;
    run.after(24s);
    const auto before = network.interfaces()->front().bytesIn;
    const auto readBefore = disk.disks().front().bytesRead;
    run.after(10s);
    EXPECT_LT(before - quietly, 1'000'000u);
    EXPECT_GT(network.interfaces()->front().bytesIn - before, 19'000'000u);
    EXPECT_LT(readBefore - readQuietly, 10'000'000u);
    EXPECT_GT(disk.disks().front().bytesRead - readBefore, 100'000'000u);
}

TEST(SimMachine, IsUnpluggedAfterAWhileAndPluggedInAgain) {
    ScenarioRun run(idleAfternoon());
    EXPECT_TRUE(run.after(19min).power->onExternalPower());
    EXPECT_FALSE(run.after(2min).power->onExternalPower());
    EXPECT_TRUE(run.after(4h).power->onExternalPower());
}

TEST(SimMachine, EveryScenarioHoldsTogetherThroughAMonth) {
    for (const Scenario& scenario : scenarios()) {
        SCOPED_TRACE(scenario.name);
        ScenarioRun run(scenario);
        auto before = *run.now().cpu->ticks();
        NetworkSource& network = *run.now().network;
        DiskSource& disk = *run.now().disk;
        NetworkSnapshot networkBefore = *NetworkReader::read(network);
        DiskCounters diskBefore = disk.disks().front();
        // Steps of 301 s meet every phase of every wave.
        for (int step = 0; step < 30 * 24 * 12; ++step) {
            const auto now = *run.after(301s).cpu->ticks();
            for (std::size_t cpu = 0; cpu < now.size(); ++cpu) {
                ASSERT_LE(before[cpu].user, now[cpu].user);
                ASSERT_LE(before[cpu].system, now[cpu].system);
                ASSERT_LE(before[cpu].idle, now[cpu].idle);
                ASSERT_NEAR(static_cast<double>(all(now[cpu]) - all(before[cpu])), 30100, 3);
            }
            before = now;
            const MemoryCounts memory = *run.now().memory->counts();
            ASSERT_LE((memory.internal + memory.wired + memory.compressor + memory.external) *
                          memory.pageSize,
                      memory.total);
            ASSERT_LT(memory.purgeable, memory.internal);
            const NetworkSnapshot networkNow = *NetworkReader::read(network);
            ASSERT_GT(networkNow.bytesIn, networkBefore.bytesIn);
            ASSERT_GT(networkNow.bytesOut, networkBefore.bytesOut);
            networkBefore = networkNow;
            const DiskCounters diskNow = disk.disks().front();
            ASSERT_GT(diskNow.bytesRead, diskBefore.bytesRead);
            ASSERT_GT(diskNow.bytesWritten, diskBefore.bytesWritten);
            diskBefore = diskNow;
        }
    }
}

} // namespace
} // namespace tavero
