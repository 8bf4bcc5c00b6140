#include "desktop/linux/StatusInk.h"

#include <gtest/gtest.h>

namespace tavero {
namespace {

QImage image(QColor color, QSize size = {4, 2}) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(color);
    return image;
}

TEST(StatusInk, SomeDesktopsHaveADarkBarInEveryAppearance) {
    EXPECT_TRUE(hasDarkBar("GNOME", {}));
    EXPECT_TRUE(hasDarkBar("ubuntu:GNOME", {}));
    EXPECT_TRUE(hasDarkBar("sway", {}));
    EXPECT_TRUE(hasDarkBar("XFCE", {}));
    EXPECT_FALSE(hasDarkBar("GNOME-Flashback", {})); // another one
}

TEST(StatusInk, OnOthersTheBarFollowsTheAppearance) {
    for (const char* desktops : {"KDE", "LXQt", "", "a:b:"}) {
        EXPECT_FALSE(hasDarkBar(desktops, {})) << desktops;
        EXPECT_TRUE(hasDarkBar(desktops, {.isDark = true})) << desktops;
    }
}

TEST(StatusInk, TakesTheOpacityOfTheTemplateAndNothingOfItsColor) {
    const QImage result = inked(image(QColor(10, 200, 30, 153)), true, statusInk(true));
    const QColor color = result.pixelColor(0, 0);
    EXPECT_EQ(color.alpha(), 153);
    EXPECT_NEAR(color.red(), 0xF4, 1);
    EXPECT_NEAR(color.blue(), 0xF6, 1);
    EXPECT_EQ(inked(image(Qt::transparent), true, Qt::white).pixelColor(0, 0).alpha(), 0);
}

TEST(StatusInk, WhatIsNoTemplateStaysAsItIs) {
    EXPECT_EQ(inked(image(Qt::red), false, Qt::white), image(Qt::red));
}

TEST(StatusInk, APictureThatIsMissingIsNotOffered) {
    EXPECT_TRUE(offeredPictures({}, "KDE", Qt::black).empty());
    EXPECT_EQ(offeredPictures({.wide = image(Qt::black)}, "KDE", Qt::black).size(), 1);
    EXPECT_EQ(offeredPictures({.square = image(Qt::black)}, "KDE", Qt::black).size(), 2);
    // Better a wide one in a square cell than none.
    EXPECT_EQ(offeredPictures({.wide = image(Qt::black)}, "XFCE", Qt::black).size(), 1);
}

} // namespace
} // namespace tavero
