#include "components/Palette.h"

#include "presentation/Levels.h"
#include "presentation/MetricStatus.h"

#include <gtest/gtest.h>

namespace tavero {
namespace {

TEST(Contrast, RunsFromOneToTwentyOne) {
    EXPECT_NEAR(contrast(Qt::black, Qt::white), 21, 1e-6);
    EXPECT_NEAR(contrast(Qt::white, Qt::black), 21, 1e-6);
    EXPECT_NEAR(contrast(QColor(0x777777), QColor(0x777777)), 1, 1e-6);
    EXPECT_NEAR(contrast(QColor(0x767676), Qt::white), 4.54, 0.01);
}

TEST(Palette, AllTextIsEasyToReadInBothAppearances) {
    for (const bool isDark : {false, true}) {
        const Palette palette = Palette::of(isDark);
        for (const QColor& background : {palette.window, palette.card})
            for (const QColor& text : {palette.text, palette.secondaryText, palette.tertiaryText})
                EXPECT_GE(contrast(text, background), readableContrast)
                    << text.name().toStdString() << " on " << background.name().toStdString();
    }
}

TEST(Palette, TheWordsOfAPillAreEasyToReadInBothAppearances) {
    for (const bool isDark : {false, true})
        for (const Tone tone : {Tone::good, Tone::warning, Tone::neutral}) {
            const ToneColors pill = colors(tone);
            const QColor text =
                pill.text ? pick(*pill.text, isDark) : Palette::of(isDark).secondaryText;
            EXPECT_GE(contrast(text, pick(pill.background, isDark)), readableContrast);
        }
}

TEST(Palette, TheFocusRingStandsOutFromWhatItLiesOn) {
    for (const bool isDark : {false, true}) {
        const Palette palette = Palette::of(isDark);
        EXPECT_GE(contrast(palette.focus, palette.window), 3);
        EXPECT_GE(contrast(palette.focus, palette.card), 3);
    }
}

TEST(Readable, AColorThatReadsWellStaysAsItIs) {
    const QColor red = pick(Levels::danger, false);
    EXPECT_EQ(readable(red, Qt::white), red);
}

TEST(Readable, OneThatDoesNotIsMovedAwayFromTheBackground) {
    const QColor yellow = pick(Levels::warning, false);
    ASSERT_LT(contrast(yellow, Qt::white), readableContrast);
    EXPECT_GE(contrast(readable(yellow, Qt::white), Qt::white), readableContrast);
    const QColor navy(0x101060);
    EXPECT_GE(contrast(readable(navy, Qt::black), Qt::black), readableContrast);
}

TEST(Readable, EveryLevelIsReadableOnACardInBothAppearances) {
    for (const bool isDark : {false, true})
        for (const AdaptiveColor& level : {Levels::good, Levels::warning, Levels::danger}) {
            const QColor card = Palette::of(isDark).card;
            EXPECT_GE(contrast(readable(pick(level, isDark), card), card), readableContrast);
        }
}

TEST(Readable, OnAMiddleGreyItStillFindsAColor) {
    const QColor grey(0x767676);
    EXPECT_GE(contrast(readable(grey, grey), grey), readableContrast);
}

TEST(Pick, TakesTheColorOfTheAppearanceAtFullOpacity) {
    const AdaptiveColor color{{0x112233}, {0xAABBCC}};
    EXPECT_EQ(pick(color, false), QColor(0x11, 0x22, 0x33));
    EXPECT_EQ(pick(color, true), QColor(0xAA, 0xBB, 0xCC));
    EXPECT_EQ(pick(color, true).alpha(), 255);
}

} // namespace
} // namespace tavero
