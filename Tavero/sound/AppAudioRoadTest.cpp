// The router over the simulated Mac: what is heard at its outputs.

#include "platform/sim/SimMachine.h"
#include "sound/AppAudioRouter.h"
#include "sound/AudioDeviceWatcher.h"
#include "time/VirtualTime.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <functional>
#include <optional>
#include <set>
#include <string>

namespace tavero {
namespace {

using namespace std::chrono_literals;

using Status = AudioCapturePermission::Status;

constexpr AudioObjectID musicProcess = 900;
constexpr AudioObjectID browserProcess = 901;
constexpr AudioObjectID helperProcess = 902;
constexpr AudioObjectID earbudsDevice = 61;
constexpr float half = 0.5F;
constexpr float quarter = 0.25F;

// Music plays at 0.5, a browser by its helper at 0.25, and there are speakers and earbuds.
class AppAudioRoad : public testing::Test {
  protected:
    static constexpr const char* music = "/Applications/Music.app";
    static constexpr const char* browser = "/Applications/Browser.app";
    static constexpr const char* speakers = "BuiltInSpeakerDevice";
    static constexpr const char* earbuds = "earbuds";

    AppAudioRoad() {
        sim.state().processes = {
            {.pid = 321, .path = "/Applications/Music.app/Contents/MacOS/Music"},
            {.pid = 322, .path = "/Applications/Browser.app/Contents/MacOS/Browser"},
            {.pid = 323,
             .path = "/Applications/Browser.app/Contents/Frameworks/Helper.app/Contents/MacOS/H"}};
        sim.audio().change([](SimAudio& audio) {
            audio.permission = Status::granted;
            audio.devices.push_back(simEarbuds(earbudsDevice, "Earbuds", earbuds));
            audio.processes = {
                {.id = musicProcess, .pid = 321, .loudness = {half, half}, .plays = true},
                {.id = browserProcess, .pid = 322},
                {.id = helperProcess, .pid = 323, .loudness = {quarter, quarter}, .plays = true}};
        });
        begin();
        router->pageAppeared();
    }

    void begin() {
        router.emplace(sound, nullptr, time, settings);
        router->start();
        devices.emplace(*sound.objects, queue, [this] { router->refresh(true); });
    }
    void end() {
        devices.reset();
        router.reset();
    }
    // Lets the Mac play. Its hardware tells what changed by itself.
    void run(std::chrono::milliseconds duration) {
        for (std::chrono::milliseconds passed{}; passed < duration; passed += 50ms) {
            sim.audio().cycle();
            time.advance(50ms);
        }
        sim.audio().cycle();
    }
    float heard(const char* uid) { return sim.audio().heard(uid); }
    AudioApp app(const char* id) const {
        for (const AudioApp& app : router->apps())
            if (app.id == id) return app;
        ADD_FAILURE() << "no app " << id;
        return {};
    }
    void change(const std::function<void(SimAudio&)>& change) { sim.audio().change(change); }
    void unplug() {
        change([](SimAudio& audio) {
            std::erase_if(audio.devices, [](const auto& each) { return each.id == earbudsDevice; });
        });
    }
    void plug(AudioObjectID id) {
        change(
            [&](SimAudio& audio) { audio.devices.push_back(simEarbuds(id, "Earbuds", earbuds)); });
    }
    bool isIntercepting() { return sim.audio().now().hasLeftovers(); }

    QTemporaryDir folder;
    Settings settings{folder.filePath("settings.ini")};
    VirtualTime time;
    ClockQueue queue{time};
    SimMachine sim;
    AudioSystem sound = sim.machine().audio;
    std::optional<AppAudioRouter> router;
    std::optional<AudioDeviceWatcher> devices;
};

TEST_F(AppAudioRoad, UntouchedAppsAreNeverIntercepted) {
    run(20s);
    EXPECT_FALSE(isIntercepting());
    EXPECT_FLOAT_EQ(heard(speakers), half + quarter);
    EXPECT_EQ(heard(earbuds), 0);
}

TEST_F(AppAudioRoad, TwoAppsHaveTwoVolumesAndTwoOutputsAndKeepThem) {
    router->setVolume(0.5, app(music));
    router->setOutput(earbuds, app(browser));
    router->setVolume(0.2, app(browser));
    run(3s);
    EXPECT_FLOAT_EQ(heard(speakers), half * 0.5F);
    EXPECT_FLOAT_EQ(heard(earbuds), quarter * 0.2F);

    end(); // the program ends, and the sound goes its own way again
    EXPECT_FALSE(isIntercepting());
    run(1s);
    EXPECT_FLOAT_EQ(heard(speakers), half + quarter);
    EXPECT_EQ(heard(earbuds), 0);

    begin();
    run(3s);
    EXPECT_FLOAT_EQ(heard(speakers), half * 0.5F);
    EXPECT_FLOAT_EQ(heard(earbuds), quarter * 0.2F);

    unplug();
    run(3s);
    EXPECT_FLOAT_EQ(heard(speakers), half * 0.5F + quarter);
    plug(77); // as another object, with the same UID
    run(3s);
    EXPECT_FLOAT_EQ(heard(speakers), half * 0.5F);
    EXPECT_FLOAT_EQ(heard(earbuds), quarter * 0.2F);

    change([](SimAudio& audio) { audio.defaultOutput = 77; });
    run(3s);
    EXPECT_EQ(heard(speakers), 0);
    EXPECT_FLOAT_EQ(heard(earbuds), half + quarter * 0.2F); // music is turned down elsewhere only
    change([&](SimAudio& audio) { audio.defaultOutput = audio.device(speakers)->id; });
    run(3s);
    EXPECT_FLOAT_EQ(heard(speakers), half * 0.5F);
    EXPECT_FLOAT_EQ(heard(earbuds), quarter * 0.2F);
}

TEST_F(AppAudioRoad, AMutedAppIsSilentAndItsLevelIsStillSeen) {
    router->setMuted(true, app(music));
    run(20s);
    EXPECT_FLOAT_EQ(heard(speakers), quarter);
    EXPECT_FLOAT_EQ(router->liveLevel(std::array{std::string(music)}), half);
    EXPECT_TRUE(router->protectedApps().empty());
    router->setMuted(false, app(music));
    run(100ms);
    EXPECT_FALSE(isIntercepting());
    EXPECT_FLOAT_EQ(heard(speakers), half + quarter);
}

TEST_F(AppAudioRoad, AProtectedAppIsHeardAgainSomeSecondsLater) {
    change([](SimAudio& audio) { audio.process(musicProcess)->isProtected = true; });
    router->setVolume(0.5, app(music));
    run(4s);
    EXPECT_FLOAT_EQ(heard(speakers), quarter);
    run(7s);
    EXPECT_EQ(router->protectedApps(), std::set<std::string>{music});
    EXPECT_FALSE(isIntercepting());
    EXPECT_FLOAT_EQ(heard(speakers), half + quarter);
}

TEST_F(AppAudioRoad, MetersChangeNothingOfWhatIsHeard) {
    router->setNowPlayingWanted(true);
    run(3s);
    EXPECT_TRUE(isIntercepting());
    EXPECT_FLOAT_EQ(heard(speakers), half + quarter);
    ASSERT_EQ(router->playing().size(), 2u);
    EXPECT_FLOAT_EQ(router->liveLevel(std::array{std::string(browser)}), quarter);
    change([](SimAudio& audio) { audio.process(musicProcess)->loudness = {}; });
    run(3s); // it still says that it plays
    ASSERT_EQ(router->playing().size(), 1u);
    EXPECT_EQ(router->playing()[0].id, browser);
    router->setNowPlayingWanted(false);
    EXPECT_FALSE(isIntercepting());
}

TEST_F(AppAudioRoad, AnAppThatQuitsTakesItsTapAlong) {
    router->setVolume(0.5, app(music));
    run(1s);
    EXPECT_TRUE(isIntercepting());
    sim.quit(music);
    sim.audio().tell();
    run(1s);
    EXPECT_TRUE(router->taps().empty());
    EXPECT_FALSE(isIntercepting());
    EXPECT_FLOAT_EQ(heard(speakers), quarter);
}

TEST_F(AppAudioRoad, AnotherProcessOfAnAppIsTurnedDownToo) {
    router->setVolume(0.5, app(browser));
    run(1s);
    change([](SimAudio& audio) {
        SimAudioProcess& process = *audio.process(browserProcess);
        process.loudness = {quarter, quarter};
        process.plays = true;
    });
    run(1s);
    EXPECT_FLOAT_EQ(heard(speakers), half + (quarter + quarter) * 0.5F);
}

TEST_F(AppAudioRoad, NothingIsTappedBeforeTheUserAllowsIt) {
    end();
    change([](SimAudio& audio) { audio.permission = Status::notAsked; });
    begin();
    router->pageAppeared();
    router->setVolume(0.5, app(music));
    run(3s);
    EXPECT_FALSE(isIntercepting());
    EXPECT_FLOAT_EQ(heard(speakers), half + quarter);
    router->requestPermission();
    run(1s);
    EXPECT_EQ(router->permission(), Status::granted);
    EXPECT_FLOAT_EQ(heard(speakers), half * 0.5F + quarter);
}

TEST_F(AppAudioRoad, ATapThatFailsLeavesNothingAndIsTriedAgain) {
    for (const SimAudioCall call : {SimAudioCall::createTap, SimAudioCall::createAggregate,
                                    SimAudioCall::createIOProc, SimAudioCall::start}) {
        change([&](SimAudio& audio) { audio.failures[call] = -66; });
        router->setVolume(0.5, app(music));
        EXPECT_FALSE(isIntercepting());
        run(3s);
        EXPECT_FLOAT_EQ(heard(speakers), half * 0.5F + quarter);
        router->setVolume(1, app(music));
        EXPECT_FALSE(isIntercepting());
    }
}

} // namespace
} // namespace tavero
