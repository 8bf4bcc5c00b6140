// When the router looks by itself, and how long it rests.

#include "sound/test/SoundWorld.h"

namespace tavero {
namespace {

using namespace std::chrono_literals;

class AppAudioLoop : public SoundWorld {
  protected:
    // How long the last turn meant to rest.
    std::chrono::nanoseconds rest() const { return clock.waits.back(); }
    // The rests that began in this time, and how often the system's processes were listed in it.
    struct Told {
        std::vector<std::chrono::nanoseconds> rests;
        int reads = 0;
    };
    Told during(std::chrono::nanoseconds duration) {
        clock.waits.clear();
        counted->reads = 0;
        passed(duration);
        return {clock.waits, counted->reads};
    }
    // Whether the lists are read anew at the next turn.
    bool rescansAfter(std::chrono::nanoseconds duration) {
        const AudioObjectID process = nextProcess++;
        addApp(process, "App " + std::to_string(process));
        const std::size_t before = router->apps().size();
        passed(duration);
        return router->apps().size() > before;
    }

    AudioObjectID nextProcess = 200;
};

TEST_F(AppAudioLoop, AnIdleMachineIsWokenEachHalfMinuteAndNothingIsRead) {
    play(music);
    router->start();
    passed(0s);
    EXPECT_EQ(rest(), 30s);
    const Told told = during(1h);
    EXPECT_EQ(told.rests, std::vector<std::chrono::nanoseconds>(120, 30s));
    EXPECT_EQ(told.reads, 0);
    EXPECT_TRUE(router->apps().empty());
}

TEST_F(AppAudioLoop, NothingRunsBeforeTheStart) {
    EXPECT_EQ(time.pending(), 0u);
    router->pageAppeared();
    passed(1h);
    EXPECT_EQ(time.pending(), 0u);
    EXPECT_FALSE(audio->hasListeners());
}

TEST_F(AppAudioLoop, OneStartIsEnough) {
    router->start();
    router->start();
    passed(1min);
    EXPECT_EQ(time.pending(), 1u);
}

TEST_F(AppAudioLoop, TheFirstTurnComesAtOnceAndScans) {
    store(R"({"/Applications/Music.app":{"volume":0.5}})");
    restart();
    router->start();
    EXPECT_TRUE(router->apps().empty());
    passed(0s);
    EXPECT_EQ(router->apps().size(), 2u);
    EXPECT_TRUE(isTapped("Music"));
}

TEST_F(AppAudioLoop, OnceASurfaceWasOpenTheRestIsTwoSecondsForGood) {
    router->start();
    passed(0s);
    router->pageAppeared();
    passed(30s); // the rest that had begun
    EXPECT_EQ(rest(), 2s);
    EXPECT_EQ(during(1h).rests, std::vector<std::chrono::nanoseconds>(1800, 2s));
}

TEST_F(AppAudioLoop, WithCandidatesTheRestIsHalfASecond) {
    router->start();
    passed(0s);
    play(music);
    router->setNowPlayingWanted(true);
    passed(0s); // the long rest is not waited out
    EXPECT_EQ(rest(), 500ms);
    EXPECT_EQ(during(1min).rests, std::vector<std::chrono::nanoseconds>(120, 500ms));
}

TEST_F(AppAudioLoop, ATapThatRunsShortensTheRest) {
    store(R"({"/Applications/Music.app":{"volume":0.5}})");
    restart();
    play(music);
    router->start();
    passed(0s);
    EXPECT_EQ(rest(), 30s); // at the head of the first turn there was no tap
    taps->sound(music, 0.5F);
    passed(30s);
    EXPECT_EQ(rest(), 2s);
    taps->of(music)->isRunning = false;
    passed(2s);
    EXPECT_EQ(rest(), 30s);
}

TEST_F(AppAudioLoop, UnseenOnlyEachFifteenthTurnScans) {
    store(R"({"/Applications/Music.app":{"volume":0.5}})");
    restart();
    router->start();
    passed(0s);
    taps->of(music)->isRunning = false;
    for (int turn = 1; turn < 15; ++turn) EXPECT_FALSE(rescansAfter(30s)) << turn;
    EXPECT_TRUE(rescansAfter(30s));
    EXPECT_FALSE(rescansAfter(30s));
}

// What a turn does then shows in the silent capture that it notices, without a question.
TEST_F(AppAudioLoop, UnseenARunningTapIsLookedAfterEachTurn) {
    store(R"({"/Applications/Music.app":{"volume":0.5}})");
    restart();
    play(music);
    router->start();
    passed(0s);
    passed(30s); // the first rest
    EXPECT_TRUE(router->protectedApps().contains(idOf("Music")));
}

TEST_F(AppAudioLoop, UnseenATapThatDoesNotRunWaitsForTheScan) {
    store(R"({"/Applications/Music.app":{"volume":0.5}})");
    restart();
    play(music);
    router->start();
    passed(0s);
    taps->of(music)->isRunning = false;
    passed(14 * 30s);
    EXPECT_TRUE(router->protectedApps().empty());
    passed(30s);
    EXPECT_TRUE(router->protectedApps().contains(idOf("Music")));
}

TEST_F(AppAudioLoop, SeenWithoutCandidatesEachTurnScans) {
    router->pageAppeared();
    router->start();
    passed(0s);
    for (int turn = 1; turn < 32; ++turn) EXPECT_TRUE(rescansAfter(2s)) << turn;
}

TEST_F(AppAudioLoop, SeenWithCandidatesEachOtherTurnScans) {
    play(music);
    router->pageAppeared();
    router->start();
    router->setNowPlayingWanted(true);
    passed(0s);
    for (int turn = 1; turn < 32; ++turn)
        EXPECT_EQ(rescansAfter(500ms), turn % 2 == 0 || turn % 15 == 0) << turn;
}

TEST_F(AppAudioLoop, CandidatesAreSoughtEachFifteenthTurn) {
    play(music);
    router->start();
    router->setNowPlayingWanted(true);
    passed(0s);
    play(browser); // without telling
    passed(14 * 500ms);
    EXPECT_EQ(names(router->candidates()), std::vector<std::string>{"Music"});
    passed(500ms);
    EXPECT_EQ(names(router->candidates()), (std::vector<std::string>{"Browser", "Music"}));
}

TEST_F(AppAudioLoop, FirstCandidatesBeginTheLoopAnew) {
    router->start();
    router->setNowPlayingWanted(true);
    passed(0s);
    EXPECT_EQ(rest(), 30s);
    passed(10s);
    play(music);
    audio->tell(music, {AudioSelector::processIsRunning});
    passed(50ms);
    EXPECT_EQ(rest(), 500ms);
    EXPECT_EQ(time.pending(), 1u); // the old one is over
}

// The scan of a turn finds the first candidates: the turn runs out, the next loop begins at once.
TEST_F(AppAudioLoop, ALoopThatBeginsWithinATurnTakesOver) {
    router->start();
    router->setNowPlayingWanted(true);
    passed(0s);
    play(music);
    passed(14 * 30s);
    EXPECT_TRUE(router->candidates().empty());
    clock.waits.clear();
    passed(30s);
    EXPECT_EQ(names(router->candidates()), std::vector<std::string>{"Music"});
    EXPECT_EQ(clock.waits, (std::vector<std::chrono::nanoseconds>{0s, 500ms}));
    EXPECT_EQ(time.pending(), 1u);
    play(browser);
    passed(14 * 500ms);
    EXPECT_EQ(router->candidates().size(), 1u);
    passed(500ms); // fifteen turns after it began
    EXPECT_EQ(router->candidates().size(), 2u);
}

// Its ticks count from 0 too: the next even one is the second that follows.
TEST_F(AppAudioLoop, ALoopThatTakesOverHasItsFirstTurnAtOnce) {
    router->pageAppeared();
    router->start();
    router->setNowPlayingWanted(true);
    passed(14 * 2s);
    play(music);
    passed(2s); // the scan
    EXPECT_EQ(names(router->candidates()), std::vector<std::string>{"Music"});
    EXPECT_FALSE(rescansAfter(500ms));
    EXPECT_TRUE(rescansAfter(500ms));
}

TEST_F(AppAudioLoop, EndsWithTheRouter) {
    play(music);
    router->start();
    router->setNowPlayingWanted(true);
    passed(3s);
    router.reset();
    EXPECT_EQ(time.pending(), 0u);
    EXPECT_FALSE(audio->hasListeners());
    EXPECT_TRUE(taps->live().empty());
}

} // namespace
} // namespace tavero
