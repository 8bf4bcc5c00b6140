#include "components/SegmentBar.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace tavero {
namespace {

const QColor track(0xE6E8EC);

QImage drawn(const std::vector<SegmentRow>& segments, QSize size = {100, 10}) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawSegmentBar(painter, segments, size, track);
    return image;
}

SegmentRow segment(double fraction, const QColor& color) {
    return {.fraction = fraction, .color = color};
}

TEST(SegmentBar, SegmentsFollowOneAnotherAndTheRestIsTrack) {
    const QImage image = drawn({segment(0.5, Qt::red), segment(0.25, Qt::blue)});
    EXPECT_EQ(image.pixelColor(25, 5), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(60, 5), QColor(Qt::blue));
    EXPECT_EQ(image.pixelColor(90, 5), track);
}

TEST(SegmentBar, NeighboursAreApart) {
    const QImage image = drawn({segment(0.5, Qt::red), segment(0.5, Qt::red)});
    EXPECT_EQ(image.pixelColor(49, 5), track);
}

TEST(SegmentBar, ItsEndsAreRound) {
    const QImage image = drawn({segment(1, Qt::red)});
    EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0);
    EXPECT_EQ(image.pixelColor(99, 9).alpha(), 0);
    EXPECT_EQ(image.pixelColor(1, 5), QColor(Qt::red));
}

TEST(SegmentBar, MoreThanTheWholeIsCutOffAndBadFractionsAreNothing) {
    const QImage image = drawn({segment(std::nan(""), Qt::green), segment(-1, Qt::green),
                                segment(1e300, Qt::red), segment(0.5, Qt::blue)});
    EXPECT_EQ(image.pixelColor(2, 5), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(95, 5), QColor(Qt::red));
}

TEST(SegmentBar, WithoutSegmentsItIsAnEmptyTrackAndWithoutRoomNothing) {
    EXPECT_EQ(drawn({}).pixelColor(50, 5), track);
    QImage image(4, 4, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawSegmentBar(painter, {}, {0, 4}, track);
    EXPECT_EQ(image.pixelColor(0, 1).alpha(), 0);
}

} // namespace
} // namespace tavero
