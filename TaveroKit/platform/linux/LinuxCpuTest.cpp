#include "platform/linux/LinuxCpu.h"

#include "counters/CPUSampler.h"
#include "platform/linux/ProcStat.h"
#include "platform/linux/TemporaryTree.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tavero {
namespace {

using Ticks = std::vector<CpuTicks>;

TEST(ParseProcStat, FoldsTheKernelsKindsIntoFour) {
    const std::vector<CpuTime> cpus = parseProcStat("cpu  9 9 9 9 9 9 9 9 9 9\n"
                                                    "cpu0 100 20 30 400 50 6 7 1000 60 10\n"
                                                    "cpu3 1 2 3 4 5 6 7 8 9 10\n"
                                                    "intr 5 4 3\n"
                                                    "cpu4 1 2 3 4\n");
    EXPECT_EQ(cpus, (std::vector<CpuTime>{
                        {.number = 0, .user = 100, .nice = 20, .system = 43, .idle = 450},
                        {.number = 3, .user = 1, .nice = 2, .system = 16, .idle = 9},
                    }));
}

TEST(ParseProcStat, ALineOfAnOldKernelCountsWhatItHas) {
    EXPECT_EQ(parseProcStat("cpu0 1 2 3 4\n"),
              (std::vector<CpuTime>{{.number = 0, .user = 1, .nice = 2, .system = 3, .idle = 4}}));
    EXPECT_EQ(parseProcStat("cpu0 1 2 3 4 5").front().idle, 9u);
}

TEST(ParseProcStat, BrokenTextGivesNoCpu) {
    for (const char* text : {"", "cpu", "cpu0", "cpu0 1 2 3", "cpu0 1 2 x 4", "cpux 1 2 3 4",
                             "cpu0\n1 2 3 4", "cpu8192 1 2 3 4", "intr 1\ncpu0 1 2 3 4",
                             "cpu99999999999999999999 1 2 3 4", "cpu0 -1 2 3 4"})
        EXPECT_TRUE(parseProcStat(text).empty()) << text;
}

TEST(ParseProcStat, FiguresBeyond64BitsStayAtTheLargestValue) {
    const CpuTime cpu =
        parseProcStat("cpu0 99999999999999999999 1 18446744073709551615 4 18446744073709551615 5 6")
            .at(0);
    EXPECT_EQ(cpu.user, 18446744073709551615u);
    EXPECT_EQ(cpu.system, 18446744073709551615u);
    EXPECT_EQ(cpu.idle, 18446744073709551615u);
}

TEST(ParseLoadAverage, NeedsItsThreeFigures) {
    EXPECT_EQ(parseLoadAverage("0.25 0.50 12.00 1/86 6264\n"),
              (LoadAverage{.one = 0.25, .five = 0.5, .fifteen = 12}));
    for (const char* text : {"", "0.28 0.17", "a b c", "0.28\n0.17 0.07"})
        EXPECT_EQ(parseLoadAverage(text), std::nullopt) << text;
}

TEST(ParseCpuList, CountsRangesAndSingles) {
    EXPECT_EQ(parseCpuList("0-15"), 16);
    EXPECT_EQ(parseCpuList("0-3,8,10-11\n"), 7);
    EXPECT_EQ(parseCpuList("0"), 1);
    EXPECT_EQ(parseCpuList(""), 0);
    EXPECT_EQ(parseCpuList("x"), 0);
    EXPECT_EQ(parseCpuList("4-2"), 0);
    EXPECT_EQ(parseCpuList("0-99999999999"), 0);
    EXPECT_EQ(parseCpuList("0-3,"), 4);
    EXPECT_EQ(parseCpuList("0-3,7-"), 4);
}

TEST(LinuxCpu, GivesTheTicksOfEachCpuInOrder) {
    const TemporaryTree tree{{"proc/stat", "cpu  3 0 0 9\ncpu0 1 2 3 4\ncpu1 5 6 7 8\n"}};
    LinuxCpu cpu(tree.root());
    EXPECT_EQ(cpu.ticks(), (Ticks{{.user = 1, .system = 3, .idle = 4, .nice = 2},
                                  {.user = 5, .system = 7, .idle = 8, .nice = 6}}));
}

TEST(LinuxCpu, AnIowaitThatShrinksNeverStepsBack) {
    const TemporaryTree tree{{"proc/stat", "cpu0 10 0 0 100 50\n"}};
    LinuxCpu cpu(tree.root());
    EXPECT_EQ(cpu.ticks()->front().idle, 150u);
    tree.write("proc/stat", "cpu0 10 0 0 100 30\n");
    EXPECT_EQ(cpu.ticks()->front().idle, 150u);
    tree.write("proc/stat", "cpu0 10 0 0 105 30\n");
    EXPECT_EQ(cpu.ticks()->front().idle, 155u);
}

TEST(LinuxCpu, TimeMovedFromIowaitToIdleCountsOnce) {
    const TemporaryTree tree{{"proc/stat", "cpu0 10 0 0 100 50\n"}};
    LinuxCpu cpu(tree.root());
    cpu.ticks();
    tree.write("proc/stat", "cpu0 10 0 0 120 30\n");
    EXPECT_EQ(cpu.ticks()->front().idle, 150u);
}

TEST(LinuxCpu, ACpuThatGoesOfflineAndReturnsMakesNoFalseStep) {
    const TemporaryTree tree{{"proc/stat", "cpu0 100 0 0 100\ncpu1 100 0 0 100\n"}};
    LinuxCpu cpu(tree.root());
    CPUSampler sampler;
    sampler.sample(cpu);

    tree.write("proc/stat", "cpu0 150 0 0 150\n");
    const auto offline = sampler.sample(cpu);
    EXPECT_EQ(offline->perCore, (std::vector<double>{0.5, 0}));
    EXPECT_DOUBLE_EQ(offline->user, 0.5);

    tree.write("proc/stat", "cpu0 200 0 0 200\ncpu1 0 0 0 10\n"); // its counters were reset
    const auto back = sampler.sample(cpu);
    EXPECT_EQ(back->perCore, (std::vector<double>{0.5, 0}));

    tree.write("proc/stat", "cpu0 250 0 0 250\ncpu1 30 0 0 20\n");
    EXPECT_EQ(sampler.sample(cpu)->perCore, (std::vector<double>{0.5, 0.75}));
}

TEST(LinuxCpu, TicksAreCutTo32Bits) {
    const TemporaryTree tree{{"proc/stat", "cpu0 4294967295 0 0 8589934595\n"}};
    LinuxCpu cpu(tree.root());
    EXPECT_EQ(cpu.ticks(), (Ticks{{.user = 0xFFFFFFFFu, .idle = 3}}));
    CPUSampler sampler;
    sampler.sample(cpu);
    tree.write("proc/stat", "cpu0 4294967298 0 0 8589934596\n");
    EXPECT_DOUBLE_EQ(sampler.sample(cpu)->user, 0.75);
}

TEST(LinuxCpu, WithoutItsFileItIsAbsentUntilTheFileAppears) {
    const TemporaryTree tree;
    LinuxCpu cpu(tree.root());
    EXPECT_EQ(cpu.ticks(), std::nullopt);
    EXPECT_EQ(cpu.loadAverage(), LoadAverage{});
    tree.write("proc/stat", "");
    EXPECT_EQ(cpu.ticks(), std::nullopt);
    tree.write("proc/stat", "cpu  1 2 3 4\ncpu0 1 2"); // cut short
    EXPECT_EQ(cpu.ticks(), std::nullopt);
    tree.write("proc/stat", "cpu0 1 2 3 4\n");
    EXPECT_EQ(cpu.ticks()->size(), 1u);
}

TEST(LinuxCpu, HybridProcessorsListTheirKinds) {
    const TemporaryTree tree{{"sys/devices/cpu_core/cpus", "0-7\n"},
                             {"sys/devices/cpu_atom/cpus", "8-15\n"},
                             {"sys/devices/cpu_lowpower/cpus", "16-17\n"}};
    EXPECT_EQ(LinuxCpu(tree.root()).coreKinds(), (CoreKinds{.performance = 8, .efficiency = 10}));
}

TEST(LinuxCpu, CapacitiesTellTheKindsElsewhere) {
    const TemporaryTree tree;
    for (int i = 0; i < 8; ++i)
        tree.write("sys/devices/system/cpu/cpu" + std::to_string(i) + "/cpu_capacity",
                   i < 4 ? "446\n" : (i < 7 ? "871\n" : "1024\n"));
    tree.write("sys/devices/system/cpu/cpufreq/other", "1\n");
    EXPECT_EQ(LinuxCpu(tree.root()).coreKinds(), (CoreKinds{.performance = 4, .efficiency = 4}));
}

TEST(LinuxCpu, CoresOfOneKindAreNotToldApart) {
    const TemporaryTree tree{{"sys/devices/system/cpu/cpu0/cpu_capacity", "1024\n"},
                             {"sys/devices/system/cpu/cpu1/cpu_capacity", "1024\n"}};
    EXPECT_EQ(LinuxCpu(tree.root()).coreKinds(), CoreKinds{});
    EXPECT_EQ(LinuxCpu(TemporaryTree().root()).coreKinds(), CoreKinds{});
}

} // namespace
} // namespace tavero
