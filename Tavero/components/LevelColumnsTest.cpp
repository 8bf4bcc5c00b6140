#include "components/LevelColumns.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace tavero {
namespace {

const QColor color(0x2772AF);
const QColor track(0xE6E8EC);

QImage drawn(const std::vector<double>& levels, QSize size) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawLevelColumns(painter, levels, size, color, track);
    return image;
}

TEST(LevelColumns, FewAreSlimAndStandAtTheLeft) {
    const ColumnPlan plan = planColumns(2, 500);
    EXPECT_EQ(plan.step, 40);
    EXPECT_EQ(plan.width, 36);
}

TEST(LevelColumns, ManyShareTheWidthToTheLastPixel) {
    for (const std::size_t count : {12u, 16u, 24u, 64u, 128u, 256u, 1000u}) {
        const ColumnPlan plan = planColumns(count, 320);
        const double end = plan.step * static_cast<double>(count - 1) + plan.width;
        EXPECT_NEAR(end, 320, 1e-9) << count;
        EXPECT_GT(plan.width, 0) << count;
    }
}

TEST(LevelColumns, VeryManyStandWallToWall) {
    const ColumnPlan plan = planColumns(256, 320);
    EXPECT_EQ(plan.width, plan.step);
}

TEST(LevelColumns, NoneAndNoWidthGiveNoPlan) {
    EXPECT_EQ(planColumns(0, 100).width, 0);
    EXPECT_EQ(planColumns(4, 0).width, 0);
    EXPECT_EQ(planColumns(4, std::numeric_limits<double>::quiet_NaN()).width, 0);
}

TEST(LevelColumns, AHalfLevelFillsTheLowerHalf) {
    const QImage image = drawn({0.5}, {36, 40});
    EXPECT_EQ(image.pixelColor(18, 10), track);
    EXPECT_EQ(image.pixelColor(18, 30), color);
}

TEST(LevelColumns, LevelsOutsideTheHeightAreCutAndNoNumberIsEmpty) {
    const double nan = std::nan("");
    const QImage image = drawn({7, -3, nan}, {120, 40});
    EXPECT_EQ(image.pixelColor(18, 2), color);
    EXPECT_EQ(image.pixelColor(58, 20), track);
    EXPECT_EQ(image.pixelColor(98, 20), track);
}

TEST(LevelColumns, ThereIsAGapBetweenTwo) {
    const QImage image = drawn({1, 1}, {80, 40});
    EXPECT_EQ(image.pixelColor(38, 20).alpha(), 0);
    EXPECT_EQ(image.pixelColor(58, 20), color);
}

TEST(LevelColumns, NoLevelsAndNoRoomDrawNothing) {
    EXPECT_EQ(drawn({}, {10, 10}).pixelColor(5, 5).alpha(), 0);
    QImage image(4, 4, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    const std::vector<double> levels{1};
    drawLevelColumns(painter, levels, {0, 4}, color, track);
    drawLevelColumns(painter, levels, {4, 0}, color, track);
    EXPECT_EQ(image.pixelColor(1, 1).alpha(), 0);
}

} // namespace
} // namespace tavero
