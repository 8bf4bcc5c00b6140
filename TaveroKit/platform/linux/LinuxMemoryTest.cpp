#include "platform/linux/LinuxMemory.h"

#include "counters/MemoryReader.h"
#include "platform/linux/Meminfo.h"
#include "platform/linux/TemporaryTree.h"

#include <gtest/gtest.h>

#include <string>

namespace tavero {
namespace {

constexpr std::uint64_t kib = 1024;

const std::string meminfo = "MemTotal:        1000 kB\n"
                            "MemFree:          100 kB\n"
                            "MemAvailable:     389 kB\n"
                            "Buffers:           10 kB\n"
                            "Cached:           300 kB\n"
                            "SwapCached:         7 kB\n"
                            "SwapTotal:        500 kB\n"
                            "SwapFree:         420 kB\n"
                            "Zswap:             30 kB\n"
                            "Zswapped:          90 kB\n"
                            "AnonPages:        200 kB\n"
                            "Shmem:             50 kB\n"
                            "SReclaimable:      40 kB\n"
                            "SUnreclaim:        60 kB\n";

std::optional<std::int64_t> pressureLevel(const std::string& stalls) {
    const TemporaryTree tree{{"proc/meminfo", meminfo}, {"proc/pressure/memory", stalls}};
    return LinuxMemory(tree.root()).counts()->pressureLevel;
}

TEST(ParseMeminfo, FindsItsLinesInAnyOrder) {
    EXPECT_EQ(parseMeminfo("Shmem: 3 kB\nMemTotal: 9 kB\nCached:4\nSwapCached: 8 kB\n"),
              (Meminfo{.total = 9, .cached = 4, .shared = 3}));
}

TEST(ParseMeminfo, WithoutATotalItIsAbsent) {
    for (const char* text : {"", "MemFree: 5 kB\n", "MemTotal: 0 kB\n", "MemTotal: x kB\n",
                             "MemTotal:", "MemTotal", "MemTotal:\n5 kB\n", "\n\n:\n"})
        EXPECT_EQ(parseMeminfo(text), std::nullopt) << text;
}

TEST(ParseMeminfo, ATextCutShortCountsWhatItHas) {
    EXPECT_EQ(parseMeminfo("MemTotal: 9 kB\nMemFree: 4 kB\nBuff"),
              (Meminfo{.total = 9, .free = 4}));
}

TEST(ParseMemoryStall, NeedsItsSomeLine) {
    EXPECT_EQ(parseMemoryStall("some avg10=2.50 avg60=2.84 avg300=1.30 total=11015114\n"
                               "full avg10=0.25 avg60=0.00 avg300=0.00 total=0\n"),
              (MemoryStall{.some = 2.5, .full = 0.25}));
    EXPECT_EQ(parseMemoryStall("some avg10=2.50"), (MemoryStall{.some = 2.5, .full = 0}));
    for (const char* text : {"", "full avg10=0.25", "some avg60=1.00", "some avg10=nan", "garbage"})
        EXPECT_EQ(parseMemoryStall(text), std::nullopt) << text;
}

TEST(ParseZramMemory, IsTheThirdFigure) {
    EXPECT_EQ(parseZramMemory("   4096       74    12288        0    12288 0 0 0 0\n"), 12288u);
    EXPECT_EQ(parseZramMemory("4096 74"), std::nullopt);
    EXPECT_EQ(parseZramMemory(""), std::nullopt);
}

TEST(LinuxMemory, MapsTheKernelsFiguresToThePagesOfTavero) {
    const TemporaryTree tree{{"proc/meminfo", meminfo}};
    EXPECT_EQ(LinuxMemory(tree.root()).counts(), (MemoryCounts{.pageSize = kib,
                                                               .internal = 250,
                                                               .purgeable = 0,
                                                               .wired = 320,
                                                               .compressor = 30,
                                                               .external = 300,
                                                               .swapUsed = 80 * kib,
                                                               .swapTotal = 500 * kib,
                                                               .total = 1000 * kib,
                                                               .pressureLevel = std::nullopt,
                                                               .freeLevel = 38}));
}

TEST(LinuxMemory, ThePartsAddUpToTheTotal) {
    const TemporaryTree tree{{"proc/meminfo", meminfo}};
    LinuxMemory memory(tree.root());
    const auto snapshot = MemoryReader::read(memory);
    EXPECT_EQ(snapshot->used() + snapshot->cached + snapshot->free(), 1000 * kib);
    EXPECT_EQ(snapshot->free(), 100 * kib);
}

TEST(LinuxMemory, FiguresThatContradictEachOtherStayAtZero) {
    const TemporaryTree tree{{"proc/meminfo", "MemTotal: 100 kB\nMemFree: 90 kB\n"
                                              "MemAvailable: 400 kB\nCached: 10 kB\nShmem: 50 kB\n"
                                              "SwapTotal: 5 kB\nSwapFree: 9 kB\n"}};
    const auto counts = LinuxMemory(tree.root()).counts();
    EXPECT_EQ(counts->external, 0u);
    EXPECT_EQ(counts->wired, 0u);
    EXPECT_EQ(counts->swapUsed, 0u);
    EXPECT_EQ(counts->freeLevel, 100);
}

TEST(LinuxMemory, HugeFiguresStayAtTheLargestValue) {
    const std::string most = "18446744073709551615";
    const TemporaryTree tree{{"proc/meminfo", "MemTotal: " + most + " kB\nMemAvailable: " + most +
                                                  "0 kB\nCached: " + most + "\nBuffers: " + most +
                                                  "\nAnonPages: " + most + "\nShmem: 1\n"}};
    const auto counts = LinuxMemory(tree.root()).counts();
    EXPECT_EQ(counts->total, 18446744073709551615u);
    EXPECT_EQ(counts->internal, 18446744073709551615u);
    EXPECT_EQ(counts->wired, 0u);
    EXPECT_EQ(counts->freeLevel, 100);
}

TEST(LinuxMemory, WithoutMemAvailableTheFreeLevelIsAbsent) {
    const TemporaryTree tree{{"proc/meminfo", "MemTotal: 100 kB\nMemFree: 40 kB\n"}};
    EXPECT_EQ(LinuxMemory(tree.root()).counts()->freeLevel, std::nullopt);
}

TEST(LinuxMemory, PressureGoesByTheStallsOfTenSeconds) {
    EXPECT_EQ(pressureLevel("some avg10=0.00\nfull avg10=0.00\n"), 1);
    EXPECT_EQ(pressureLevel("some avg10=9.99\nfull avg10=9.99\n"), 1);
    EXPECT_EQ(pressureLevel("some avg10=10.00\nfull avg10=9.99\n"), 2);
    EXPECT_EQ(pressureLevel("some avg10=10.00\nfull avg10=10.00\n"), 4);
    EXPECT_EQ(pressureLevel("some avg10=99.00\nfull avg10=80.00\n"), 4);
    EXPECT_EQ(pressureLevel(""), std::nullopt);
}

TEST(LinuxMemory, ZramCountsAsCompressed) {
    const TemporaryTree tree{{"proc/meminfo", meminfo},
                             {"sys/block/zram0/disksize", "8192\n"},
                             {"sys/block/zram0/mm_stat", "8192 2048 20480 0 0 0 0 0 0\n"},
                             {"sys/block/zram1/disksize", "0\n"},
                             {"sys/block/zram1/mm_stat", "9 9 102400 0 0 0 0 0 0\n"},
                             {"sys/block/sda/mm_stat", "9 9 102400 0 0 0 0 0 0\n"}};
    const auto counts = LinuxMemory(tree.root()).counts();
    EXPECT_EQ(counts->compressor, 50u);
    EXPECT_EQ(counts->wired, 300u);
}

TEST(LinuxMemory, AZramThatBringsSwapIsFound) {
    const TemporaryTree tree{{"proc/meminfo", "MemTotal: 100 kB\n"}};
    LinuxMemory memory(tree.root());
    EXPECT_EQ(memory.counts()->compressor, 0u);
    tree.write("sys/block/zram0/disksize", "8192\n");
    tree.write("sys/block/zram0/mm_stat", "0 0 4096\n");
    tree.write("proc/meminfo", "MemTotal: 100 kB\nSwapTotal: 8 kB\n");
    EXPECT_EQ(memory.counts()->compressor, 4u);
}

TEST(LinuxMemory, WithoutItsFileItIsAbsentUntilTheFileAppears) {
    const TemporaryTree tree;
    LinuxMemory memory(tree.root());
    EXPECT_EQ(memory.counts(), std::nullopt);
    tree.write("proc/meminfo", "");
    EXPECT_EQ(memory.counts(), std::nullopt);
    tree.write("proc/meminfo", meminfo);
    EXPECT_TRUE(memory.counts());
}

} // namespace
} // namespace tavero
