#include "text/TextTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <clocale>
#include <limits>

namespace tavero {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TextTableTest : public testing::Test {
  protected:
    void SetUp() override { ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr); }

    std::vector<std::string> usage(int columns = 80) {
        return usageTable("Apps", apps, {}, {}, columns);
    }

    std::vector<AppUsage> apps{{.name = "Mail", .cpu = 0.5, .memory = 1ull << 30},
                               {.name = "Game", .cpu = 1.5, .memory = 3ull << 30}};
};

TEST_F(TextTableTest, WithoutAppsThereIsNoTable) {
    EXPECT_THAT(usageTable("Apps", {}, {}, {}, 80), IsEmpty());
    EXPECT_THAT(networkTable("Apps", {}, {}, {}, 80), IsEmpty());
}

TEST_F(TextTableTest, TheGpuAndThePowerHaveAColumnIfAnyAppHasAFigure) {
    EXPECT_THAT(usage(), ElementsAre("Apps                               CPU      Memory",
                                     "Mail                               50%      1.0 GB",
                                     "Game                              150%      3.0 GB"));
    apps[0].gpu = std::numeric_limits<double>::quiet_NaN(); // no figure
    EXPECT_EQ(usage()[0], "Apps                               CPU      Memory");
    apps[1].gpu = 0.25;
    apps[1].watts = 4.25;
    apps[1].note = "rendering";
    EXPECT_THAT(usage(),
                ElementsAre("Apps                               CPU      Memory     GPU     Power",
                            "Mail                               50%      1.0 GB       –         –",
                            "Game                              150%      3.0 GB     25%     4.2 W"
                            "  rendering"));
}

TEST_F(TextTableTest, TheNetworkIsToldNowAndInAll) {
    apps[0].networkInRate = 1024;
    apps[0].networkOutTotal = std::numeric_limits<std::uint64_t>::max();
    apps[0].networkInTotal = 1; // does not wrap
    apps.pop_back();
    EXPECT_THAT(
        networkTable("Apps", apps, {}, {}, 80),
        ElementsAre("Apps                                Download        Upload       Total",
                    "Mail                                  1 KB/s        0 KB/s 1717986918…"));
}

TEST_F(TextTableTest, WhatHasNoRoomGivesWayFromTheRight) {
    apps.resize(1);
    EXPECT_THAT(usage(35), ElementsAre("Apps                            CPU",
                                       "Mail                            50%"));
    EXPECT_THAT(usage(3), ElementsAre("Ap…", "Ma…"));
    EXPECT_THAT(usage(0), ElementsAre("", ""));
}

} // namespace
} // namespace tavero
