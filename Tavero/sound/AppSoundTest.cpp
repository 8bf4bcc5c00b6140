#include "sound/AppSound.h"

#include "sound/test/SoundWorld.h"

namespace tavero {
namespace {

class AppSoundTest : public SoundWorld {
  protected:
    AppSoundTest() {
        play(music);
        router->pageAppeared();
    }
    std::vector<AppSound> rows() const { return appSounds(*router); }
};

TEST_F(AppSoundTest, AnUntouchedAppPlaysAtItsFullVolumeWhereTheSystemPlays) {
    EXPECT_EQ(rows(), (std::vector<AppSound>{{.name = "Music", .isPlaying = true, .volume = 1},
                                             {.name = "Browser", .volume = 1}}));
}

TEST_F(AppSoundTest, WhatItsUserChoseIsTold) {
    router->setOutput("headphones", app("Music"));
    router->setVolume(0.7, app("Music"));
    router->setMuted(true, app("Browser"));
    taps->sound(music, 0.25F);
    EXPECT_EQ(rows(), (std::vector<AppSound>{{.name = "Music",
                                              .isPlaying = true,
                                              .volume = 0.7,
                                              .level = 0.25F,
                                              .output = "Headphones"},
                                             {.name = "Browser", .isMuted = true}}));
}

TEST_F(AppSoundTest, AnOutputThatIsGoneHasNoName) {
    router->setOutput("headphones", app("Music"));
    audio->drop(headphones);
    router->refresh(true);
    EXPECT_EQ(rows().at(0).output, "");
}

TEST_F(AppSoundTest, AProtectedAppSaysSo) {
    router->setVolume(0.5, app("Music"));
    passed(std::chrono::seconds(9));
    router->refresh(true);
    EXPECT_TRUE(rows().at(0).isProtected);
    EXPECT_EQ(status(rows().at(0)), "Protected");
}

TEST(AppSound, TheWordsAreThoseOfTheRow) {
    EXPECT_EQ(status({.isPlaying = true}), "Playing");
    EXPECT_EQ(status({}), "Silent");
    EXPECT_EQ(volumeText({.volume = 0.125}), "12%");
    EXPECT_EQ(volumeText({.volume = 0.7, .isMuted = true}), "Muted");
}

} // namespace
} // namespace tavero
