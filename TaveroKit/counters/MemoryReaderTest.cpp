#include "counters/MemoryReader.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>

namespace tavero {
namespace {

struct SettableMemory : MemorySource {
    std::optional<MemoryCounts> now;

    std::optional<MemoryCounts> counts() override { return now; }
};

std::optional<MemorySnapshot> read(const MemoryCounts& counts) {
    SettableMemory source;
    source.now = counts;
    return MemoryReader::read(source);
}

TEST(MemoryReader, TurnsPagesIntoBytes) {
    const MemorySnapshot memory = *read({.pageSize = 16384,
                                         .internal = 100,
                                         .purgeable = 10,
                                         .wired = 20,
                                         .compressor = 30,
                                         .external = 40,
                                         .swapUsed = 5,
                                         .swapTotal = 6,
                                         .total = 16384 * 1000,
                                         .pressureLevel = 1,
                                         .freeLevel = 44});
    EXPECT_EQ(memory.app, 90u * 16384);
    EXPECT_EQ(memory.wired, 20u * 16384);
    EXPECT_EQ(memory.compressed, 30u * 16384);
    EXPECT_EQ(memory.cached, 50u * 16384);
    EXPECT_EQ(memory.purgeable, 10u * 16384);
    EXPECT_EQ(memory.total, 1000u * 16384);
    EXPECT_EQ(memory.swapUsed, 5u);
    EXPECT_EQ(memory.swapTotal, 6u);
    EXPECT_EQ(memory.freeLevel, 44);
}

TEST(MemoryReader, ARefusedSourceGivesNothing) {
    SettableMemory source;
    EXPECT_EQ(MemoryReader::read(source), std::nullopt);
}

TEST(MemoryReader, PressureIsKnownForThreeLevelsOnly) {
    const auto pressure = [](std::optional<std::int64_t> level) {
        return read({.pageSize = 1, .pressureLevel = level})->pressure;
    };
    EXPECT_EQ(pressure(1), MemoryPressure::normal);
    EXPECT_EQ(pressure(2), MemoryPressure::warning);
    EXPECT_EQ(pressure(3), MemoryPressure::unknown);
    EXPECT_EQ(pressure(4), MemoryPressure::critical);
    EXPECT_EQ(pressure(7), MemoryPressure::unknown);
    EXPECT_EQ(pressure(0), MemoryPressure::unknown);
    EXPECT_EQ(pressure(-1), MemoryPressure::unknown);
    EXPECT_EQ(pressure(std::nullopt), MemoryPressure::unknown);
}

TEST(MemoryReader, FewerInternalPagesThanPurgeableOnesGiveAnAppShareOfZero) {
    const MemorySnapshot memory = *read({.pageSize = 4096, .internal = 9, .purgeable = 10});
    EXPECT_EQ(memory.app, 0u);
    EXPECT_EQ(memory.purgeable, 40960u);
}

TEST(MemoryReader, AnAbsentFreeLevelStaysAbsent) {
    EXPECT_EQ(read({.pageSize = 1})->freeLevel, std::nullopt);
}

TEST(MemoryReader, ImpossibleCountsStayAtTheLargestFigure) {
    constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    const MemorySnapshot memory =
        *read({.pageSize = 1ull << 40, .internal = most, .purgeable = 1, .external = most});
    EXPECT_EQ(memory.cached, most);
    EXPECT_EQ(memory.app, most - (1ull << 40));
}

} // namespace
} // namespace tavero
