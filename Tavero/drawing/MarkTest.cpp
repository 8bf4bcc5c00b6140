#include "drawing/Mark.h"

#include "drawing/test/Canvas.h"

#include <gtest/gtest.h>

namespace tavero {
namespace {

QImage mark(bool hasDot) {
    return drawnOn({40, 32}, [&](QPainter& painter) {
        painter.scale(2, 2);
        drawMark(painter, {0, 0}, Qt::black, hasDot);
    });
}

TEST(Mark, ItFillsTheHeightOfItsBoxAndIsCentred) {
    EXPECT_EQ(inkOf(mark(false)), QRect(4, 0, 32, 32));
}

TEST(Mark, TheDotStandsClearInTheUpperRightCorner) {
    const QImage image = mark(true);
    EXPECT_EQ(inkAt(image, 34, 5), 1);
    EXPECT_EQ(inkAt(image, 27, 8), 0) << "between the glyph and the dot";
    EXPECT_TRUE(QRect(0, 0, 40, 32).contains(inkOf(image)));
    EXPECT_EQ(image.copy(0, 0, 20, 32), mark(false).copy(0, 0, 20, 32)) << "the rest stays";
}

} // namespace
} // namespace tavero
