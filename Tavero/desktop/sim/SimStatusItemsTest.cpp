#include "desktop/sim/SimStatusItems.h"

#include <gtest/gtest.h>

namespace tavero {
namespace {

StatusPicture picture(const std::string& text) {
    QImage image(4, 4, QImage::Format_ARGB32);
    image.fill(Qt::black);
    return {.wide = image, .square = image, .text = text};
}

TEST(SimStatusItems, AnItemIsInTheBarWhileItLives) {
    SimStatusItems bar;
    const auto main = bar.add("main", "Tavero", {});
    auto cpu = bar.add("cpu", "CPU", {});
    ASSERT_EQ(bar.items.size(), 2u);
    EXPECT_EQ(bar.items.back().title, "CPU");
    cpu.reset();
    EXPECT_EQ(bar.find("cpu"), nullptr);
    ASSERT_NE(bar.find("main"), nullptr);
}

TEST(SimStatusItems, OnlyAnotherPictureIsAChange) {
    SimStatusItems bar;
    const auto cpu = bar.add("cpu", "CPU", {});
    cpu->setPicture(picture("CPU 12%"));
    cpu->setPicture(picture("CPU 12%"));
    EXPECT_EQ(bar.find("cpu")->changes, 1);
    cpu->setPicture(picture("CPU 13%"));
    EXPECT_EQ(bar.find("cpu")->changes, 2);
    EXPECT_EQ(bar.find("cpu")->picture.text, "CPU 13%");
}

TEST(SimStatusItems, ItsEventsReachTheOwner) {
    SimStatusItems bar;
    QPoint where;
    const auto cpu = bar.add("cpu", "CPU", {.open = [&](QPoint point) { where = point; }});
    bar.find("cpu")->events.open({7, 9});
    EXPECT_EQ(where, QPoint(7, 9));
}

} // namespace
} // namespace tavero
