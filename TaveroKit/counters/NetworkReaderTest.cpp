#include "counters/NetworkReader.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace tavero {
namespace {

struct Interfaces : NetworkSource {
    std::optional<std::vector<InterfaceCounters>> now;

    std::optional<std::vector<InterfaceCounters>> interfaces() override { return now; }
};

TEST(NetworkReader, AllPhysicalInterfacesCount) {
    Interfaces source;
    source.now = {{.bytesIn = 10, .bytesOut = 1}, {.bytesIn = 5, .bytesOut = 2}};
    EXPECT_EQ(NetworkReader::read(source), (NetworkSnapshot{.bytesIn = 15, .bytesOut = 3}));
}

TEST(NetworkReader, WithoutAnInterfaceTheSumsAreZero) {
    Interfaces source;
    source.now.emplace();
    EXPECT_EQ(NetworkReader::read(source), NetworkSnapshot{});
}

TEST(NetworkReader, AHostThatRefusesIsAbsent) {
    Interfaces source;
    EXPECT_EQ(NetworkReader::read(source), std::nullopt);
}

TEST(NetworkReader, SumsBeyond64BitsStayAtTheLargestValue) {
    constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    Interfaces source;
    source.now = {{.bytesIn = most, .bytesOut = 1}, {.bytesIn = 5, .bytesOut = 1}};
    EXPECT_EQ(NetworkReader::read(source), (NetworkSnapshot{.bytesIn = most, .bytesOut = 2}));
}

} // namespace
} // namespace tavero
