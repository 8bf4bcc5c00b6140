#include "platform/sim/SimMachine.h"
#include "sound/SoundController.h"
#include "sound/tap/AppAudioTap.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <thread>
#include <utility>
#include <variant>
#include <vector>

namespace tavero {
namespace {

using testing::ElementsAre;
using testing::FloatEq;

constexpr AudioObjectID music = 900;
constexpr AudioObjectID browser = 901;
constexpr const char* speakers = "BuiltInSpeakerDevice";
constexpr const char* display = "5E1D-D15P-1A7";
constexpr const char* headset = "headset";

// A music app that plays, louder on its right, and a browser that plays too: both to the speakers.
struct SimAudioTapTest : testing::Test {
    SimMachine sim;
    AudioSystem sound = sim.machine().audio;

    SimAudioTapTest() {
        SimAudio& audio = sim.state().audio;
        audio.permission = AudioCapturePermission::Status::granted;
        audio.devices.push_back(simDisplay());
        audio.devices.push_back({.id = 71,
                                 .name = "Headset",
                                 .uid = headset,
                                 .transport = fourCC("usb "),
                                 .output = {.streams = {2}},
                                 .input = {.streams = {1, 1}}});
        audio.processes = {
            {.id = music, .pid = 321, .loudness = {0.25f, 0.5f}, .plays = true},
            {.id = browser, .pid = 322, .loudness = {0.125f, 0.125f}, .plays = true}};
    }

    AppAudioTap::Result start(TapRequest request, float volume) {
        return AppAudioTap::start(*sound.taps, std::move(request), volume, Date{});
    }
    std::unique_ptr<AppAudioTap> tap(TapRequest request, float volume) {
        return std::get<std::unique_ptr<AppAudioTap>>(start(std::move(request), volume));
    }
    std::vector<float> hear(const std::string& uid) {
        sim.audio().cycle();
        return sim.audio().heardChannels(uid);
    }
    void change(const std::function<void(SimAudioProcess&)>& change) {
        sim.audio().change([&](SimAudio& audio) { change(*audio.process(music)); });
    }
};

TEST_F(SimAudioTapTest, WithoutATapAllIsHeardAtTheDefaultOutput) {
    EXPECT_EQ(sim.audio().heard(speakers), 0); // nothing was played yet
    EXPECT_THAT(hear(speakers), ElementsAre(0.375f, 0.625f));
    EXPECT_EQ(sim.audio().heard(speakers), 0.625f);
    EXPECT_THAT(hear(display), ElementsAre(0, 0));
    EXPECT_EQ(sim.audio().heard("gone"), 0);
    sim.audio().change([](SimAudio& audio) { audio.process(browser)->deviceUID = display; });
    EXPECT_THAT(hear(speakers), ElementsAre(0.25f, 0.5f));
    EXPECT_THAT(hear(display), ElementsAre(0.125f, 0.125f));
    change([](SimAudioProcess& process) { process.plays = false; });
    EXPECT_THAT(hear(speakers), ElementsAre(0, 0));
}

TEST_F(SimAudioTapTest, HalfTheGainOnAnotherOutputIsHalfAsLoudThereAndSilentHere) {
    const auto half = tap({.processObjects = {music}, .outputUID = display}, 0.5f);
    EXPECT_THAT(hear(display), ElementsAre(0.125f, 0.25f));
    EXPECT_THAT(hear(speakers), ElementsAre(0.125f, 0.125f)); // the browser alone
    EXPECT_TRUE(half->isRunning());
}

TEST_F(SimAudioTapTest, TheLevelIsThatOfBeforeTheGain) {
    const auto quiet = tap({.processObjects = {music}, .outputUID = speakers}, 0);
    EXPECT_FALSE(quiet->hasHeardSound());
    EXPECT_THAT(hear(speakers), ElementsAre(0.125f, 0.125f));
    EXPECT_EQ(quiet->latestLevel(), 0.5f);
    EXPECT_TRUE(quiet->hasHeardSound());
    EXPECT_EQ(quiet->takeRecentPeak(), 0.5f);
    EXPECT_EQ(quiet->takeRecentPeak(), 0);
}

TEST_F(SimAudioTapTest, AnotherVolumeIsHeardInTheNextCycle) {
    const auto one = tap({.processObjects = {music}, .outputUID = display}, 1);
    EXPECT_THAT(hear(display), ElementsAre(0.25f, 0.5f));
    one->setVolume(0.1f);
    EXPECT_THAT(hear(display), ElementsAre(FloatEq(0.025f), FloatEq(0.05f)));
}

TEST_F(SimAudioTapTest, TwoAppsHaveTwoVolumesAndTwoOutputs) {
    const auto first =
        tap({.processObjects = {music}, .outputUID = display, .sourceUID = speakers}, 0.5f);
    const auto second =
        tap({.processObjects = {browser}, .outputUID = headset, .sourceUID = speakers}, 0.25f);
    EXPECT_THAT(hear(display), ElementsAre(0.125f, 0.25f));
    EXPECT_THAT(hear(headset), ElementsAre(0.03125f, 0.03125f));
    EXPECT_THAT(hear(speakers), ElementsAre(0, 0));
}

TEST_F(SimAudioTapTest, AnAppOfTwoProcessesIsOneSound) {
    const auto both = tap({.processObjects = {music, browser}, .outputUID = display}, 1);
    EXPECT_THAT(hear(display), ElementsAre(0.375f, 0.625f));
    EXPECT_THAT(hear(speakers), ElementsAre(0, 0));
}

TEST_F(SimAudioTapTest, ListeningChangesNothingOfWhatIsHeard) {
    const auto meter =
        tap({.processObjects = {music}, .outputUID = speakers, .listenOnly = true}, 1);
    EXPECT_THAT(hear(speakers), ElementsAre(0.375f, 0.625f));
    EXPECT_EQ(meter->latestLevel(), 0.5f);
    const SimAudio audio = sim.audio().now();
    EXPECT_EQ(audio.aggregates.at(0).bufferFrames, 2048u);
    EXPECT_EQ(audio.taps.at(0).description.muteBehavior, TapDescription::MuteBehavior::unmuted);
}

TEST_F(SimAudioTapTest, EndingTheTapGivesTheSoundBackAndLeavesNothing) {
    auto one = tap({.processObjects = {music}, .outputUID = display}, 0.5f);
    EXPECT_THAT(hear(speakers), ElementsAre(0.125f, 0.125f));
    one->stop();
    EXPECT_THAT(hear(speakers), ElementsAre(0.375f, 0.625f));
    EXPECT_THAT(hear(display), ElementsAre(0, 0));
    EXPECT_FALSE(one->isRunning());
    EXPECT_FALSE(sim.audio().now().hasLeftovers());
    one = tap({.processObjects = {music}, .outputUID = display}, 0.5f);
    one.reset();
    EXPECT_THAT(hear(speakers), ElementsAre(0.375f, 0.625f));
    EXPECT_FALSE(sim.audio().now().hasLeftovers());
}

TEST_F(SimAudioTapTest, AStartThatFailsAtAnyStepLeavesNothing) {
    using Step = TapFailure::Step;
    const std::pair<SimAudioCall, Step> steps[] = {{SimAudioCall::createTap, Step::tap},
                                                   {SimAudioCall::createAggregate, Step::aggregate},
                                                   {SimAudioCall::createIOProc, Step::ioProc},
                                                   {SimAudioCall::start, Step::start}};
    for (const auto& [call, step] : steps) {
        sim.state().audio.failures = {{call, -7}};
        const auto result = start({.processObjects = {music}, .outputUID = display}, 0.5f);
        ASSERT_TRUE(std::holds_alternative<TapFailure>(result));
        EXPECT_EQ(std::get<TapFailure>(result), (TapFailure{step, -7}));
        EXPECT_FALSE(sim.audio().now().hasLeftovers());
        EXPECT_THAT(hear(speakers), ElementsAre(0.375f, 0.625f));
    }
    EXPECT_TRUE(std::holds_alternative<TapFailure>(
        start({.processObjects = {music}, .outputUID = "gone"}, 0.5f)));
    EXPECT_FALSE(sim.audio().now().hasLeftovers());
}

TEST_F(SimAudioTapTest, TheMicrophoneOfTheOutputIsNeverHeard) {
    const auto one = tap({.processObjects = {music}, .outputUID = headset}, 0.5f);
    EXPECT_THAT(hear(headset), ElementsAre(0.125f, 0.25f));
    EXPECT_EQ(one->latestLevel(), 0.5f);
    change([](SimAudioProcess& process) { process.plays = false; });
    EXPECT_THAT(hear(headset), ElementsAre(0, 0));
    EXPECT_EQ(one->latestLevel(), 0);
}

TEST_F(SimAudioTapTest, AMonoOutputAndOneOfTwoStreamsPlayToo) {
    sim.audio().change([](SimAudio& audio) { audio.device(45)->output.streams = {1}; });
    const auto mono = tap({.processObjects = {music}, .outputUID = display}, 1);
    EXPECT_THAT(hear(display), ElementsAre(0.25f));
    sim.audio().change([](SimAudio& audio) { audio.device(45)->output.streams = {2, 2}; });
    EXPECT_THAT(hear(display), ElementsAre(0.25f, 0.5f, 0.25f, 0.5f));
}

TEST_F(SimAudioTapTest, ATapOfOneDeviceTakesOnlyWhatGoesThere) {
    const auto one =
        tap({.processObjects = {music}, .outputUID = display, .sourceUID = speakers}, 1);
    EXPECT_THAT(hear(display), ElementsAre(0.25f, 0.5f));
    change([](SimAudioProcess& process) { process.deviceUID = headset; });
    EXPECT_THAT(hear(display), ElementsAre(0, 0));
    EXPECT_THAT(hear(headset), ElementsAre(0.25f, 0.5f));
}

TEST_F(SimAudioTapTest, AProtectedAppIsSilentWhileItIsTapped) {
    change([](SimAudioProcess& process) { process.isProtected = true; });
    auto one = tap({.processObjects = {music}, .outputUID = display}, 1);
    EXPECT_THAT(hear(display), ElementsAre(0, 0));
    EXPECT_THAT(hear(speakers), ElementsAre(0.125f, 0.125f));
    EXPECT_FALSE(one->hasHeardSound());
    EXPECT_TRUE(one->isRunning());
    one.reset();
    EXPECT_THAT(hear(speakers), ElementsAre(0.375f, 0.625f));
}

TEST_F(SimAudioTapTest, WithoutPermissionATapHearsNothing) {
    sim.state().audio.permission = AudioCapturePermission::Status::denied;
    const auto one = tap({.processObjects = {music}, .outputUID = display}, 1);
    EXPECT_THAT(hear(display), ElementsAre(0, 0));
    EXPECT_FALSE(one->hasHeardSound());
}

TEST_F(SimAudioTapTest, AProcessThatEndsLeavesItsTapSilent) {
    const auto one = tap({.processObjects = {music}, .outputUID = display}, 1);
    EXPECT_THAT(hear(display), ElementsAre(0.25f, 0.5f));
    sim.audio().change([](SimAudio& audio) { audio.end({321}); });
    EXPECT_THAT(hear(display), ElementsAre(0, 0));
    EXPECT_EQ(one->latestLevel(), 0);
    EXPECT_TRUE(one->isRunning());
}

TEST_F(SimAudioTapTest, ATapStopsWithItsDeviceAndThenTheSoundIsGone) {
    const auto one = tap({.processObjects = {music}, .outputUID = headset}, 1);
    EXPECT_TRUE(one->isRunning());
    sim.audio().change([](SimAudio& audio) {
        std::erase_if(audio.devices, [](const auto& device) { return device.uid == headset; });
    });
    EXPECT_FALSE(one->isRunning());
    EXPECT_THAT(hear(speakers), ElementsAre(0.125f, 0.125f)); // it is still muted
}

TEST_F(SimAudioTapTest, ATapIsNeverOfferedAsAnOutput) {
    const auto before = SoundController::outputs(*sound.objects);
    const auto one = tap({.processObjects = {music}, .outputUID = headset}, 1);
    EXPECT_EQ(sound.objects->words(audioSystem, {AudioSelector::devices})->size(), 5u);
    EXPECT_EQ(SoundController::outputs(*sound.objects), before);
    EXPECT_EQ(SoundController::inputs(*sound.objects).size(), 2u);
}

// An app beside it whose block goes on for as long as it is wanted.
struct HeldApp {
    std::atomic<bool> isIn = false;
    std::atomic<bool> mayLeave = false;

    explicit HeldApp(MacAudioHardware& hardware) {
        AudioObjectID tap = 0;
        AudioObjectID aggregate = 0;
        MacAudioHardware::IOProcID proc = nullptr;
        hardware.createTap({.processes = {browser}, .uuid = "held"}, tap);
        hardware.createAggregate({.name = "Held",
                                  .uid = "held",
                                  .main = headset,
                                  .subdevices = {headset},
                                  .taps = {{.uid = "held"}}},
                                 aggregate);
        hardware.createIOProc(aggregate, {.call = call, .context = this}, proc);
        EXPECT_EQ(hardware.start(aggregate, proc), 0);
    }

    static void call(void* context, std::span<const AudioBuffer>, std::span<const AudioBuffer>) {
        auto* self = static_cast<HeldApp*>(context);
        self->isIn = true;
        while (!self->mayLeave) std::this_thread::yield();
        self->isIn = false;
    }
};

// The cells of a tap are gone as soon as it is, so it waits for the cycle that is under way.
TEST_F(SimAudioTapTest, ATapThatEndsWaitsForTheHardware) {
    auto one = tap({.processObjects = {music}, .outputUID = display}, 1);
    HeldApp held(*sim.audioHardware());
    std::thread cycling([&] { sim.audio().cycle(8); });
    while (!held.isIn) std::this_thread::yield();
    std::thread releasing([&] {
        while (!held.mayLeave && sim.audio().now().taps.size() > 1) std::this_thread::yield();
        for (int i = 0; i < 1000; ++i) std::this_thread::yield(); // whoever doesn't wait is first
        held.mayLeave = true;
    });
    one.reset();
    EXPECT_FALSE(held.isIn);
    held.mayLeave = true;
    cycling.join();
    releasing.join();
}

TEST_F(SimAudioTapTest, TapsComeAndGoWhileTheHardwareCycles) {
    std::atomic<bool> isDone = false;
    std::atomic<int> cycles = 0;
    std::thread cycling([&] {
        for (; !isDone; ++cycles) sim.audio().cycle(64);
    });
    for (int i = 0; i < 100 || cycles < 100; ++i) {
        const auto one = tap({.processObjects = {music}, .outputUID = display}, 0.5f);
        one->setVolume(1);
        EXPECT_GE(one->takeRecentPeak(), 0);
    }
    isDone = true;
    cycling.join();
    EXPECT_FALSE(sim.audio().now().hasLeftovers());
}

} // namespace
} // namespace tavero
