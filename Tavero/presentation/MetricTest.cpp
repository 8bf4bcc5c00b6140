#include "presentation/Metric.h"

#include "presentation/Levels.h"
#include "presentation/MetricStatus.h"

#include <gtest/gtest.h>

namespace tavero {
namespace {

TEST(Metric, TheOrderIsThatOfEveryList) {
    std::string names;
    for (const Metric metric : allMetrics) names += std::string(rawValue(metric)) + " ";
    EXPECT_EQ(names, "cpu memory gpu power disk temperature network ");
}

TEST(Metric, EveryMetricHasItsOwnWordsAndColour) {
    EXPECT_EQ(title(Metric::cpu), "CPU");
    EXPECT_EQ(symbol(Metric::memory), "memorychip");
    EXPECT_EQ(title(Metric::temperature), "Temperature");
    EXPECT_EQ(symbol(Metric::network), "arrow.up.arrow.down");
    EXPECT_EQ(color(Metric::cpu), (AdaptiveColor{{0x2772AF}, {0x5FB0F2}}));
    EXPECT_EQ(color(Metric::network), (AdaptiveColor{{0x5048C4}, {0x8079FF}}));
    for (const Metric a : allMetrics)
        for (const Metric b : allMetrics)
            if (a != b) {
                EXPECT_NE(title(a), title(b));
                EXPECT_NE(symbol(a), symbol(b));
                EXPECT_FALSE(color(a) == color(b));
            }
}

TEST(Tone, ANeutralTextTakesTheSurfacesSecondaryColour) {
    EXPECT_FALSE(colors(Tone::neutral).text);
    EXPECT_EQ(colors(Tone::neutral).background, (AdaptiveColor{{0xEEF1F5}, {0x3A3A3C}}));
    EXPECT_EQ(colors(Tone::good).text, (AdaptiveColor{{0x1F6B34}, {0x6FD08A}}));
    EXPECT_EQ(colors(Tone::warning).background, (AdaptiveColor{{0xFDEBD9}, {0x4A2F17}}));
}

} // namespace
} // namespace tavero
