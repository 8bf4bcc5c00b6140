#include "monitor/Cadence.h"

#include <gtest/gtest.h>

#include <limits>

namespace tavero {
namespace {

using namespace std::chrono_literals;
using Detail = MonitorEngine::Detail;

TEST(Cadence, EveryTwelfthClosedPassIsFullAndSoIsTheFirst) {
    Cadence cadence;
    for (int pass = 0; pass < 48; ++pass)
        EXPECT_EQ(cadence.nextPass().detail, pass % 12 == 0 ? Detail::full : Detail::light) << pass;
}

TEST(Cadence, TheClosedCountGoesOnAcrossOpenSurfaces) {
    Cadence cadence;
    for (int pass = 0; pass < 5; ++pass) cadence.nextPass();
    cadence.appeared(ViewKind::compact);
    for (int pass = 0; pass < 100; ++pass) EXPECT_EQ(cadence.nextPass().detail, Detail::full);
    cadence.disappeared(ViewKind::compact);
    for (int pass = 5; pass < 12; ++pass) EXPECT_EQ(cadence.nextPass().detail, Detail::light);
    EXPECT_EQ(cadence.nextPass().detail, Detail::full);
}

TEST(Cadence, EachStateAsksForItsOwnRowsAndThreads) {
    Cadence cadence;
    EXPECT_EQ(cadence.nextPass(), (Cadence::Pass{Detail::full, 20, false}));
    cadence.appeared(ViewKind::compact);
    EXPECT_EQ(cadence.nextPass(), (Cadence::Pass{Detail::full, 8, false}));
    cadence.appeared(ViewKind::window);
    EXPECT_EQ(cadence.nextPass(), (Cadence::Pass{Detail::full, 40, true}));
    cadence.disappeared(ViewKind::compact);
    EXPECT_EQ(cadence.nextPass(), (Cadence::Pass{Detail::full, 40, true}));
    cadence.disappeared(ViewKind::window);
    EXPECT_EQ(cadence.nextPass(), (Cadence::Pass{Detail::light, 20, false}));
}

TEST(Cadence, OnlyTheFirstSurfaceWantsFreshFiguresAtOnce) {
    Cadence cadence;
    EXPECT_TRUE(cadence.appeared(ViewKind::compact));
    EXPECT_FALSE(cadence.appeared(ViewKind::window));
    cadence.disappeared(ViewKind::compact);
    EXPECT_FALSE(cadence.appeared(ViewKind::compact));
}

TEST(Cadence, MoreDisappearancesThanAppearancesLeaveTheCountsAtZero) {
    Cadence cadence;
    cadence.disappeared(ViewKind::window);
    cadence.disappeared(ViewKind::compact);
    EXPECT_EQ(cadence.visibleViews(), 0);
    EXPECT_EQ(cadence.visibleWindows(), 0);
    EXPECT_TRUE(cadence.appeared(ViewKind::window));
    EXPECT_EQ(cadence.visibleWindows(), 1);
}

TEST(Cadence, TheWaitIsTheSettingDoubledWhenSavingEnergyAndFixedWhenClosed) {
    Cadence cadence;
    EXPECT_EQ(cadence.wait(1, false), 5s);
    EXPECT_EQ(cadence.wait(30, true), 5s);
    cadence.appeared(ViewKind::compact);
    EXPECT_EQ(cadence.wait(1, false), 1s);
    EXPECT_EQ(cadence.wait(0, false), 1s);
    EXPECT_EQ(cadence.wait(-7, false), 1s);
    EXPECT_EQ(cadence.wait(3, false), 3s);
    EXPECT_EQ(cadence.wait(3, true), 6s);
    EXPECT_GT(cadence.wait(std::numeric_limits<std::int64_t>::max(), true), 0s);
}

} // namespace
} // namespace tavero
