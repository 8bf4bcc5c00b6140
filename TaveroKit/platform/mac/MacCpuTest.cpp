#include "platform/mac/MacCpu.h"

#include "counters/CPUSampler.h"
#include "platform/sim/SimMachine.h"

#include <gtest/gtest.h>

#include <limits>

namespace tavero {
namespace {

TEST(MacCpu, FourIntegersACpuAreUserSystemIdleAndNice) {
    SimMachine sim;
    sim.state().processorLoad = {.cpuCount = 2, .states = {1, 2, 3, 4, 5, 6, 7, 8}};
    EXPECT_EQ(MacCpu(sim.kernel()).ticks(),
              (std::vector<CpuTicks>{{.user = 1, .system = 2, .idle = 3, .nice = 4},
                                     {.user = 5, .system = 6, .idle = 7, .nice = 8}}));
}

TEST(MacCpu, AnIntegerBelowZeroIsALargeCount) {
    SimMachine sim;
    sim.state().processorLoad = {.cpuCount = 1, .states = {-1, 0, 0, 0}};
    EXPECT_EQ(MacCpu(sim.kernel()).ticks()->front().user, 0xFFFFFFFFu);
}

TEST(MacCpu, ARefusedCallIsAbsent) {
    SimMachine sim;
    sim.state().processorLoad.reset();
    EXPECT_EQ(MacCpu(sim.kernel()).ticks(), std::nullopt);
}

TEST(MacCpu, FewerIntegersThanCpusAreAbsent) {
    SimMachine sim;
    MacCpu cpu(sim.kernel());
    sim.state().processorLoad = {.cpuCount = 2, .states = {1, 2, 3, 4, 5, 6, 7}};
    EXPECT_EQ(cpu.ticks(), std::nullopt);
    sim.state().processorLoad = {.cpuCount = 0xFFFFFFFF, .states = {1, 2, 3, 4}};
    EXPECT_EQ(cpu.ticks(), std::nullopt);
}

TEST(MacCpu, MoreIntegersThanCpusAreLeftOut) {
    SimMachine sim;
    sim.state().processorLoad = {.cpuCount = 1, .states = {1, 2, 3, 4, 5, 6, 7, 8}};
    EXPECT_EQ(MacCpu(sim.kernel()).ticks()->size(), 1u);
}

TEST(MacCpu, NoCpusGiveNoSnapshot) {
    SimMachine sim;
    sim.state().processorLoad = MacKernel::ProcessorLoad{};
    MacCpu cpu(sim.kernel());
    EXPECT_EQ(cpu.ticks(), std::vector<CpuTicks>{});
    EXPECT_EQ(CPUSampler().sample(cpu), std::nullopt);
}

TEST(MacCpu, MissingPerformanceLevelsAreZero) {
    SimMachine sim;
    sim.state().sysctls.erase("hw.perflevel1.logicalcpu");
    EXPECT_EQ(MacCpu(sim.kernel()).coreKinds(), (CoreKinds{.performance = 4, .efficiency = 0}));
}

TEST(MacCpu, ANegativeCountOfCoresIsZero) {
    SimMachine sim;
    sim.state().setSysctl("hw.perflevel0.logicalcpu", std::int32_t{-4});
    EXPECT_EQ(MacCpu(sim.kernel()).coreKinds(), (CoreKinds{.performance = 0, .efficiency = 4}));
}

TEST(MacCpu, TheKindsOfCoresAreReadOnce) {
    SimMachine sim;
    MacCpu cpu(sim.kernel());
    sim.state().sysctls.clear();
    EXPECT_EQ(cpu.coreKinds(), (CoreKinds{.performance = 4, .efficiency = 4}));
}

TEST(MacCpu, ALoadThatIsNoNumberIsZero) {
    SimMachine sim;
    sim.state().loadAverage = {.one = std::numeric_limits<double>::quiet_NaN(),
                               .five = std::numeric_limits<double>::infinity(),
                               .fifteen = 1.25};
    EXPECT_EQ(MacCpu(sim.kernel()).loadAverage(),
              (LoadAverage{.one = 0, .five = 0, .fifteen = 1.25}));
}

} // namespace
} // namespace tavero
