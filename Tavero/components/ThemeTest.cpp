#include "components/Theme.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <string>

namespace tavero {
namespace {

class ThemeTest : public testing::Test {
  protected:
    QTemporaryDir directory;
    Settings settings{directory.filePath("Tavero.conf")};
    Appearance appearance;
    Theme theme{settings, appearance};

    int changes = 0;
    int motionChanges = 0;

    void SetUp() override {
        QObject::connect(&theme, &Theme::changed, [this] { ++changes; });
        QObject::connect(&theme, &Theme::motionChanged, [this] { ++motionChanges; });
    }
    void choose(const std::string& choice) { settings.set(keys::theme, choice); }
};

TEST_F(ThemeTest, WithoutAChoiceItFollowsTheDesktop) {
    EXPECT_FALSE(theme.isDark());
    appearance.set({.isDark = true});
    EXPECT_TRUE(theme.isDark());
    EXPECT_EQ(theme.card(), Palette::of(true).card);
    EXPECT_EQ(changes, 1);
}

TEST_F(ThemeTest, AChoiceWinsOverTheDesktop) {
    appearance.set({.isDark = true});
    choose("light");
    EXPECT_FALSE(theme.isDark());
    EXPECT_EQ(theme.window(), Palette::of(false).window);
    choose("dark");
    appearance.set({.isDark = false});
    EXPECT_TRUE(theme.isDark());
    choose("system");
    EXPECT_FALSE(theme.isDark());
}

TEST_F(ThemeTest, AChoiceItDoesNotKnowFollowsTheDesktop) {
    appearance.set({.isDark = true});
    choose("sepia");
    EXPECT_TRUE(theme.isDark());
}

TEST_F(ThemeTest, WhatDoesNotChangeTheLookTellsNobody) {
    choose("light"); // as it is
    appearance.set({.isDark = true});
    settings.set(keys::networkBits, true);
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(motionChanges, 0);
}

TEST_F(ThemeTest, AUserWithoutMotionGetsNone) {
    EXPECT_EQ(theme.microDuration(), 150);
    appearance.set({.reducesMotion = true});
    EXPECT_EQ(theme.microDuration(), 0);
    EXPECT_EQ(motionChanges, 1);
    EXPECT_EQ(changes, 0);
}

TEST_F(ThemeTest, AThemeMadeLateKnowsWhatWasChosenBefore) {
    choose("dark");
    appearance.set({.reducesMotion = true});
    const Theme late(settings, appearance);
    EXPECT_TRUE(late.isDark());
    EXPECT_EQ(late.microDuration(), 0);
}

TEST(Appearance, SettingTheLookThatIsInForceTellsNobody) {
    Appearance appearance;
    int changes = 0;
    QObject::connect(&appearance, &Appearance::changed, [&] { ++changes; });
    appearance.set({});
    EXPECT_EQ(changes, 0);
    appearance.set({.isDark = true});
    appearance.set({.isDark = true});
    EXPECT_EQ(changes, 1);
}

} // namespace
} // namespace tavero
