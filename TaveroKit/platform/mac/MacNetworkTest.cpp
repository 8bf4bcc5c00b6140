#include "platform/mac/MacNetwork.h"

#include "platform/sim/SimMachine.h"

#include <gtest/gtest.h>

#include <limits>

namespace tavero {
namespace {

using Counters = std::vector<InterfaceCounters>;

constexpr std::uint64_t gigabyte = 1ull << 30;
constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();

// A Mac with settable interfaces, and the source over it.
class Network {
  public:
    SimState& state() { return sim_.state(); }
    std::optional<Counters> read() { return source_.interfaces(); }
    std::optional<Counters> read(const std::vector<SimInterface>& interfaces) {
        state().setInterfaces(interfaces);
        return read();
    }
    // A kernel that answers only the list, with its cut counters.
    std::optional<Counters> readList(const std::vector<SimInterface>& interfaces) {
        state().setInterfaces(interfaces);
        for (const SimInterface& interface : interfaces)
            state().numberedSysctls.erase({4, 18, 0, 2, static_cast<int>(interface.index), 1});
        return read();
    }

  private:
    SimMachine sim_;
    MacNetwork source_{sim_.kernel()};
};

TEST(MacNetwork, CountsOnlyPhysicalInterfaces) {
    Network network;
    EXPECT_EQ(network.read({{.index = 1, .name = "lo0", .counters = {9, 9}},
                            {.index = 4, .name = "en0", .counters = {100, 10}},
                            {.index = 5, .name = "utun3", .counters = {9, 9}},
                            {.index = 6, .name = "bridge0", .counters = {9, 9}},
                            {.index = 7, .name = "EN1", .counters = {9, 9}},
                            {.index = 8, .name = "en10", .counters = {200, 20}}}),
              (Counters{{100, 10}, {200, 20}}));
}

TEST(MacNetwork, AMacWithoutOneHasNoneAndThatIsAnAnswer) {
    Network network;
    EXPECT_EQ(network.read({{.index = 1, .name = "lo0", .counters = {9, 9}}}), Counters{});
}

TEST(MacNetwork, ARefusedOrEmptyListIsAbsent) {
    Network network;
    network.state().numberedSysctls.clear();
    EXPECT_EQ(network.read(), std::nullopt);
    network.state().setInterfaces({});
    EXPECT_EQ(network.read(), std::nullopt);
}

TEST(MacNetwork, ARefusedListForgetsNothing) {
    Network network;
    network.read({{.index = 4, .name = "en0", .counters = {100, 10}}});
    network.state().numberedSysctls.clear();
    EXPECT_EQ(network.read(), std::nullopt);
    EXPECT_EQ(network.read({{.index = 4, .name = "en0", .counters = {150, 15}}}),
              (Counters{{150, 15}}));
}

TEST(MacNetwork, AnInterfaceWithoutANameIsLeftOut) {
    Network network;
    network.state().setInterfaces({{.index = 4, .name = "en0", .counters = {100, 10}}});
    network.state().interfaceNames.clear();
    EXPECT_EQ(network.read(), Counters{});
}

TEST(MacNetwork, CountersArePrecisePastThirtyTwoBits) {
    Network network;
    EXPECT_EQ(network.read({{.index = 4, .name = "en0", .counters = {9 * gigabyte + 1, 5}}}),
              (Counters{{9 * gigabyte + 1, 5}}));
}

TEST(MacNetwork, CutCountersGoOnWhereTheyWrap) {
    Network network;
    network.readList({{.index = 4, .name = "en0", .counters = {3 * gigabyte, 2048}}});
    EXPECT_EQ(network.readList({{.index = 4, .name = "en0", .counters = {5 * gigabyte, 4096}}}),
              (Counters{{5 * gigabyte, 4096}}));
    EXPECT_EQ(network.readList({{.index = 4, .name = "en0", .counters = {8 * gigabyte, 4096}}}),
              (Counters{{8 * gigabyte, 4096}}));
}

TEST(MacNetwork, AnInterfaceThatLeavesKeepsItsLastCount) {
    Network network;
    network.read({{.index = 4, .name = "en0", .counters = {100, 10}},
                  {.index = 9, .name = "en7", .counters = {500, 50}}});
    EXPECT_EQ(network.read({{.index = 4, .name = "en0", .counters = {101, 10}}}),
              (Counters{{101, 10}, {500, 50}}));
}

TEST(MacNetwork, AnInterfaceThatComesBackGoesOn) {
    const SimInterface wifi{.index = 4, .name = "en0", .counters = {100, 10}};
    for (const bool whole : {true, false}) {
        Network network;
        const auto read = [&](const std::vector<SimInterface>& interfaces) {
            return whole ? network.read(interfaces) : network.readList(interfaces);
        };
        read({wifi, {.index = 9, .name = "en7", .counters = {51'200, 10'240}}});
        read({wifi});
        // With counters that began again, under another index.
        const auto back = read({wifi, {.index = 12, .name = "en7", .counters = {3'072, 1'024}}});
        EXPECT_EQ(back->back(), (InterfaceCounters{54'272, 11'264})) << whole;
        const auto later = read({wifi, {.index = 12, .name = "en7", .counters = {4'096, 1'024}}});
        EXPECT_EQ(later->back(), (InterfaceCounters{55'296, 11'264})) << whole;
    }
}

TEST(MacNetwork, AnotherInterfaceOfTheSameNameDoesNotWrap) {
    Network network;
    network.readList({{.index = 9, .name = "en7", .counters = {51'200, 10'240}}});
    // Unplugged and plugged in again between two reads.
    EXPECT_EQ(network.readList({{.index = 12, .name = "en7", .counters = {1'024, 0}}}),
              (Counters{{52'224, 10'240}}));
}

TEST(MacNetwork, ACounterThatStepsBackBeganAgain) {
    Network network;
    network.read({{.index = 4, .name = "en0", .counters = {1000, 1000}}});
    EXPECT_EQ(network.read({{.index = 4, .name = "en0", .counters = {10, 1010}}}),
              (Counters{{1010, 1010}}));
}

TEST(MacNetwork, AChangeOfTheKindOfCountersNeitherStepsBackNorJumps) {
    Network network;
    network.read({{.index = 4, .name = "en0", .counters = {9 * gigabyte, 9 * gigabyte}}});
    EXPECT_EQ(
        network.readList({{.index = 4, .name = "en0", .counters = {9 * gigabyte, 9 * gigabyte}}}),
        (Counters{{9 * gigabyte, 9 * gigabyte}}));
    EXPECT_EQ(network.readList(
                  {{.index = 4, .name = "en0", .counters = {9 * gigabyte + 1024, 9 * gigabyte}}}),
              (Counters{{9 * gigabyte + 1024, 9 * gigabyte}}));
    EXPECT_EQ(network.read({{.index = 4, .name = "en0", .counters = {10 * gigabyte, 0}}}),
              (Counters{{9 * gigabyte + 1024, 9 * gigabyte}}));
}

TEST(MacNetwork, ASumThatOverflowsStaysAtTheLargestCount) {
    Network network;
    network.read({{.index = 4, .name = "en0", .counters = {most, 1}}});
    EXPECT_EQ(network.read({{.index = 4, .name = "en0", .counters = {5, 1}}}),
              (Counters{{most, 1}}));
}

TEST(MacNetwork, AShortAnswerForAnInterfaceFallsBackToTheList) {
    Network network;
    network.state().setInterfaces({{.index = 4, .name = "en0", .counters = {4096, 2048}}});
    network.state().numberedSysctls[{4, 18, 0, 2, 4, 1}].resize(100);
    EXPECT_EQ(network.read(), (Counters{{4096, 2048}}));
}

TEST(MacNetwork, AnAnswerLongerThanAnyIsRefused) {
    Network network;
    network.state().setInterfaces({{.index = 4, .name = "en0", .counters = {4096, 2048}}});
    network.state().numberedSysctls[{4, 18, 0, 2, 4, 1}].assign(10'000, std::byte{0xFF});
    EXPECT_EQ(network.read(), (Counters{{4096, 2048}}));
}

TEST(MacNetwork, AnInterfaceThatIsListedTwiceCountsOnce) {
    Network network;
    EXPECT_EQ(network.read({{.index = 4, .name = "en0", .counters = {100, 10}},
                            {.index = 4, .name = "en0", .counters = {100, 10}}}),
              (Counters{{100, 10}}));
}

} // namespace
} // namespace tavero
