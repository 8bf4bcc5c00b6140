#include "platform/sim/Scenario.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <set>

namespace tavero {
namespace {

bool isAlive(const Scenario::Life& life, double time) {
    return time >= life.begins && std::fmod(time - life.begins, life.every) < life.lasts;
}

TEST(Scenario, NoCpuIsEverMoreThanBusy) {
    for (const Scenario& scenario : scenarios())
        for (double time = 0; time < 7200; time += 0.5) {
            std::vector<double> busy;
            for (const Scenario::Cpu& cpu : scenario.cpus) {
                ASSERT_GE(cpu.user.at(time), 0) << scenario.name << " at " << time;
                ASSERT_GE(cpu.system.at(time), 0) << scenario.name << " at " << time;
                busy.push_back(cpu.user.at(time) + cpu.system.at(time));
            }
            for (const Scenario::Process& process : scenario.processes)
                busy.at(process.core) += process.cpu.at(time);
            EXPECT_THAT(busy, testing::Each(testing::Le(0.99))) << scenario.name << " at " << time;
        }
}

TEST(Scenario, TheGPUIsNeverMoreThanBusyAndWorksOnlyForThoseWhoRun) {
    for (const Scenario& scenario : scenarios())
        for (double time = 0; time < 3600; time += 0.5) {
            double busy = 0;
            for (const Scenario::Process& process : scenario.processes) {
                const double share = process.gpu.at(time);
                ASSERT_GE(share, 0) << process.path << " at " << time;
                ASSERT_TRUE(share == 0 || isAlive(process.life, time)) << process.path;
                busy += share;
            }
            ASSERT_LE(busy, 1) << scenario.name << " at " << time;
        }
}

TEST(Scenario, NoProcessUsesLessThanNothingOrAnythingWhileItDoesNotRun) {
    for (const Scenario& scenario : scenarios())
        for (const Scenario::Process& process : scenario.processes)
            for (double time = 0; time < 3600; time += 0.5) {
                const double read = process.disk.read.at(time);
                const double written = process.disk.written.at(time);
                const double cpu = process.cpu.at(time);
                ASSERT_TRUE(cpu >= 0 && read >= 0 && written >= 0)
                    << process.path << " at " << time;
                const double used = cpu + read + written;
                ASSERT_TRUE(used == 0 || isAlive(process.life, time))
                    << process.path << " at " << time;
            }
}

TEST(Scenario, WhatGoesOverTheNetworkIsNeverLessThanNothing) {
    for (const Scenario& scenario : scenarios())
        for (double time = 0; time < 3600; time += 0.5) {
            ASSERT_GE(scenario.network.in.at(time), 0) << scenario.name << " at " << time;
            ASSERT_GE(scenario.network.out.at(time), 0) << scenario.name << " at " << time;
            ASSERT_LT(scenario.signal.at(time), 0) << scenario.name << " at " << time;
            for (const Scenario::Process& process : scenario.processes)
                ASSERT_TRUE(!process.network || (process.network->in.at(time) >= 0 &&
                                                 process.network->out.at(time) >= 0))
                    << process.path << " at " << time;
        }
}

TEST(Scenario, NoTwoProcessesShareAPid) {
    for (const Scenario& scenario : scenarios()) {
        std::set<std::int32_t> pids;
        for (const Scenario::Process& process : scenario.processes) pids.insert(process.pid);
        EXPECT_EQ(pids.size(), scenario.processes.size());
        EXPECT_TRUE(pids.contains(0) && pids.contains(1));
    }
}

TEST(Scenario, TheProcessesHoldAboutTheMemoryThatTheMachineSays) {
    constexpr double compression = 2;
    for (const Scenario& scenario : scenarios())
        for (double time = 0; time < 7200; time += 20) {
            double held = 0;
            for (const Scenario::Process& process : scenario.processes)
                if (isAlive(process.life, time)) held += process.memory.at(time);
            const Scenario::Memory& memory = scenario.memory;
            const double said =
                memory.internal.at(time) - memory.purgeable.at(time) +
                compression * (memory.compressor.at(time) + memory.swapUsed.at(time));
            ASSERT_NEAR(held / said, 1, 0.15) << scenario.name << " at " << time;
        }
}

} // namespace
} // namespace tavero
