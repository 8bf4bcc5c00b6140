#include "desktop/mac/MacStatusItems.h"

#include <gtest/gtest.h>

namespace tavero {
namespace {

// What the bar was told of its only item.
struct Bar {
    std::string id;
    MacStatusEvents events;
    std::vector<MacStatusPicture> shown;
    bool hasItem = false;

    struct Item final : MacStatusItem {
        explicit Item(Bar& theBar) : bar(theBar) { bar.hasItem = true; }
        ~Item() override { bar.hasItem = false; }
        void show(const MacStatusPicture& picture) override { bar.shown.push_back(picture); }
        Bar& bar;
    };

    MacStatusItems items{[this](const std::string& newId, const std::string&, MacStatusEvents e) {
        id = newId;
        events = std::move(e);
        return std::make_unique<Item>(*this);
    }};
};

QImage twoPixels() {
    QImage image(2, 1, QImage::Format_ARGB32);
    image.setPixelColor(0, 0, QColor(255, 100, 0, 255));
    image.setPixelColor(1, 0, QColor(255, 255, 255, 128));
    image.setDevicePixelRatio(2);
    return image;
}

TEST(MacStatusItems, APictureBecomesRedGreenBlueAlphaMultipliedIn) {
    const MacStatusPicture picture =
        macPicture({.wide = twoPixels(), .isTemplate = false, .text = "CPU 12%"});
    EXPECT_EQ(picture.width, 2);
    EXPECT_EQ(picture.height, 1);
    EXPECT_EQ(picture.scale, 2);
    EXPECT_EQ(picture.rgba, (std::vector<std::uint8_t>{255, 100, 0, 255, 128, 128, 128, 128}));
    EXPECT_FALSE(picture.isTemplate);
    EXPECT_EQ(picture.text, "CPU 12%");
}

TEST(MacStatusItems, LinesStandWithoutSpaceBetween) {
    QImage image(3, 5, QImage::Format_Mono);
    image.fill(1);
    EXPECT_EQ(macPicture({.wide = image}).rgba.size(), 3u * 5 * 4);
}

TEST(MacStatusItems, TheBarSeesOnlyAnotherPictureAndNeverNone) {
    Bar bar;
    const auto item = bar.items.add("cpu", "CPU", {});
    EXPECT_EQ(bar.id, "cpu");
    item->setPicture({.text = "CPU"}); // the title stays
    EXPECT_EQ(bar.shown.size(), 0u);
    item->setPicture({.wide = twoPixels(), .text = "CPU 12%"});
    item->setPicture({.wide = twoPixels(), .text = "CPU 12%"});
    EXPECT_EQ(bar.shown.size(), 1u);
    item->setPicture({.wide = twoPixels(), .text = "CPU 13%"});
    EXPECT_EQ(bar.shown.size(), 2u);
}

TEST(MacStatusItems, ClicksAndRemovalReachTheOwner) {
    Bar bar;
    QPoint where;
    bool wasRemoved = false;
    auto item = bar.items.add(
        "cpu", "CPU",
        {.open = [&](QPoint at) { where = at; }, .removed = [&] { wasRemoved = true; }});
    bar.events.clicked(30, 12);
    bar.events.removed();
    EXPECT_EQ(where, QPoint(30, 12));
    EXPECT_TRUE(wasRemoved);
    item.reset();
    EXPECT_FALSE(bar.hasItem);
}

} // namespace
} // namespace tavero
