#include "monitor/PowerShares.h"

#include "presentation/MetricReading.h"

#include <gtest/gtest.h>

#include <limits>

namespace tavero {
namespace {

AppUsage app(double cpu, std::optional<double> gpu = {}) {
    AppUsage row{.identity = {AppIdentity::Kind::app, "App"}, .name = "App", .cpu = cpu};
    row.gpu = gpu;
    return row;
}

TEST(PowerShares, AreByTheUseOfCPUAndTwiceTheGPU) {
    const auto rows = withWatts({app(2), app(1, 0.5), app(0)}, 20);
    EXPECT_EQ(rows[0].watts, 10);
    EXPECT_EQ(rows[1].watts, 10);
    EXPECT_EQ(rows[2].watts, 0);
}

TEST(PowerShares, ChildrenCountInTheirAppOnly) {
    AppUsage parent = app(3);
    parent.children = {app(2), app(1)};
    const auto rows = withWatts({parent, app(1)}, 8);
    EXPECT_EQ(rows[0].watts, 6);
    EXPECT_EQ(rows[0].children[0].watts, 4);
    EXPECT_EQ(rows[0].children[1].watts, 2);
    EXPECT_EQ(rows[1].watts, 2);
}

TEST(PowerShares, RowsWithoutCPUHaveNoWatts) {
    for (const AppUsage& row : withWatts({app(0), app(0, 0)}, 20)) EXPECT_FALSE(row.watts);
}

TEST(PowerShares, AMachineWithoutBatteryAndControllerHasNoWatts) {
    const LiveSnapshot snapshot;
    EXPECT_FALSE(withWatts({app(1)}, powerDraw(snapshot))[0].watts);
    EXPECT_FALSE(withWatts({app(1)}, 0)[0].watts);
    EXPECT_FALSE(withWatts({app(1)}, -3)[0].watts);
    EXPECT_TRUE(withWatts({}, 20).empty());
}

TEST(PowerShares, RowsKeepTheirWattsWhenThereIsNothingToShare) {
    AppUsage row = app(1);
    row.watts = 5;
    EXPECT_EQ(withWatts({row}, std::nullopt)[0].watts, 5);
}

TEST(PowerShares, WhatIsNoNumberWeighsNothing) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    const auto rows = withWatts({app(nan, nan), app(1)}, 20);
    EXPECT_EQ(rows[0].watts, 0);
    EXPECT_EQ(rows[1].watts, 20);
    EXPECT_FALSE(withWatts({app(1)}, nan)[0].watts);
}

TEST(PowerShares, UseBeyondAllNumbersIsNotShared) {
    constexpr double most = std::numeric_limits<double>::max();
    EXPECT_FALSE(withWatts({app(most), app(most)}, 0.5)[0].watts);
}

} // namespace
} // namespace tavero
