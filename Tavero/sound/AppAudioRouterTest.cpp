// What the router tells, whom it asks, and what it does without sound.

#include "sound/test/SoundWorld.h"

#include <QCoreApplication>
#include <QSignalSpy>

#include <array>
#include <thread>
#include <utility>

namespace tavero {
namespace {

using namespace std::chrono_literals;

using Status = AudioCapturePermission::Status;

class AppAudioRouterTest : public SoundWorld {};

TEST_F(AppAudioRouterTest, BeginsWithThePermissionAndTheSettingsAndNothingElse) {
    permission->now = Status::denied;
    store(R"({"/Applications/Music.app":{"volume":0.5}})");
    counted->reads = 0;
    restart();
    EXPECT_EQ(router->permission(), Status::denied);
    EXPECT_EQ(router->settings().size(), 1u);
    EXPECT_TRUE(router->apps().empty());
    EXPECT_EQ(counted->reads, 0);
}

TEST_F(AppAudioRouterTest, AMachineWithoutSoundStaysEmpty) {
    router = std::make_unique<AppAudioRouter>(AudioSystem{}, nullptr, clock, settings);
    bool done = false;
    router->start();
    router->pageAppeared();
    router->checkPermission();
    router->requestPermission([&] { done = true; });
    router->setNowPlayingWanted(true);
    router->refresh(true);
    const AudioApp app{.id = idOf("Music"), .processObjects = {music}};
    router->setVolume(0.5, app);
    router->setOutput("headphones", app);
    passed(1h);
    EXPECT_TRUE(done);
    EXPECT_EQ(router->permission(), Status::notAsked);
    EXPECT_TRUE(router->apps().empty());
    EXPECT_TRUE(router->outputs().empty());
    EXPECT_TRUE(router->playing().empty());
    EXPECT_TRUE(router->taps().empty());
    EXPECT_EQ(router->defaultOutputUID(), std::nullopt);
    EXPECT_EQ(router->liveLevel(std::array{app.id}), 0);
    EXPECT_EQ(time.pending(), 0u); // nor is it ever woken
}

TEST_F(AppAudioRouterTest, ASurfaceThatOpensSeesTheLists) {
    router->pageAppeared();
    EXPECT_EQ(names(router->apps()), (std::vector<std::string>{"Browser", "Music"}));
    ASSERT_EQ(router->outputs().size(), 2u);
    EXPECT_EQ(router->outputs()[1].uid, "headphones");
    EXPECT_EQ(router->defaultOutputUID(), "speakers");
}

TEST_F(AppAudioRouterTest, ASurfaceThatOpensLooksAtThePermission) {
    store(R"({"/Applications/Music.app":{"volume":0.5}})");
    permission->now = Status::denied;
    restart();
    permission->now = Status::granted;
    QSignalSpy told(router.get(), &AppAudioRouter::permissionChanged);
    router->pageAppeared();
    EXPECT_EQ(router->permission(), Status::granted);
    EXPECT_EQ(told.count(), 1);
    EXPECT_TRUE(isTapped("Music"));
    router->pageAppeared();
    EXPECT_EQ(told.count(), 1);
}

TEST_F(AppAudioRouterTest, APermissionThatStaysRescansNothing) {
    router->pageAppeared();
    counted->reads = 0;
    router->checkPermission();
    EXPECT_EQ(counted->reads, 0);
    permission->now = Status::notAsked;
    router->checkPermission();
    EXPECT_GT(counted->reads, 0);
}

TEST_F(AppAudioRouterTest, WhatTheUserAnswersIsReadAfterwards) {
    store(R"({"/Applications/Music.app":{"volume":0.5}})");
    permission->now = Status::notAsked;
    restart();
    int done = 0;
    router->requestPermission([&] { ++done; });
    EXPECT_EQ(done, 0);
    permission->answer(Status::granted);
    EXPECT_EQ(done, 0); // never from within the answer
    EXPECT_EQ(router->permission(), Status::notAsked);
    passed(0s);
    EXPECT_EQ(done, 1);
    EXPECT_EQ(router->permission(), Status::granted);
    EXPECT_TRUE(isTapped("Music"));
}

// What holds is what is stored, whatever the answer was.
TEST_F(AppAudioRouterTest, ADeniedRequestLeavesNoTap) {
    store(R"({"/Applications/Music.app":{"volume":0.5}})");
    permission->now = Status::notAsked;
    restart();
    router->requestPermission();
    permission->answer(Status::denied);
    passed(0s);
    EXPECT_EQ(router->permission(), Status::denied);
    EXPECT_TRUE(taps->live().empty());
    EXPECT_EQ(router->settings().size(), 1u);
}

TEST_F(AppAudioRouterTest, AnAnswerThatComesTooLateIsDropped) {
    int done = 0;
    router->requestPermission([&] { ++done; });
    router.reset();
    permission->answer(Status::denied);
    passed(1s);
    router = nullptr;
    restart();
    router->requestPermission([&] { ++done; });
    permission->answer(Status::granted); // on its way when the router ends
    router.reset();
    passed(1s);
    EXPECT_EQ(done, 0);
}

TEST_F(AppAudioRouterTest, AnAnswerOfAnotherThreadIsHeardOnThisOne) {
    int argc = 1;
    char name[] = "test";
    char* argv[] = {name, nullptr};
    const QCoreApplication application(argc, argv);
    std::thread::id heardOn;
    router->requestPermission([&] { heardOn = std::this_thread::get_id(); });
    std::thread([&] { permission->answer(Status::denied); }).join();
    EXPECT_EQ(router->permission(), Status::granted);
    QCoreApplication::processEvents();
    EXPECT_EQ(heardOn, std::this_thread::get_id());
    EXPECT_EQ(router->permission(), Status::denied);
}

TEST_F(AppAudioRouterTest, AnAppThatBeginsToPlayIsSeenAtOnce) {
    router->start();
    router->setNowPlayingWanted(true);
    router->pageAppeared();
    passed(1s);
    play(music);
    audio->tell(music, {AudioSelector::processIsRunning});
    EXPECT_FALSE(router->apps()[0].isPlaying);
    passed(50ms);
    EXPECT_EQ(router->apps()[0].name, "Music");
    EXPECT_TRUE(router->apps()[0].isPlaying);
    EXPECT_EQ(names(router->candidates()), std::vector<std::string>{"Music"});
    EXPECT_EQ(names(router->playing()), std::vector<std::string>{"Music"});
}

TEST_F(AppAudioRouterTest, ANewsOnItsWayMayComeAfterTheEnd) {
    router->start();
    passed(1s);
    const auto calls = audio->callsUnderWay(music, {AudioSelector::processIsRunning});
    EXPECT_EQ(calls.size(), 1u);
    audio->tell(music, {AudioSelector::processIsRunning});
    passed(50ms - 1ns);
    router.reset();
    for (const auto& call : calls) call();
    passed(1s);
    EXPECT_EQ(time.pending(), 0u);
}

// All signals, and how often each was given.
class AppAudioSignals : public SoundWorld {
  protected:
    AppAudioSignals() {
        play(music);
        const auto note = [this](auto signal, std::string name) {
            QObject::connect(router.get(), signal, router.get(),
                             [this, name = std::move(name)] { told.push_back(name); });
        };
        note(&AppAudioRouter::appsChanged, "apps");
        note(&AppAudioRouter::protectedAppsChanged, "protectedApps");
        note(&AppAudioRouter::outputsChanged, "outputs");
        note(&AppAudioRouter::defaultOutputUIDChanged, "default");
        note(&AppAudioRouter::permissionChanged, "permission");
        note(&AppAudioRouter::settingsChanged, "settings");
        note(&AppAudioRouter::playingChanged, "playing");
        note(&AppAudioRouter::candidatesChanged, "candidates");
        note(&AppAudioRouter::tapsChanged, "taps");
        note(&AppAudioRouter::metersChanged, "meters");
        note(&AppAudioRouter::nowPlayingWantedChanged, "wanted");
    }
    std::vector<std::string> taken() { return std::exchange(told, {}); }

    std::vector<std::string> told;
};

using Signals = std::vector<std::string>;

TEST_F(AppAudioSignals, AreGivenOnceForWhatChanged) {
    router->pageAppeared();
    EXPECT_EQ(taken(), (Signals{"apps", "outputs", "default"}));
    router->setVolume(0.5, app("Music"));
    EXPECT_EQ(taken(), (Signals{"settings", "taps"}));
    router->setNowPlayingWanted(true);
    EXPECT_EQ(taken(), (Signals{"playing", "candidates", "wanted"}));
    makeDefault(headphones);
    router->refresh(true);
    EXPECT_EQ(taken(), (Signals{"default", "taps"}));
    router->setMuted(true, app("Browser"));
    EXPECT_EQ(taken(), (Signals{"settings", "taps"}));
    permission->now = Status::denied;
    router->checkPermission();
    EXPECT_EQ(taken(), (Signals{"permission", "taps"}));
    router->setNowPlayingWanted(false);
    EXPECT_EQ(taken(), (Signals{"playing", "candidates", "wanted"}));
}

TEST_F(AppAudioSignals, AnEqualValueTellsNobody) {
    router->pageAppeared();
    router->setVolume(0.5, app("Music"));
    router->setNowPlayingWanted(true);
    told.clear();
    router->pageAppeared();
    router->refresh(true);
    router->checkPermission();
    router->setVolume(0.5, app("Music"));
    router->setMuted(false, app("Browser"));
    router->setNowPlayingWanted(true);
    EXPECT_EQ(taken(), Signals{});
    router->start();
    passed(400ms);
    EXPECT_EQ(taken(), Signals{});
}

TEST_F(AppAudioSignals, AProtectedAppIsTold) {
    router->pageAppeared();
    router->setVolume(0.5, app("Music"));
    passed(9s);
    told.clear();
    router->refresh(false);
    EXPECT_EQ(taken(), (Signals{"protectedApps", "taps"}));
    router->setVolume(0.4, app("Music"));
    EXPECT_EQ(taken(), (Signals{"protectedApps", "settings", "taps"}));
}

TEST_F(AppAudioSignals, MetersAreTold) {
    router->setNowPlayingWanted(true);
    EXPECT_EQ(taken(), (Signals{"playing", "candidates", "meters", "wanted"}));
}

TEST_F(AppAudioSignals, WhoIsToldMayChangeSomething) {
    QObject::connect(router.get(), &AppAudioRouter::appsChanged, router.get(), [this] {
        for (const AudioApp& app : router->apps()) router->setVolume(0.5, app);
        router->refresh(true);
    });
    router->pageAppeared();
    EXPECT_EQ(router->taps().size(), 2u);
    addApp(70, "Podcasts");
    router->start();
    passed(1min);
    EXPECT_TRUE(router->settings().contains(idOf("Podcasts")));
}

TEST_F(AppAudioSignals, AreGivenWhenAllValuesAreNew) {
    router->pageAppeared();
    std::size_t tapped = 0;
    QObject::connect(router.get(), &AppAudioRouter::settingsChanged, router.get(),
                     [&] { tapped = router->taps().size(); });
    router->setVolume(0.5, app("Music"));
    EXPECT_EQ(tapped, 1u);
}

} // namespace
} // namespace tavero
