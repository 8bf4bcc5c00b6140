#include "platform/linux/MonotonicCounter.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace tavero {
namespace {

TEST(MonotonicCounter, StartsWithWhatWasCountedBefore) {
    MonotonicCounter counter;
    EXPECT_EQ(counter.total(), 0u);
    counter.update(500);
    EXPECT_EQ(counter.total(), 500u);
    counter.update(520);
    EXPECT_EQ(counter.total(), 520u);
}

TEST(MonotonicCounter, AStepBackStandsStillAndCountsOnFromThere) {
    MonotonicCounter counter;
    counter.update(500);
    counter.update(3);
    EXPECT_EQ(counter.total(), 500u);
    counter.update(10);
    EXPECT_EQ(counter.total(), 507u);
}

TEST(MonotonicCounter, AnotherDeviceAddsAllThatItCounted) {
    MonotonicCounter counter;
    counter.update(500);
    counter.startOver();
    counter.update(510);
    EXPECT_EQ(counter.total(), 1010u);
}

TEST(MonotonicCounter, StaysAtTheLargestValue) {
    constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    MonotonicCounter counter;
    counter.update(most);
    counter.update(0);
    counter.update(5);
    EXPECT_EQ(counter.total(), most);
}

} // namespace
} // namespace tavero
