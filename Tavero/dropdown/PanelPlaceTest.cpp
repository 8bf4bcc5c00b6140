#include "dropdown/PanelPlace.h"

#include <gtest/gtest.h>

namespace tavero {
namespace {

constexpr QRect screen{0, 0, 1920, 1080};
constexpr QSize panel{340, 400};

TEST(PanelPlace, BelowAClickInTheTopBar) {
    EXPECT_EQ(panelPlace(panel, {1000, 12}, screen), QPoint(830, 26));
}

TEST(PanelPlace, NeverOnTopOfABar) {
    EXPECT_EQ(panelPlace(panel, {1000, 2}, {0, 32, 1920, 1048}).y(), 38);
}

TEST(PanelPlace, AboveAClickInTheBottomBar) {
    const QRect available(0, 0, 1920, 1040); // above a bar of 40
    EXPECT_EQ(panelPlace(panel, {1000, 1060}, available), QPoint(830, 634));
}

TEST(PanelPlace, AClickInACornerKeepsItOnTheScreen) {
    EXPECT_EQ(panelPlace(panel, {1915, 10}, screen).x(), 1574);
    EXPECT_EQ(panelPlace(panel, {3, 10}, screen).x(), 6);
}

TEST(PanelPlace, AnUnknownClickIsTheTopRight) {
    EXPECT_EQ(panelPlace(panel, {}, {0, 30, 1920, 1050}), QPoint(1574, 36));
}

TEST(PanelPlace, APanelLargerThanTheScreenShowsItsTop) {
    EXPECT_EQ(panelPlace({2000, 1200}, {1000, 12}, screen), QPoint(6, 6));
}

TEST(PanelPlace, AScreenToTheLeftHasNegativePoints) {
    EXPECT_EQ(panelPlace(panel, {-900, 12}, {-1920, 0, 1920, 1080}), QPoint(-1070, 26));
}

} // namespace
} // namespace tavero
