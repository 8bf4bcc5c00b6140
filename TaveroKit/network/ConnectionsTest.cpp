#include "network/Connections.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>

namespace tavero {
namespace {

using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

constexpr std::int32_t browser = 702;
constexpr std::int32_t mail = 881;

// Handles as a service would give them: addresses, never looked at.
constexpr std::array<char, 3> handles{};
constexpr Connections::Source first = &handles[0];
constexpr Connections::Source second = &handles[1];
constexpr Connections::Source third = &handles[2];

// Connections whose baseline is taken.
class ConnectionsTest : public testing::Test {
  protected:
    ConnectionsTest() { connections.collect(); }

    void open(Connections::Source source, std::int32_t pid) {
        connections.opened(source);
        connections.described(source, pid, "");
    }

    Connections connections;
};

TEST(Connections, TheFirstCollectIsEmptyAndTheNextGivesOnlyTheGrowthBetween) {
    Connections connections;
    connections.opened(first);
    connections.described(first, browser, "Wayfarer");
    connections.counted(first, {.received = 5'000, .sent = 700});
    EXPECT_THAT(connections.collect(), IsEmpty());
    connections.counted(first, {.received = 5'030, .sent = 704});
    EXPECT_THAT(connections.collect(),
                UnorderedElementsAre(Pair(browser, NetworkBytes{.received = 30, .sent = 4})));
}

TEST(Connections, WhatAnUnknownProcessMovedBeforeTheFirstCollectIsNotReportedLater) {
    Connections connections;
    connections.counted(first, {.received = 5'000, .sent = 700});
    connections.collect();
    connections.counted(first, {.received = 5'001, .sent = 700});
    connections.described(first, browser, "Wayfarer");
    EXPECT_THAT(connections.collect(),
                UnorderedElementsAre(Pair(browser, NetworkBytes{.received = 1, .sent = 0})));
}

TEST_F(ConnectionsTest, OneThatOpensAndClosesBetweenTwoCollectsReportsAllItsBytesOnce) {
    open(first, browser);
    connections.counted(first, {.received = 900, .sent = 80});
    connections.removed(first);
    EXPECT_THAT(connections.collect(),
                UnorderedElementsAre(Pair(browser, NetworkBytes{.received = 900, .sent = 80})));
    EXPECT_THAT(connections.collect(), IsEmpty()); // gone, not even a zero
}

TEST_F(ConnectionsTest, TwoOfOneProcessAddUp) {
    open(first, browser);
    open(second, browser);
    open(third, mail);
    connections.counted(first, {.received = 10, .sent = 1});
    connections.counted(second, {.received = 20, .sent = 2});
    connections.counted(third, {.received = 40, .sent = 4});
    EXPECT_THAT(connections.collect(),
                UnorderedElementsAre(Pair(browser, NetworkBytes{.received = 30, .sent = 3}),
                                     Pair(mail, NetworkBytes{.received = 40, .sent = 4})));
}

TEST_F(ConnectionsTest, OneWhoseProcessBecomesKnownReportsAllSinceItsStart) {
    connections.opened(first);
    connections.counted(first, {.received = 100, .sent = 10});
    EXPECT_THAT(connections.collect(), IsEmpty());
    connections.counted(first, {.received = 150, .sent = 15});
    EXPECT_THAT(connections.collect(), IsEmpty());
    connections.described(first, mail, "Mail");
    EXPECT_THAT(connections.collect(),
                UnorderedElementsAre(Pair(mail, NetworkBytes{.received = 150, .sent = 15})));
}

TEST_F(ConnectionsTest, OneThatClosesBeforeItsProcessIsKnownIsDropped) {
    connections.opened(first);
    connections.counted(first, {.received = 100, .sent = 10});
    connections.removed(first);
    EXPECT_THAT(connections.collect(), IsEmpty());
    connections.described(first, mail, "Mail"); // too late: this begins another
    EXPECT_THAT(connections.collect(), UnorderedElementsAre(Pair(mail, NetworkBytes{})));
}

TEST_F(ConnectionsTest, ACounterThatFallsGivesNothingAndSetsTheNewBaseline) {
    open(first, browser);
    connections.counted(first, {.received = 1'000, .sent = 1'000});
    connections.collect();
    connections.counted(first, {.received = 400, .sent = 1'001});
    EXPECT_THAT(connections.collect(),
                UnorderedElementsAre(Pair(browser, NetworkBytes{.received = 0, .sent = 1})));
    connections.counted(first, {.received = 450, .sent = 1'001});
    EXPECT_THAT(connections.collect(),
                UnorderedElementsAre(Pair(browser, NetworkBytes{.received = 50, .sent = 0})));
}

TEST_F(ConnectionsTest, AClosedOneWhoseHandleIsGivenAgainKeepsItsBytes) {
    open(first, browser);
    connections.counted(first, {.received = 900, .sent = 80});
    connections.removed(first);
    open(first, mail);
    connections.counted(first, {.received = 5, .sent = 6});
    EXPECT_THAT(connections.collect(),
                UnorderedElementsAre(Pair(browser, NetworkBytes{.received = 900, .sent = 80}),
                                     Pair(mail, NetworkBytes{.received = 5, .sent = 6})));
    connections.counted(first, {.received = 7, .sent = 6}); // the second one is still open
    EXPECT_THAT(connections.collect(),
                UnorderedElementsAre(Pair(mail, NetworkBytes{.received = 2, .sent = 0})));
}

TEST_F(ConnectionsTest, AHandleThatIsGivenAgainStartsWithoutAProcess) {
    open(first, browser);
    connections.removed(first);
    connections.opened(first);
    connections.counted(first, {.received = 5, .sent = 6});
    EXPECT_THAT(connections.collect(), UnorderedElementsAre(Pair(browser, NetworkBytes{})));
}

TEST(Connections, AHandleGivenAgainBeforeTheFirstCollectIsNoBurst) {
    Connections connections;
    connections.opened(first);
    connections.described(first, browser, "Wayfarer");
    connections.counted(first, {.received = 5'000, .sent = 700});
    connections.removed(first);
    connections.opened(first);
    EXPECT_THAT(connections.collect(), IsEmpty());
    EXPECT_THAT(connections.collect(), IsEmpty());
}

TEST_F(ConnectionsTest, WhatIsToldOfAnUnknownHandleBeginsAConnection) {
    connections.counted(first, {.received = 3, .sent = 4});
    connections.described(first, mail, "Mail");
    connections.removed(second);
    EXPECT_THAT(connections.collect(),
                UnorderedElementsAre(Pair(mail, NetworkBytes{.received = 3, .sent = 4})));
}

TEST_F(ConnectionsTest, APidBelowOneIsNobody) {
    open(first, -5);
    connections.counted(first, {.received = 3, .sent = 4});
    EXPECT_THAT(connections.collect(), IsEmpty());
    connections.described(first, 1, "launchd");
    EXPECT_THAT(connections.collect(),
                UnorderedElementsAre(Pair(1, NetworkBytes{.received = 3, .sent = 4})));
}

TEST_F(ConnectionsTest, CountsPast64BitsStayAtTheLargest) {
    constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    open(first, browser);
    open(second, browser);
    connections.counted(first, {.received = most, .sent = 1ull << 63});
    connections.counted(second, {.received = 2, .sent = 1});
    EXPECT_THAT(connections.collect(),
                UnorderedElementsAre(
                    Pair(browser, NetworkBytes{.received = most, .sent = (1ull << 63) + 1})));
}

} // namespace
} // namespace tavero
