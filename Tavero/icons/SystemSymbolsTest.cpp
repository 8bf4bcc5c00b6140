#include "icons/Symbols.h"

#include "desktop/mac/HostSymbols.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

namespace tavero {

// A system with one symbol: its upper half is covered.
std::optional<SymbolExtent> hostSymbolExtent(std::string_view name, double pointSize) {
    if (name != "half") return std::nullopt;
    return SymbolExtent{pointSize * 2, pointSize};
}

std::optional<SymbolMask> hostSymbolMask(std::string_view name, int width, int height) {
    if (name != "half") return std::nullopt;
    SymbolMask mask{width, height, {}};
    for (int y = 0; y < height; ++y)
        mask.coverage.insert(mask.coverage.end(), static_cast<std::size_t>(width),
                             y < height / 2 ? std::uint8_t{255} : std::uint8_t{0});
    return mask;
}

namespace {

QImage drawn(std::string_view name, const QRectF& box, double scale) {
    QImage image(40, 40, QImage::Format_ARGB32);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawSymbol(painter, name, box, QColor(255, 0, 0, 128));
    return image;
}

TEST(SystemSymbols, TheSystemDecidesWhatThereIsAndHowWide) {
    EXPECT_TRUE(hasSymbol("half"));
    EXPECT_FALSE(hasSymbol("none"));
    EXPECT_EQ(symbolSize("half", 11), QSizeF(22, 11));
    EXPECT_TRUE(symbolSize("none", 11).isEmpty());
    EXPECT_TRUE(symbolSize("half", 0).isEmpty());
}

TEST(SystemSymbols, TheMaskIsPaintedInTheColourAtEveryScale) {
    for (const double scale : {1.0, 2.0}) {
        const QImage image =
            drawn("half", QRectF(10 / scale, 10 / scale, 20 / scale, 20 / scale), scale);
        EXPECT_EQ(image.pixelColor(15, 12), QColor(255, 0, 0, 128));
        EXPECT_EQ(image.pixelColor(15, 25).alpha(), 0);
        EXPECT_EQ(image.pixelColor(8, 12).alpha(), 0);
        EXPECT_EQ(image.pixelColor(32, 12).alpha(), 0);
    }
}

TEST(SystemSymbols, WithoutPictureOrRoomNothingIsDrawn) {
    QImage empty(40, 40, QImage::Format_ARGB32);
    empty.fill(Qt::transparent);
    EXPECT_EQ(drawn("none", QRectF(0, 0, 20, 20), 1), empty);
    EXPECT_EQ(drawn("half", QRectF(5, 5, 0, 20), 1), empty);
}

} // namespace
} // namespace tavero
