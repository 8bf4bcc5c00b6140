// Which apps really sound.

#include "sound/test/SoundWorld.h"

#include <array>
#include <cmath>

namespace tavero {
namespace {

using namespace std::chrono_literals;

using Status = AudioCapturePermission::Status;
using Names = std::vector<std::string>;

class AppAudioNowPlaying : public SoundWorld {
  protected:
    AppAudioNowPlaying() {
        play(music);
        play(browser);
    }
    // Half a second at a time, in which these sound.
    void run(int turns, const std::vector<AudioObjectID>& sounding = {}) {
        for (int i = 0; i < turns; ++i) {
            for (const AudioObjectID process : sounding) taps->sound(process, 0.1F);
            passed(500ms);
        }
    }
    Names playing() const { return names(router->playing()); }
    Names candidates() const { return names(router->candidates()); }
    bool hasMeter(const std::string& name) const { return router->meters().contains(idOf(name)); }
};

TEST_F(AppAudioNowPlaying, IsWorkedOutOnlyWhileItIsWanted) {
    router->start();
    passed(1min);
    EXPECT_EQ(candidates(), Names{});
    EXPECT_EQ(taps->log, Names{});
    router->setNowPlayingWanted(true);
    EXPECT_EQ(candidates(), (Names{"Browser", "Music"}));
    EXPECT_EQ(playing(), (Names{"Browser", "Music"}));
    EXPECT_EQ(router->meters().size(), 2u);
}

TEST_F(AppAudioNowPlaying, MetersOnlyListen) {
    router->setNowPlayingWanted(true);
    const TapRequest request = taps->of(music, true)->request;
    EXPECT_EQ(request.processObjects, std::vector<AudioObjectID>{music});
    EXPECT_EQ(request.outputUID, "speakers"); // though nothing was scanned yet
    EXPECT_EQ(request.sourceUID, std::nullopt);
    EXPECT_TRUE(request.listenOnly);
    EXPECT_EQ(taps->of(music, true)->cells->gain, 0);
    EXPECT_TRUE(router->taps().empty());
}

TEST_F(AppAudioNowPlaying, ANewCandidateCountsAsSoundingForASecond) {
    router->start();
    router->setNowPlayingWanted(true);
    passed(0s);
    EXPECT_EQ(playing(), (Names{"Browser", "Music"}));
    passed(500ms);
    EXPECT_EQ(playing(), (Names{"Browser", "Music"}));
    passed(500ms); // exactly a second: silent
    EXPECT_EQ(playing(), Names{});
}

TEST_F(AppAudioNowPlaying, WhoSoundsIsThere) {
    router->start();
    router->setNowPlayingWanted(true);
    run(4, {music});
    EXPECT_EQ(playing(), Names{"Music"});
    run(2, {music, browser});
    EXPECT_EQ(playing(), (Names{"Browser", "Music"}));
    run(1);
    EXPECT_EQ(playing(), (Names{"Browser", "Music"}));
    run(2);
    EXPECT_EQ(playing(), Names{});
}

TEST_F(AppAudioNowPlaying, SilenceHasAFloor) {
    router->start();
    router->setNowPlayingWanted(true);
    passed(2s);
    taps->sound(music, 0.0005F);
    taps->sound(browser, std::nextafter(0.0005F, 1.0F));
    passed(500ms);
    EXPECT_EQ(playing(), Names{"Browser"});
}

TEST_F(AppAudioNowPlaying, ACallSoundsInItsSilencesToo) {
    audio->put(browser, {AudioSelector::processIsRunningInput}, std::uint32_t{1});
    router->start();
    router->setNowPlayingWanted(true);
    run(20);
    EXPECT_EQ(playing(), Names{"Browser"});
}

TEST_F(AppAudioNowPlaying, ARealTapServesAsMeter) {
    router->start();
    router->setNowPlayingWanted(true);
    router->pageAppeared();
    passed(0s);
    router->setVolume(0.5, app("Music"));
    EXPECT_TRUE(hasMeter("Music")); // until the next turn
    passed(500ms);
    EXPECT_FALSE(hasMeter("Music"));
    EXPECT_TRUE(hasMeter("Browser"));
    run(4, {music});
    EXPECT_EQ(playing(), Names{"Music"});
    router->setVolume(1, app("Music"));
    run(1);
    EXPECT_TRUE(hasMeter("Music"));
}

TEST_F(AppAudioNowPlaying, AMeterIsMadeAnewOnlyForOtherProcesses) {
    router->setNowPlayingWanted(true);
    router->start();
    passed(0s);
    const Names before = taps->log;
    EXPECT_EQ(before, (Names{"+1", "+2"}));
    makeDefault(headphones); // which doesn't matter
    passed(10s);
    EXPECT_EQ(taps->log, before);
    processes->runApp(1051, "Music");
    audio->addProcess(51, 1051, true);
    passed(10s);
    EXPECT_EQ(taps->log, (Names{"+1", "+2", "-2", "+3"}));
    EXPECT_EQ(router->meters().at(idOf("Music"))->processObjects(),
              (std::vector<AudioObjectID>{music, 51}));
}

TEST_F(AppAudioNowPlaying, WithoutAnOutputThereIsNoMeterAndTheAppCountsAsSounding) {
    audio->remove(audioSystem, {AudioSelector::defaultOutput});
    router->start();
    router->setNowPlayingWanted(true);
    run(10);
    EXPECT_EQ(taps->log, Names{});
    EXPECT_EQ(playing(), (Names{"Browser", "Music"}));
}

TEST_F(AppAudioNowPlaying, WithoutAnOutputAnOldMeterStays) {
    router->start();
    router->setNowPlayingWanted(true);
    passed(0s);
    audio->remove(audioSystem, {AudioSelector::defaultOutput});
    processes->runApp(1051, "Music");
    audio->addProcess(51, 1051, true);
    passed(10s);
    EXPECT_EQ(taps->log, (Names{"+1", "+2"}));
    EXPECT_EQ(router->meters().at(idOf("Music"))->processObjects(),
              std::vector<AudioObjectID>{music});
    EXPECT_EQ(playing(), Names{}); // it still measures
}

TEST_F(AppAudioNowPlaying, AnAppWhoseMeterFailsCountsAsSounding) {
    taps->fails = [](const TapRequest& request) {
        return request.processObjects == std::vector<AudioObjectID>{music};
    };
    router->start();
    router->setNowPlayingWanted(true);
    run(20);
    EXPECT_EQ(playing(), Names{"Music"});
    EXPECT_FALSE(hasMeter("Music"));
}

TEST_F(AppAudioNowPlaying, WithoutPermissionAllCandidatesCount) {
    router->start();
    router->setNowPlayingWanted(true);
    passed(3s);
    EXPECT_EQ(playing(), Names{});
    permission->now = Status::denied;
    router->checkPermission();
    passed(500ms);
    EXPECT_EQ(playing(), (Names{"Browser", "Music"}));
    EXPECT_TRUE(router->meters().empty());
    EXPECT_TRUE(taps->live().empty());
    passed(1min);
    EXPECT_EQ(playing(), (Names{"Browser", "Music"}));
}

TEST_F(AppAudioNowPlaying, TurnedOffEverythingGoes) {
    router->start();
    router->setNowPlayingWanted(true);
    run(3, {music});
    router->setNowPlayingWanted(false);
    EXPECT_EQ(candidates(), Names{});
    EXPECT_EQ(playing(), Names{});
    EXPECT_TRUE(router->meters().empty());
    EXPECT_TRUE(taps->live().empty());
}

// When an app last sounded is kept meanwhile.
TEST_F(AppAudioNowPlaying, TurnedOnAgainASilentAppIsStillSilent) {
    router->start();
    router->setNowPlayingWanted(true);
    passed(2s);
    EXPECT_EQ(playing(), Names{});
    router->setNowPlayingWanted(false);
    passed(1s);
    router->setNowPlayingWanted(true);
    EXPECT_EQ(candidates(), (Names{"Browser", "Music"}));
    EXPECT_EQ(playing(), Names{});
}

TEST_F(AppAudioNowPlaying, AnAppThatStopsAndComesBackStartsAsSounding) {
    router->start();
    router->setNowPlayingWanted(true);
    passed(7500ms);
    EXPECT_EQ(playing(), Names{});
    play(music, false);
    passed(7500ms); // one scan of candidates
    EXPECT_EQ(candidates(), Names{"Browser"});
    EXPECT_FALSE(hasMeter("Music"));
    play(music);
    passed(7500ms);
    EXPECT_EQ(playing(), Names{"Music"});
}

TEST_F(AppAudioNowPlaying, OnlyTheFirstSixAreCandidates) {
    play(music, false);
    play(browser, false);
    for (AudioObjectID i = 0; i < 7; ++i) {
        addApp(100 + i, "App " + std::to_string(7 - i));
        play(100 + i);
    }
    router->start();
    router->setNowPlayingWanted(true);
    EXPECT_EQ(candidates(), (Names{"App 1", "App 2", "App 3", "App 4", "App 5", "App 6"}));
    EXPECT_EQ(playing(), candidates());
    EXPECT_EQ(router->meters().size(), 6u);
    passed(1min);
    EXPECT_EQ(router->meters().size(), 6u);
}

TEST_F(AppAudioNowPlaying, TheOrderIsThatOfTheCandidates) {
    addApp(70, "Arcade");
    play(70);
    router->start();
    router->setNowPlayingWanted(true);
    run(3, {music, 70});
    EXPECT_EQ(playing(), (Names{"Arcade", "Music"}));
}

TEST_F(AppAudioNowPlaying, AClockThatIsTurnedBackHidesNobody) {
    router->start();
    router->setNowPlayingWanted(true);
    passed(100ms);
    time.setWallClock(time.now() - 1h);
    run(3, {music});
    EXPECT_TRUE(playing() == (Names{"Browser", "Music"}));
}

TEST_F(AppAudioNowPlaying, TheLevelIsThatOfTheLoudestApp) {
    EXPECT_EQ(router->liveLevel({}), 0);
    const std::array ids{idOf("Music"), idOf("Browser"), idOf("Nothing")};
    EXPECT_EQ(router->liveLevel(ids), 0);
    router->setNowPlayingWanted(true);
    taps->sound(music, 0.2F);
    taps->sound(browser, 0.3F);
    EXPECT_EQ(router->liveLevel(ids), 0.3F);
    EXPECT_EQ(router->liveLevel(std::span(ids).first(1)), 0.2F);
    EXPECT_EQ(router->liveLevel(std::span(ids).last(1)), 0);
    taps->sound(browser, 0);
    EXPECT_EQ(router->liveLevel(ids), 0.2F);
}

TEST_F(AppAudioNowPlaying, TheLevelOfATappedAppIsThatOfItsTap) {
    router->setNowPlayingWanted(true);
    router->pageAppeared();
    router->setVolume(0, app("Music"));
    taps->of(music)->cells->latest = 0.7F;
    taps->of(music, true)->cells->latest = 0.9F; // the meter is still there
    EXPECT_EQ(router->liveLevel(std::array{idOf("Music")}), 0.7F);
}

} // namespace
} // namespace tavero
