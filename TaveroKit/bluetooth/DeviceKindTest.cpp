#include "bluetooth/DeviceKind.h"

#include "bluetooth/DeviceName.h"

#include <gtest/gtest.h>

namespace tavero {
namespace {

std::string_view symbolOf(const std::string& name, std::optional<std::string> kind = {}) {
    return DeviceKind::symbol({.name = name, .kind = std::move(kind)});
}

TEST(DeviceKind, TheKindThatADeviceTellsIsItsLabel) {
    EXPECT_EQ(DeviceKind::label({.name = "Some iPad", .kind = "Keyboard"}), "Keyboard");
}

TEST(DeviceKind, ANameServesWhereTheKindIsMissingOrEmpty) {
    EXPECT_EQ(DeviceKind::label({.name = "Anna’s iPad"}), "Tablet");
    EXPECT_EQ(DeviceKind::label({.name = "IPHONE 20", .kind = ""}), "Phone");
    EXPECT_EQ(DeviceKind::label({.name = "Earbuds"}), std::nullopt);
    EXPECT_EQ(DeviceKind::label({}), std::nullopt);
}

TEST(DeviceKind, EveryKindHasItsSymbol) {
    EXPECT_EQ(symbolOf("", "Headphones"), "headphones");
    EXPECT_EQ(symbolOf("", "Headset"), "headphones");
    EXPECT_EQ(symbolOf("Anna’s AirPods Pro"), "airpods");
    EXPECT_EQ(symbolOf("", "Keyboard"), "keyboard");
    EXPECT_EQ(symbolOf("", "Mouse"), "computermouse");
    EXPECT_EQ(symbolOf("", "AppleTrackpad"), "rectangle.and.hand.point.up.left");
    EXPECT_EQ(symbolOf("", "Speaker"), "hifispeaker");
    EXPECT_EQ(symbolOf("", "Gamepad"), "gamecontroller");
    EXPECT_EQ(symbolOf("", "Game Controller"), "gamecontroller");
    EXPECT_EQ(symbolOf("", "Joystick"), "gamecontroller");
    EXPECT_EQ(symbolOf("Anna’s iPad"), "ipad");
    EXPECT_EQ(symbolOf("Anna’s iPhone"), "iphone");
    EXPECT_EQ(symbolOf("Anna’s", "MobilePhone"), "iphone");
    EXPECT_EQ(symbolOf("", "Toaster"), "dot.radiowaves.left.and.right");
    EXPECT_EQ(symbolOf(""), "dot.radiowaves.left.and.right");
}

TEST(DeviceKind, TheFirstHitWins) {
    EXPECT_EQ(symbolOf("AirPods", "Headphones"), "headphones");
    EXPECT_EQ(symbolOf("AirPods", "Speaker"), "airpods");
    EXPECT_EQ(symbolOf("iPad iPhone"), "ipad");
    EXPECT_EQ(symbolOf("iPad", "Keyboard"),
              "keyboard"); // a keyboard named for what it is used with
}

TEST(DeviceKind, ANameCountsOnlyAsANameAndAKindOnlyAsAKind) {
    EXPECT_EQ(symbolOf("My Keyboard"), "dot.radiowaves.left.and.right");
    EXPECT_EQ(symbolOf("", "AirPods"), "dot.radiowaves.left.and.right");
}

TEST(DeviceName, WhiteSpaceOfEveryScriptIsTrimmedAtBothEndsOnly) {
    EXPECT_EQ(deviceName(" \t\nMy  Mouse \xE3\x80\x80\xC2\xA0"), "My  Mouse");
    EXPECT_EQ(deviceName("\xE2\x80\x83"), "");
    EXPECT_EQ(deviceName(""), "");
}

TEST(DeviceName, OtherBytesStay) {
    EXPECT_EQ(deviceName("\xFF\x80"), "\xFF\x80");
    EXPECT_EQ(deviceName("耳机"), "耳机");
    EXPECT_EQ(deviceName("\xE2\x80"), "\xE2\x80");
    EXPECT_EQ(deviceName("\xC3\xA0"), "\xC3\xA0"); // a letter that ends like a no-break space
}

} // namespace
} // namespace tavero
