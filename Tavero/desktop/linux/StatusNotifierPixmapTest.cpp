#include "desktop/linux/StatusNotifierPixmap.h"

#include <gtest/gtest.h>

namespace tavero {
namespace {

TEST(StatusNotifierPixmap, SendsEachPixelAsAlphaRedGreenBlue) {
    QImage image(2, 2, QImage::Format_ARGB32);
    image.setPixelColor(0, 0, QColor(1, 2, 3, 4));
    image.setPixelColor(1, 0, QColor(5, 6, 7, 8));
    image.setPixelColor(0, 1, QColor(9, 10, 11, 12));
    image.setPixelColor(1, 1, Qt::transparent);
    const StatusNotifierPixmap pixmap = pixmapOf(image);
    EXPECT_EQ(pixmap.width, 2);
    EXPECT_EQ(pixmap.height, 2);
    EXPECT_EQ(pixmap.argb, QByteArray::fromHex("04010203"
                                               "08050607"
                                               "0c090a0b"
                                               "00000000"));
}

TEST(StatusNotifierPixmap, DividesTheAlphaOut) {
    QImage image(1, 1, QImage::Format_ARGB32_Premultiplied);
    image.fill(QColor(255, 255, 255, 128));
    EXPECT_EQ(pixmapOf(image).argb, QByteArray::fromHex("80ffffff"));
}

TEST(StatusNotifierPixmap, LinesStandWithoutSpaceBetween) {
    const QImage odd = QImage(3, 5, QImage::Format_RGB888); // 12 bytes a line, for 9 of pixels
    EXPECT_EQ(pixmapOf(odd).argb.size(), 3 * 5 * 4);
}

TEST(StatusNotifierPixmap, NoPictureIsAnEmptyOne) {
    EXPECT_EQ(pixmapOf(QImage()), StatusNotifierPixmap{});
}

} // namespace
} // namespace tavero
