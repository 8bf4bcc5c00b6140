#include "drawing/ScaleLines.h"

#include "drawing/test/Canvas.h"

#include <gtest/gtest.h>

namespace tavero {
namespace {

QImage lines(QSize size) {
    return drawnOn(size, [&](QPainter& painter) { drawScaleLines(painter, size, Qt::black); });
}

TEST(ScaleLines, TheyLieAtTheTopTheMiddleAndTheBottomInsideTheGraph) {
    const QImage image = lines({30, 21});
    for (int y = 0; y < 21; ++y) {
        const bool isLine = y == 0 || y == 10 || y == 20;
        EXPECT_NEAR(inkAt(image, 15, y), isLine ? 0.14 : 0, 0.005) << y;
    }
}

TEST(ScaleLines, TheyGoFromSideToSide) { EXPECT_EQ(inkOf(lines({30, 21})), QRect(0, 0, 30, 21)); }

TEST(ScaleLines, AGraphWithoutHeightHasNone) {
    const QImage image = drawnOn({10, 10}, [](QPainter& painter) {
        drawScaleLines(painter, {10, 0}, Qt::black);
    });
    EXPECT_TRUE(inkOf(image).isEmpty());
}

} // namespace
} // namespace tavero
