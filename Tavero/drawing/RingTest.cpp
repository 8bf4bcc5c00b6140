#include "drawing/Ring.h"

#include "drawing/test/Canvas.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace tavero {
namespace {

constexpr QColor black(0, 0, 0);
constexpr QColor quarter(0, 0, 0, 64);

QImage ring(double level) {
    return drawnOn({40, 40}, [&](QPainter& painter) {
        drawRing(painter, level, {0, 0, 40, 40}, 8, black, quarter);
    });
}

TEST(Ring, ItStartsAtTheTopAndGoesClockwise) {
    const QImage image = ring(0.25);
    EXPECT_EQ(inkAt(image, 32, 8), 1); // upper right
    EXPECT_NEAR(inkAt(image, 32, 32), 0.25, 0.01);
    EXPECT_NEAR(inkAt(image, 7, 32), 0.25, 0.01);
    EXPECT_NEAR(inkAt(image, 7, 8), 0.25, 0.01);
}

TEST(Ring, NothingIsTheTrackAlone) {
    EXPECT_EQ(ring(0), ring(-1));
    EXPECT_EQ(ring(0), ring(std::nan("")));
    EXPECT_NEAR(inkAt(ring(0), 20, 3), 0.25, 0.01);
}

TEST(Ring, MoreThanAllIsAll) {
    EXPECT_EQ(ring(1), ring(1.7));
    EXPECT_EQ(ring(0), ring(std::numeric_limits<double>::infinity())) << "no number";
    for (const auto& [x, y] : {std::pair{20, 3}, {36, 20}, {20, 36}, {3, 20}})
        EXPECT_EQ(inkAt(ring(1), x, y), 1);
}

TEST(Ring, ItStaysInsideItsRectangleAndLeavesTheMiddleClear) {
    const QImage image = drawnOn({40, 40}, [](QPainter& painter) {
        drawRing(painter, 1, {10, 10, 20, 20}, 4, black, quarter);
    });
    EXPECT_EQ(inkOf(image), QRect(10, 10, 20, 20));
    EXPECT_EQ(inkAt(image, 20, 20), 0);
}

TEST(Ring, ARectangleWithoutRoomStaysClear) {
    const QImage image = drawnOn({8, 8}, [](QPainter& painter) {
        drawRing(painter, 1, {2, 2, 2, 2}, 4, black, quarter);
    });
    EXPECT_TRUE(inkOf(image).isEmpty());
}

} // namespace
} // namespace tavero
