#include "presentation/Stat.h"

#include <gtest/gtest.h>

namespace tavero {
namespace {

TEST(Stat, TheLabelChoosesTheSymbol) {
    EXPECT_EQ(Stat{"Load avg"}.symbol(), "gauge.with.dots.needle.33percent");
    EXPECT_EQ(Stat{"Time left"}.symbol(), "hourglass");
    EXPECT_EQ(Stat{"Full in"}.symbol(), "hourglass");
    EXPECT_EQ(Stat{"Lowest battery"}.symbol(), "battery.25percent");
}

TEST(Stat, ALabelWithoutASymbolGetsACircle) {
    EXPECT_EQ(Stat{"CPU"}.symbol(), "circle.fill");
    EXPECT_EQ(Stat{"Fan"}.symbol(), "circle.fill");
    EXPECT_EQ(Stat{""}.symbol(), "circle.fill");
}

TEST(Stat, AnIconReplacesTheLabelsSymbol) {
    const Stat stat{.label = "Connection", .value = "Wired", .icon = "network"};
    EXPECT_EQ(stat.symbol(), "network");
    EXPECT_EQ(Stat{"Connection"}.symbol(), "wifi");
}

} // namespace
} // namespace tavero
