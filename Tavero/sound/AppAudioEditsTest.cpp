// What becomes of a change that the user makes, and where it is kept.

#include "sound/test/SoundWorld.h"

#include <QSignalSpy>

#include <limits>

namespace tavero {
namespace {

using namespace std::chrono_literals;

class AppAudioEdits : public SoundWorld {
  protected:
    AppAudioEdits() {
        play(music);
        router->pageAppeared();
    }
};

TEST_F(AppAudioEdits, AVolumeIsForTheOutputOnWhichTheAppPlays) {
    router->setVolume(0.5, app("Music"));
    EXPECT_EQ(setting("Music"), (AudioSetting{.volumes = {{"speakers", 0.5}}}));
    EXPECT_EQ(router->volume(app("Music")), 0.5);
    EXPECT_EQ(router->volume(app("Browser")), 1);
    router->setOutput("headphones", app("Music"));
    EXPECT_EQ(router->volume(app("Music")), 1);
    router->setVolume(0.25, app("Music"));
    EXPECT_EQ(setting("Music").volumes,
              (std::map<std::string, double>{{"headphones", 0.25}, {"speakers", 0.5}}));
    EXPECT_EQ(router->volume(app("Music")), 0.25);
}

TEST_F(AppAudioEdits, WithoutAnyOutputAVolumeIsForAll) {
    audio->remove(audioSystem, {AudioSelector::defaultOutput});
    router->refresh(true);
    router->setVolume(0.5, app("Music"));
    EXPECT_EQ(setting("Music"), AudioSetting{.volume = 0.5});
    EXPECT_FALSE(isTapped("Music"));
}

TEST_F(AppAudioEdits, AVolumeIsCutToItsRange) {
    router->setVolume(1.5, app("Music"));
    EXPECT_EQ(router->settings(), AudioSettings{});
    router->setVolume(-1, app("Music"));
    EXPECT_EQ(router->volume(app("Music")), 0);
    router->setVolume(std::numeric_limits<double>::infinity(), app("Music"));
    EXPECT_EQ(router->volume(app("Music")), 1);
}

TEST_F(AppAudioEdits, NoNumberChangesNothing) {
    router->setVolume(0.5, app("Music"));
    router->setVolume(std::numeric_limits<double>::quiet_NaN(), app("Music"));
    EXPECT_EQ(router->volume(app("Music")), 0.5);
}

TEST_F(AppAudioEdits, AlmostFullCountsAsUntouchedAndTheTapGoes) {
    router->setVolume(0.5, app("Music"));
    EXPECT_TRUE(isTapped("Music"));
    router->setVolume(0.9995, app("Music"));
    EXPECT_FALSE(isTapped("Music"));
    EXPECT_EQ(router->settings(), AudioSettings{});
    EXPECT_EQ(taps->log, (std::vector<std::string>{"+1", "-1"}));
}

TEST_F(AppAudioEdits, MutingAtFullVolumeMakesATapAndUnmutingRemovesIt) {
    router->setMuted(true, app("Music"));
    ASSERT_TRUE(isTapped("Music"));
    EXPECT_EQ(tap("Music").volume(), 0);
    router->setMuted(false, app("Music"));
    EXPECT_FALSE(isTapped("Music"));
    EXPECT_EQ(taps->log, (std::vector<std::string>{"+1", "-1"}));
}

TEST_F(AppAudioEdits, AnOutputOfItsOwnTakesATapAtFullVolume) {
    router->setOutput("headphones", app("Music"));
    ASSERT_TRUE(isTapped("Music"));
    EXPECT_EQ(tap("Music").outputUID(), "headphones");
    EXPECT_EQ(tap("Music").sourceUID(), "speakers");
    EXPECT_EQ(tap("Music").volume(), 1);
    router->setOutput(std::nullopt, app("Music"));
    EXPECT_FALSE(isTapped("Music"));
    EXPECT_EQ(router->settings(), AudioSettings{});
}

TEST_F(AppAudioEdits, EvenTheOutputOfTheSystemIsAChoice) {
    router->setOutput("speakers", app("Music"));
    ASSERT_TRUE(isTapped("Music"));
    EXPECT_EQ(tap("Music").outputUID(), "speakers");
}

TEST_F(AppAudioEdits, DraggingASliderRebuildsNothing) {
    for (int percent = 90; percent >= 0; --percent)
        router->setVolume(percent / 100.0, app("Music"));
    EXPECT_EQ(taps->log, std::vector<std::string>{"+1"});
    EXPECT_EQ(tap("Music").volume(), 0);
    router->setVolume(0.3, app("Music"));
    EXPECT_EQ(tap("Music").volume(), 0.3F);
    EXPECT_EQ(taps->of(music)->cells->gain, 0.3F);
}

TEST_F(AppAudioEdits, ASliderThatMovesAsksTheSystemNothing) {
    router->setVolume(0.5, app("Music"));
    counted->reads = 0;
    router->setVolume(0.4, app("Music"));
    router->setMuted(true, app("Music"));
    EXPECT_EQ(counted->reads, 0);
}

TEST_F(AppAudioEdits, AMutedAppStaysSilentWhileItsVolumeMoves) {
    router->setVolume(0.5, app("Music"));
    router->setMuted(true, app("Music"));
    EXPECT_EQ(tap("Music").volume(), 0);
    router->setVolume(0.8, app("Music"));
    EXPECT_EQ(tap("Music").volume(), 0);
    router->setMuted(false, app("Music"));
    EXPECT_EQ(tap("Music").volume(), 0.8F);
    EXPECT_EQ(taps->log, std::vector<std::string>{"+1"});
}

// As the rows do it when a slider moves.
TEST_F(AppAudioEdits, TheSliderOfAMutedAppAtItsEndLeavesItUnmutedAndAtZero) {
    router->setMuted(true, app("Music"));
    router->setVolume(0, app("Music"));
    router->setMuted(false, app("Music"));
    EXPECT_EQ(setting("Music"), (AudioSetting{.volumes = {{"speakers", 0}}}));
    EXPECT_EQ(tap("Music").volume(), 0);
}

TEST_F(AppAudioEdits, AnotherOutputRebuildsTheTapWhateverTheVolume) {
    router->setVolume(0.5, app("Music"));
    router->setOutput("headphones", app("Music"));
    EXPECT_EQ(tap("Music").outputUID(), "headphones");
    EXPECT_EQ(tap("Music").volume(), 1);
    router->setVolume(0.2, app("Music"));
    router->setOutput("speakers", app("Music"));
    EXPECT_EQ(tap("Music").outputUID(), "speakers");
    EXPECT_EQ(tap("Music").volume(), 0.5F);
    EXPECT_EQ(taps->log, (std::vector<std::string>{"+1", "+2", "-1", "+3", "-2"}));
}

TEST_F(AppAudioEdits, TheNewTapTakesTheVolumeOfItsOutputAtOnce) {
    router->setOutput("headphones", app("Music"));
    router->setVolume(0.2, app("Music"));
    router->setOutput("speakers", app("Music"));
    router->setOutput("headphones", app("Music"));
    EXPECT_EQ(taps->of(music)->cells->gain, 0.2F);
}

TEST_F(AppAudioEdits, AnAppThatHasGoneKeepsItsSetting) {
    const AudioApp app = this->app("Music");
    audio->drop(music);
    router->refresh(true);
    router->setVolume(0.5, app);
    EXPECT_FALSE(isTapped("Music"));
    addApp(music, "Music");
    router->refresh(true);
    EXPECT_EQ(tap("Music").volume(), 0.5F);
}

TEST_F(AppAudioEdits, TwoAppsHaveTwoVolumesAndTwoOutputs) {
    router->setVolume(0.5, app("Music"));
    router->setOutput("headphones", app("Browser"));
    router->setVolume(0.25, app("Browser"));
    EXPECT_EQ(tap("Music").outputUID(), "speakers");
    EXPECT_EQ(tap("Music").volume(), 0.5F);
    EXPECT_EQ(tap("Browser").outputUID(), "headphones");
    EXPECT_EQ(tap("Browser").volume(), 0.25F);
}

TEST_F(AppAudioEdits, AreStoredOnceTheyHaveRested) {
    router->setVolume(0.5, app("Music"));
    passed(399ms);
    router->setVolume(0.4, app("Music"));
    passed(399ms);
    EXPECT_EQ(stored(), "");
    passed(1ms);
    EXPECT_EQ(decodedAudioSettings(stored()), router->settings());
    EXPECT_EQ(time.pending(), 0u);
}

TEST_F(AppAudioEdits, ABurstIsWrittenOnce) {
    QSignalSpy writes(&settings, &Settings::changed);
    for (int i = 0; i < 50; ++i) {
        router->setVolume(i / 100.0, app("Music"));
        passed(10ms);
    }
    passed(1s);
    EXPECT_EQ(writes.count(), 1);
}

TEST_F(AppAudioEdits, TheLastOneBeforeTheEndMayBeLost) {
    router->setVolume(0.5, app("Music"));
    passed(399ms);
    restart();
    passed(1s);
    EXPECT_EQ(stored(), "");
    EXPECT_EQ(router->settings(), AudioSettings{});
}

TEST_F(AppAudioEdits, AreInForceAgainAfterARestart) {
    router->setVolume(0.5, app("Music"));
    router->setOutput("headphones", app("Browser"));
    router->setMuted(true, app("Browser"));
    passed(1s);
    const AudioSettings before = router->settings();
    restart();
    EXPECT_EQ(router->settings(), before);
    EXPECT_TRUE(taps->live().empty()); // the ones before have ended
    router->refresh(true);
    EXPECT_EQ(tap("Music").volume(), 0.5F);
    EXPECT_EQ(tap("Browser").outputUID(), "headphones");
    EXPECT_EQ(tap("Browser").volume(), 0);
}

TEST_F(AppAudioEdits, AnAppAtItsDefaultsIsForgotten) {
    router->setVolume(0.5, app("Music"));
    passed(1s);
    router->setVolume(1, app("Music"));
    passed(1s);
    EXPECT_EQ(stored(), "{}");
}

TEST_F(AppAudioEdits, DamagedSettingsAreNoneAndStayUntilSomethingChanges) {
    const std::string damaged = R"({"/Applications/Music.app":{"volume":"loud"}})";
    store(damaged);
    restart();
    EXPECT_EQ(router->settings(), AudioSettings{});
    router->start();
    router->pageAppeared();
    passed(1min);
    EXPECT_EQ(stored(), damaged);
    router->setVolume(0.5, app("Browser"));
    passed(400ms);
    EXPECT_EQ(decodedAudioSettings(stored()), router->settings());
}

TEST_F(AppAudioEdits, OldSettingsStillLoad) {
    store(R"({"/Applications/Music.app":{"volume":0.3}})");
    restart();
    router->refresh(true);
    EXPECT_EQ(tap("Music").volume(), 0.3F);
}

TEST_F(AppAudioEdits, NoStoredVolumeIsLouderThanTheApp) {
    store(R"({"/Applications/Music.app":{"volume":1e30,"outputUID":"headphones"},)"
          R"("/Applications/Browser.app":{"volume":-1e30}})");
    restart();
    router->refresh(true);
    EXPECT_EQ(tap("Music").volume(), 1);
    EXPECT_EQ(tap("Browser").volume(), 0);
}

TEST_F(AppAudioEdits, AnEmptyUIDIsNoTarget) {
    audio->addDevice(12, "Nameless", "");
    router->refresh(true);
    EXPECT_EQ(router->outputs().size(), 3u);
    router->setOutput("", app("Music"));
    ASSERT_TRUE(isTapped("Music"));
    EXPECT_EQ(tap("Music").outputUID(), "speakers");
    makeDefault(12);
    router->refresh(true);
    EXPECT_EQ(router->defaultOutputUID(), std::nullopt);
    EXPECT_FALSE(isTapped("Music"));
}

TEST_F(AppAudioEdits, TextThatIsNotUTF8IsNoHarm) {
    audio->addDevice(12, "Broken", "broken\xff");
    processes->run(1070, {AppIdentity::Kind::app, "/Applications/\xc3(.app"});
    audio->addProcess(70, 1070);
    router->refresh(true);
    const AudioApp broken{.id = "/Applications/\xc3(.app"};
    router->setOutput("broken\xff", broken);
    EXPECT_EQ(router->taps().at(broken.id)->outputUID(), "broken\xff");
    router->setVolume(0.5, app("Music"));
    passed(1s);
    restart();
    EXPECT_EQ(router->volume({.id = idOf("Music")}), 1); // no output is known yet
    EXPECT_EQ(setting("Music").volumeOn("speakers"), 0.5);
}

} // namespace
} // namespace tavero
