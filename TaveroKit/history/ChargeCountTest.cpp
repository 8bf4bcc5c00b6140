#include "history/ChargeCount.h"

#include <gtest/gtest.h>

#include <limits>

namespace tavero {
namespace {

TEST(ChargeCount, NoLevelOrOneIsNoCharge) {
    EXPECT_EQ(chargeCount({}), 0);
    EXPECT_EQ(chargeCount({50}), 0);
}

TEST(ChargeCount, ARiseOf15PointsIsAChargeAndOneOf14IsNone) {
    EXPECT_EQ(chargeCount({20, 35}), 1);
    EXPECT_EQ(chargeCount({20, 34}), 0);
}

TEST(ChargeCount, TheRiseIsFromTheLowestLevelSeen) {
    EXPECT_EQ(chargeCount({60, 20, 30, 34}), 0);
    EXPECT_EQ(chargeCount({60, 20, 30, 35}), 1);
}

TEST(ChargeCount, AFallOf5PointsEndsAChargeAndTheNextCanFollow) {
    EXPECT_EQ(chargeCount({20, 35, 30, 45}), 2);
}

TEST(ChargeCount, AFallOf4PointsIsStillTheSameCharge) {
    EXPECT_EQ(chargeCount({20, 35, 31, 45}), 1);
}

TEST(ChargeCount, TheFallIsFromTheHighestLevelOfTheCharge) {
    EXPECT_EQ(chargeCount({20, 35, 90, 86, 85, 100}), 2);
    EXPECT_EQ(chargeCount({20, 35, 90, 86, 86, 100}), 1);
}

TEST(ChargeCount, AChargeInManySmallStepsCountsOnce) {
    std::vector<std::int64_t> levels;
    for (std::int64_t level = 10; level <= 100; ++level) levels.push_back(level);
    EXPECT_EQ(chargeCount(levels), 1);
}

TEST(ChargeCount, ASteadyFallIsNoCharge) {
    std::vector<std::int64_t> levels;
    for (std::int64_t level = 100; level >= 10; --level) levels.push_back(level);
    EXPECT_EQ(chargeCount(levels), 0);
}

TEST(ChargeCount, LevelsBeyondAllReasonAreCompared) {
    constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(chargeCount({least, most, least, most}), 2);
}

} // namespace
} // namespace tavero
