#include "presentation/ScaledGraph.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tavero {
namespace {

using testing::ElementsAre;

TEST(ScaledGraph, ARateTellsItsTop) {
    EXPECT_EQ(graphScale(Metric::disk, 2 * 1048576.0, {}), "2 MB/s");
    EXPECT_EQ(graphScale(Metric::network, 1.5 * 1048576.0, {}), "1.5 MB/s");
    EXPECT_EQ(graphScale(Metric::network, std::nullopt, {}), "");
}

TEST(ScaledGraph, AShareIsOfAHundred) {
    for (const Metric metric : {Metric::cpu, Metric::memory, Metric::gpu})
        EXPECT_EQ(graphScale(metric, std::nullopt, {}), "100%");
    EXPECT_EQ(graphScale(Metric::temperature, std::nullopt, {}), "");
}

TEST(ScaledGraph, TheHairlinesLieInside) {
    EXPECT_THAT(hairlines(64), ElementsAre(0.5, 32, 63.5));
    EXPECT_THAT(hairlines(1), ElementsAre(0.5, 0.5, 0.5));
    EXPECT_THAT(hairlines(0), ElementsAre(0.5, 0.5, 0.5));
    EXPECT_THAT(hairlines(-3), ElementsAre(0.5, 0.5, 0.5));
}

} // namespace
} // namespace tavero
