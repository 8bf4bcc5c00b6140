#include "drawing/WholeBar.h"

#include "drawing/test/Canvas.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tavero {
namespace {

constexpr QColor black(0, 0, 0);
constexpr QColor faint(0, 0, 0, 51);

QImage storage(double level) {
    return drawnOn({100, 10}, [&](QPainter& painter) {
        drawStorageBar(painter, level, {0, 0, 100, 10}, black, faint);
    });
}

QImage battery(double level) {
    return drawnOn({60, 25}, [&](QPainter& painter) {
        drawBatteryBar(painter, level, {0, 0, 60, 25}, black, faint);
    });
}

TEST(StorageBar, ItIsFilledFromTheLeftUpToItsLevel) {
    const QImage image = storage(0.4);
    EXPECT_EQ(inkAt(image, 20, 5), 1);
    EXPECT_EQ(inkAt(image, 39, 5), 1);
    EXPECT_NEAR(inkAt(image, 40, 5), 0.2, 0.01);
    EXPECT_NEAR(inkAt(image, 90, 5), 0.2, 0.01);
}

TEST(StorageBar, ItsEndsAreRound) {
    EXPECT_EQ(inkAt(storage(1), 0, 0), 0);
    EXPECT_EQ(inkAt(storage(1), 99, 9), 0);
    EXPECT_GT(inkAt(storage(1), 0, 5), 0.5);
}

TEST(StorageBar, WhatIsNoNumberIsEmptyAndTooMuchIsFull) {
    EXPECT_EQ(storage(std::nan("")), storage(0));
    EXPECT_EQ(storage(3), storage(1));
    EXPECT_NEAR(inkAt(storage(0), 50, 5), 0.2, 0.01);
}

TEST(BatteryBar, ItsContactFillsLast) {
    EXPECT_EQ(inkAt(battery(0.5), 20, 12), 1);
    EXPECT_NEAR(inkAt(battery(0.99), 58, 12), 0.2, 0.01);
    EXPECT_EQ(inkAt(battery(1), 58, 12), 1);
    EXPECT_EQ(inkAt(battery(1), 58, 3), 0) << "above the contact";
    EXPECT_EQ(inkAt(battery(1), 56, 12), 0) << "between the body and the contact";
}

TEST(WholeBar, ARectangleWithoutRoomStaysClear) {
    const QImage image = drawnOn({10, 10}, [](QPainter& painter) {
        drawStorageBar(painter, 1, {}, black, faint);
        drawBatteryBar(painter, 1, {0, 0, 1, 9}, black, faint);
    });
    EXPECT_TRUE(inkOf(image).isEmpty());
}

} // namespace
} // namespace tavero
