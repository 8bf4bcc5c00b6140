// When an app is tapped, and when its tap is made anew: the steps of a refresh, one by one.

#include "sound/test/SoundWorld.h"

namespace tavero {
namespace {

using namespace std::chrono_literals;

using Status = AudioCapturePermission::Status;
using Log = std::vector<std::string>;

class AppAudioRefresh : public SoundWorld {
  protected:
    AppAudioRefresh() {
        play(music);
        router->pageAppeared();
    }
    // Music at half volume, tapped.
    void turnDown() {
        router->setVolume(0.5, app("Music"));
        ASSERT_TRUE(isTapped("Music"));
    }
    bool isProtected(const std::string& name) const {
        return router->protectedApps().contains(idOf(name));
    }
};

TEST_F(AppAudioRefresh, NothingIsReadWhileNobodyLooksAndNothingIsSet) {
    restart();
    counted->reads = 0;
    router->refresh(false);
    router->refresh(true);
    EXPECT_EQ(counted->reads, 0);
    EXPECT_TRUE(router->apps().empty());
    EXPECT_TRUE(router->outputs().empty());
    EXPECT_EQ(router->defaultOutputUID(), std::nullopt);
}

TEST_F(AppAudioRefresh, ASettingIsReasonEnough) {
    store(R"({"/Applications/Music.app":{"volume":0.5}})");
    restart();
    router->refresh(true);
    EXPECT_TRUE(isTapped("Music"));
}

TEST_F(AppAudioRefresh, ATapIsReasonEnoughToLookAfterIt) {
    store(R"({"/Applications/Music.app":{"muted":true}})");
    restart();
    router->refresh(true);
    ASSERT_TRUE(isTapped("Music"));
    router->setMuted(false, app("Music")); // with which the last setting goes
    EXPECT_TRUE(router->settings().empty());
    EXPECT_TRUE(taps->live().empty());
}

TEST_F(AppAudioRefresh, OnlyARescanAsksTheSystem) {
    turnDown();
    addApp(70, "Podcasts");
    makeDefault(headphones);
    counted->reads = 0;
    router->refresh(false);
    EXPECT_EQ(counted->reads, 0);
    EXPECT_EQ(router->apps().size(), 2u);
    EXPECT_EQ(router->defaultOutputUID(), "speakers");
    router->refresh(true);
    EXPECT_EQ(names(router->apps()), (Log{"Music", "Browser", "Podcasts"}));
    EXPECT_EQ(router->defaultOutputUID(), "headphones");
}

TEST_F(AppAudioRefresh, AnUntouchedAppIsNeverTapped) {
    for (int i = 0; i < 40; ++i) {
        router->refresh(i % 2 == 0);
        passed(1s);
    }
    EXPECT_EQ(taps->log, Log{});
}

TEST_F(AppAudioRefresh, AnAppThatIsTouchedOnAnotherOutputOnlyIsNotTapped) {
    makeDefault(headphones);
    router->refresh(true);
    turnDown();
    makeDefault(speakers);
    router->refresh(true);
    EXPECT_FALSE(isTapped("Music"));
    makeDefault(headphones);
    router->refresh(true);
    EXPECT_EQ(tap("Music").volume(), 0.5F);
    EXPECT_EQ(tap("Music").outputUID(), "headphones");
    EXPECT_EQ(tap("Music").sourceUID(), "headphones");
}

TEST_F(AppAudioRefresh, ATapIsOfAllProcessesOfItsApp) {
    processes->runApp(1051, "Music");
    audio->addProcess(51, 1051);
    router->refresh(true);
    turnDown();
    const TapRequest request = taps->of(51)->request;
    EXPECT_EQ(request.processObjects, (std::vector<AudioObjectID>{music, 51}));
    EXPECT_EQ(request.outputUID, "speakers");
    EXPECT_EQ(request.sourceUID, "speakers");
    EXPECT_FALSE(request.listenOnly);
}

TEST_F(AppAudioRefresh, WithoutPermissionThereAreNoTapsAndSettingsStay) {
    permission->now = Status::denied;
    restart();
    router->pageAppeared();
    router->setVolume(0.5, app("Music"));
    EXPECT_EQ(taps->log, Log{});
    permission->now = Status::granted;
    router->checkPermission();
    EXPECT_EQ(tap("Music").volume(), 0.5F);
    permission->now = Status::denied;
    router->checkPermission();
    EXPECT_EQ(taps->log, (Log{"+1", "-1"}));
    EXPECT_EQ(setting("Music").volumes.at("speakers"), 0.5);
}

TEST_F(AppAudioRefresh, WithoutAnOutputThereIsNoTap) {
    turnDown();
    audio->remove(audioSystem, {AudioSelector::defaultOutput});
    router->refresh(true);
    EXPECT_FALSE(isTapped("Music"));
    makeDefault(speakers);
    router->refresh(true);
    EXPECT_TRUE(isTapped("Music"));
}

TEST_F(AppAudioRefresh, ATapInOrderIsKept) {
    turnDown();
    for (int i = 0; i < 5; ++i) router->refresh(true);
    EXPECT_EQ(taps->log, Log{"+1"});
}

TEST_F(AppAudioRefresh, ATapInOrderGetsItsVolumeAgain) {
    turnDown();
    taps->of(music)->cells->gain = 0.9F;
    router->refresh(false);
    EXPECT_EQ(tap("Music").volume(), 0.5F);
}

TEST_F(AppAudioRefresh, AnotherProcessOfTheAppRebuildsItsTap) {
    turnDown();
    processes->runApp(1051, "Music");
    audio->addProcess(51, 1051);
    router->refresh(true);
    EXPECT_EQ(tap("Music").processObjects(), (std::vector<AudioObjectID>{music, 51}));
    EXPECT_EQ(taps->log, (Log{"+1", "+2", "-1"})); // never without one
}

TEST_F(AppAudioRefresh, ATapThatCannotBeRebuiltEndsAndIsTriedAgain) {
    turnDown();
    taps->fails = [](const TapRequest&) { return true; };
    makeDefault(headphones);
    router->setOutput("speakers", app("Music"));
    router->refresh(true);
    EXPECT_FALSE(isTapped("Music"));
    EXPECT_TRUE(taps->live().empty());
    EXPECT_EQ(taps->log, (Log{"+1", "!", "-1"}));
    taps->fails = {};
    router->refresh(false);
    EXPECT_TRUE(isTapped("Music"));
}

TEST_F(AppAudioRefresh, AnOutputThatGoesSendsTheAppToTheSystemsWithItsVolumeThere) {
    router->setVolume(0.5, app("Music"));
    router->setOutput("headphones", app("Music"));
    router->setVolume(0.25, app("Music"));
    const AudioSettings before = router->settings();
    audio->drop(headphones);
    router->refresh(true);
    EXPECT_EQ(tap("Music").outputUID(), "speakers");
    EXPECT_EQ(tap("Music").volume(), 0.5F);
    EXPECT_EQ(router->settings(), before);
    EXPECT_EQ(router->volume(app("Music")), 0.5);
    audio->addDevice(headphones, "Headphones", "headphones");
    router->refresh(true);
    EXPECT_EQ(tap("Music").outputUID(), "headphones");
    EXPECT_EQ(tap("Music").volume(), 0.25F);
    EXPECT_EQ(router->settings(), before);
}

TEST_F(AppAudioRefresh, AnotherDefaultRebuildsEvenATapToAnOutputOfItsOwn) {
    router->setOutput("headphones", app("Music"));
    audio->addDevice(12, "Display", "display");
    makeDefault(12);
    router->refresh(true);
    EXPECT_EQ(tap("Music").outputUID(), "headphones");
    EXPECT_EQ(tap("Music").sourceUID(), "display");
    EXPECT_EQ(taps->log, (Log{"+1", "+2", "-1"}));
}

TEST_F(AppAudioRefresh, ATapToAnOutputOfItsOwnNeedsNoDefault) {
    router->setOutput("headphones", app("Music"));
    audio->remove(audioSystem, {AudioSelector::defaultOutput});
    router->refresh(true);
    EXPECT_EQ(tap("Music").outputUID(), "headphones");
    EXPECT_EQ(tap("Music").sourceUID(), std::nullopt);
    router->refresh(true); // both absent are equal
    EXPECT_EQ(taps->log, (Log{"+1", "+2", "-1"}));
}

TEST_F(AppAudioRefresh, AnAppThatQuitsTakesItsTapAlong) {
    turnDown();
    audio->drop(music);
    router->refresh(true);
    EXPECT_TRUE(router->taps().empty());
    EXPECT_EQ(taps->log, (Log{"+1", "-1"}));
}

// Silent capture.

TEST_F(AppAudioRefresh, AnAppThatIsSilentForMoreThanEightSecondsIsProtected) {
    turnDown();
    passed(8s);
    router->refresh(false);
    EXPECT_FALSE(isProtected("Music"));
    EXPECT_TRUE(isTapped("Music"));
    passed(1ns);
    router->refresh(false);
    EXPECT_TRUE(isProtected("Music"));
    EXPECT_FALSE(isTapped("Music")); // so that it is heard again
    router->refresh(true);
    EXPECT_FALSE(isTapped("Music"));
    EXPECT_EQ(taps->log, (Log{"+1", "-1"}));
    EXPECT_EQ(setting("Music").volumes.at("speakers"), 0.5);
}

TEST_F(AppAudioRefresh, AnAppThatWasHeardOnceIsNot) {
    turnDown();
    taps->sound(music, 1e-9F);
    taps->sound(music, 0);
    passed(1h);
    router->refresh(false);
    EXPECT_FALSE(isProtected("Music"));
}

TEST_F(AppAudioRefresh, TheEightSecondsBeginWithTheTapOrThePlayback) {
    passed(1h); // it has played for long when it is turned down
    turnDown();
    passed(5s);
    play(music, false);
    router->refresh(true);
    play(music);
    router->refresh(true);
    passed(8s);
    router->refresh(true);
    EXPECT_FALSE(isProtected("Music"));
    passed(1s);
    router->refresh(true);
    EXPECT_TRUE(isProtected("Music"));
}

TEST_F(AppAudioRefresh, TouchingItsSliderTriesAProtectedAppAgain) {
    turnDown();
    passed(9s);
    router->refresh(false);
    ASSERT_TRUE(isProtected("Music"));
    router->setVolume(0.4, app("Music"));
    EXPECT_FALSE(isProtected("Music"));
    EXPECT_EQ(tap("Music").volume(), 0.4F);
    passed(8s);
    router->refresh(false);
    EXPECT_TRUE(isTapped("Music"));
    passed(1s);
    router->refresh(false);
    EXPECT_TRUE(isProtected("Music"));
}

TEST_F(AppAudioRefresh, AnAppThatStopsIsProtectedNoMore) {
    turnDown();
    passed(9s);
    router->refresh(false);
    ASSERT_TRUE(isProtected("Music"));
    play(music, false);
    router->refresh(true);
    EXPECT_FALSE(isProtected("Music"));
    EXPECT_TRUE(isTapped("Music"));
}

TEST_F(AppAudioRefresh, AnAppThatQuitsIsProtectedNoMore) {
    turnDown();
    passed(9s);
    router->refresh(false);
    ASSERT_TRUE(isProtected("Music"));
    audio->drop(music);
    router->refresh(true);
    EXPECT_TRUE(router->protectedApps().empty());
}

TEST_F(AppAudioRefresh, AMutedAppIsNeverProtected) {
    turnDown();
    router->setMuted(true, app("Music"));
    passed(1h);
    router->refresh(true);
    EXPECT_FALSE(isProtected("Music"));
    EXPECT_TRUE(isTapped("Music"));
}

TEST_F(AppAudioRefresh, NorIsAnyWhereNobodyCanKeepItsSoundFromBeingCaptured) {
    taps->isDeniable = false;
    turnDown();
    passed(1h);
    router->refresh(true);
    EXPECT_FALSE(isProtected("Music"));
    EXPECT_TRUE(isTapped("Music"));
}

TEST_F(AppAudioRefresh, NorOneAtVolumeZero) {
    router->setVolume(0, app("Music"));
    passed(1h);
    router->refresh(true);
    EXPECT_FALSE(isProtected("Music"));
    EXPECT_TRUE(isTapped("Music"));
}

// A volume that is above 0 only with 64 bits counts as 0.
TEST_F(AppAudioRefresh, NorOneWhoseVolumeIsTooSmallForAGain) {
    router->setVolume(1e-60, app("Music"));
    passed(1h);
    router->refresh(true);
    EXPECT_FALSE(isProtected("Music"));
}

TEST_F(AppAudioRefresh, NorOneThatDoesNotPlay) {
    turnDown();
    play(music, false);
    router->refresh(true);
    passed(10s);
    router->refresh(true);
    EXPECT_FALSE(isProtected("Music"));
    EXPECT_EQ(taps->log, Log{"+1"});
}

TEST_F(AppAudioRefresh, AClockThatIsTurnedBackProtectsNobody) {
    turnDown();
    time.setWallClock(time.now() - 1h);
    router->refresh(true);
    EXPECT_FALSE(isProtected("Music"));
}

// Idle refresh.

TEST_F(AppAudioRefresh, ATapIsRenewedWhenItsAppHasRestedForMoreThanFifteenSeconds) {
    turnDown();
    taps->sound(music, 0.5F);
    play(music, false);
    router->refresh(true);
    passed(15s);
    router->refresh(false);
    EXPECT_EQ(taps->log, Log{"+1"});
    passed(1ns);
    router->refresh(false);
    EXPECT_EQ(taps->log, (Log{"+1", "-1", "+2"})); // the old one ends first
    EXPECT_EQ(tap("Music").started(), time.now());
    EXPECT_FALSE(tap("Music").hasHeardSound());
    EXPECT_EQ(tap("Music").volume(), 0.5F);
    EXPECT_EQ(tap("Music").outputUID(), "speakers");
    EXPECT_EQ(tap("Music").sourceUID(), "speakers");
}

TEST_F(AppAudioRefresh, TheRestBeginsWhenTheAppWasLastSeenPlaying) {
    turnDown();
    taps->sound(music, 0.5F);
    passed(1h);
    router->refresh(true);
    play(music, false);
    router->refresh(true);
    EXPECT_EQ(taps->log, Log{"+1"});
}

TEST_F(AppAudioRefresh, ARestingTapThatDoesNotRunIsLeftAlone) {
    turnDown();
    taps->of(music)->isRunning = false;
    play(music, false);
    router->refresh(true);
    passed(1h);
    router->refresh(true);
    EXPECT_EQ(taps->log, Log{"+1"});
}

TEST_F(AppAudioRefresh, AnAppThatNeverPlayedIsIdleAtOnce) {
    router->setVolume(0.5, app("Browser"));
    EXPECT_EQ(taps->log, Log{"+1"});
    router->refresh(false);
    EXPECT_EQ(taps->log, (Log{"+1", "-1", "+2"}));
    taps->of(browser)->isRunning = false; // as a system does where nothing plays
    router->refresh(false);
    EXPECT_EQ(taps->log.size(), 3u);
}

TEST_F(AppAudioRefresh, ATapThatCannotBeRenewedIsGone) {
    turnDown();
    play(music, false);
    router->refresh(true);
    passed(16s);
    taps->fails = [](const TapRequest&) { return true; };
    router->refresh(false);
    EXPECT_EQ(taps->log, (Log{"+1", "-1", "!"}));
    EXPECT_FALSE(isTapped("Music"));
    taps->fails = {};
    router->refresh(false);
    EXPECT_TRUE(isTapped("Music"));
}

TEST_F(AppAudioRefresh, TheSilentCaptureCheckStartsAnewAfterARest) {
    turnDown();
    taps->sound(music, 0.5F);
    play(music, false);
    router->refresh(true);
    passed(16s);
    router->refresh(true);
    play(music);
    router->refresh(true);
    passed(9s);
    router->refresh(true);
    EXPECT_TRUE(isProtected("Music"));
}

// A tap that is out of order is rebuilt, and that is all that happens to it.
TEST_F(AppAudioRefresh, ATapThatIsRebuiltIsNotCheckedForSilence) {
    turnDown();
    passed(1h);
    makeDefault(headphones);
    router->setVolume(0.5, app("Music"));
    router->setOutput("headphones", app("Music"));
    router->refresh(true);
    EXPECT_FALSE(isProtected("Music"));
    EXPECT_TRUE(isTapped("Music"));
}

TEST_F(AppAudioRefresh, NoTapOutlivesTheRouter) {
    turnDown();
    router.reset();
    EXPECT_TRUE(taps->live().empty());
}

} // namespace
} // namespace tavero
