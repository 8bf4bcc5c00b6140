#include "drawing/LevelBars.h"

#include "drawing/test/Canvas.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace tavero {
namespace {

QImage bars(const std::vector<double>& heights) {
    return drawnOn({20, 20}, [&](QPainter& painter) {
        drawLevelBars(painter, heights, {0, 0, 20, 20}, Qt::black);
    });
}

TEST(LevelBars, FourStandOnTheBottomInTheMiddle) {
    EXPECT_EQ(levelBarsWidth(4), 16);
    EXPECT_EQ(inkOf(bars({1, 1, 1, 1})), QRect(2, 0, 16, 20));
    EXPECT_EQ(inkOf(bars({0.5, 0.5, 0.5, 0.5})), QRect(2, 10, 16, 10));
}

TEST(LevelBars, EachHasItsOwnHeight) {
    const QImage image = bars({1, 0.5});
    EXPECT_EQ(inkAt(image, 8, 5), 1);  // the first reaches above the middle
    EXPECT_EQ(inkAt(image, 12, 5), 0); // the second does not
    EXPECT_EQ(inkAt(image, 12, 15), 1);
}

TEST(LevelBars, WhatIsNoNumberOrOutsideIsClamped) {
    EXPECT_EQ(bars({2, -1}), bars({1, 0}));
    EXPECT_EQ(bars({std::nan(""), 1}), bars({0, 1}));
}

TEST(LevelBars, NoBarsDrawNothing) {
    EXPECT_EQ(levelBarsWidth(0), 0);
    EXPECT_TRUE(inkOf(bars({})).isEmpty());
}

} // namespace
} // namespace tavero
