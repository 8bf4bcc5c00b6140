#include "platform/mac/MacMemory.h"

#include "platform/sim/SimMachine.h"

#include <gtest/gtest.h>

#include <limits>

namespace tavero {
namespace {

TEST(MacMemory, TakesItsCountsFromTheirWords) {
    SimMachine sim;
    VMStatistics& words = sim.state().vmStatistics.emplace();
    for (std::uint32_t i = 0; i < words.size(); ++i) words[i] = 1000 + i;
    sim.state().pageSize = 4096;
    const MemoryCounts counts = *MacMemory(sim.kernel()).counts();
    EXPECT_EQ(counts.pageSize, 4096u);
    EXPECT_EQ(counts.wired, 1003u);
    EXPECT_EQ(counts.purgeable, 1022u);
    EXPECT_EQ(counts.compressor, 1032u);
    EXPECT_EQ(counts.external, 1034u);
    EXPECT_EQ(counts.internal, 1035u);
}

TEST(MacMemory, ARefusedStatisticOrPageSizeIsAbsent) {
    SimMachine sim;
    MacMemory memory(sim.kernel());
    sim.state().pageSize.reset();
    EXPECT_EQ(memory.counts(), std::nullopt);
    sim.state().pageSize = 16384;
    EXPECT_TRUE(memory.counts());
    sim.state().vmStatistics.reset();
    EXPECT_EQ(memory.counts(), std::nullopt);
}

TEST(MacMemory, SwapIsTheUsedAndTotalOfItsRecord) {
    SimMachine sim;
    std::vector<std::byte>& record = sim.state().sysctls["vm.swapusage"];
    record.assign(32, std::byte{0});
    record[2] = std::byte{3};  // the total begins at byte 0
    record[10] = std::byte{2}; // what is available at byte 8
    record[18] = std::byte{1}; // what is used at byte 16
    const MemoryCounts counts = *MacMemory(sim.kernel()).counts();
    EXPECT_EQ(counts.swapTotal, 3u << 16);
    EXPECT_EQ(counts.swapUsed, 1u << 16);
}

TEST(MacMemory, SwapThatCannotBeReadIsZero) {
    SimMachine sim;
    MacMemory memory(sim.kernel());
    for (const std::size_t size : {0u, 8u, 31u, 33u, 64u}) {
        sim.state().sysctls["vm.swapusage"].assign(size, std::byte{0xFF});
        EXPECT_EQ(memory.counts()->swapUsed, 0u) << size;
        EXPECT_EQ(memory.counts()->swapTotal, 0u) << size;
    }
    sim.state().sysctls.erase("vm.swapusage");
    EXPECT_EQ(memory.counts()->swapTotal, 0u);
}

TEST(MacMemory, MissingLevelsStayAbsentAndAMissingTotalIsZero) {
    SimMachine sim;
    sim.state().sysctls.clear();
    const MemoryCounts counts = *MacMemory(sim.kernel()).counts();
    EXPECT_EQ(counts.pressureLevel, std::nullopt);
    EXPECT_EQ(counts.freeLevel, std::nullopt);
    EXPECT_EQ(counts.total, 0u);
}

TEST(MacMemory, ANegativeTotalIsZero) {
    SimMachine sim;
    sim.state().setSysctl("hw.memsize", std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(MacMemory(sim.kernel()).counts()->total, 0u);
}

TEST(MacMemory, LevelsArePassedOnAsTheyAre) {
    SimMachine sim;
    sim.state().setSysctl("kern.memorystatus_vm_pressure_level", std::int32_t{7});
    sim.state().setSysctl("kern.memorystatus_level", std::int32_t{-1});
    const MemoryCounts counts = *MacMemory(sim.kernel()).counts();
    EXPECT_EQ(counts.pressureLevel, 7);
    EXPECT_EQ(counts.freeLevel, -1);
}

} // namespace
} // namespace tavero
