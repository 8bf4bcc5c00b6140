#include "platform/sim/SimAudio.h"

#include "platform/sim/SimMachine.h"
#include "sound/SoundController.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace tavero {
namespace {

using testing::ElementsAre;

constexpr AudioObjectID speakers = 41;
constexpr AudioObjectID microphone = 42;
constexpr AudioObjectID display = 45;
constexpr AudioObjectID music = 900;
constexpr AudioAddress outputVolume{AudioSelector::volume, AudioScope::output};
constexpr AudioAddress outputMute{AudioSelector::mute, AudioScope::output};

struct SimAudioTest : testing::Test {
    SimMachine sim;
    std::shared_ptr<AudioObjects> objects = sim.audioObjects();

    SimAudioTest() {
        SimAudio& audio = sim.state().audio;
        audio.devices.push_back(simDisplay());
        audio.processes = {{.id = music, .pid = 321, .loudness = {0.5f, 0.25f}}};
    }

    void remove(AudioObjectID device) {
        sim.audio().change([&](SimAudio& audio) {
            std::erase_if(audio.devices, [&](const auto& each) { return each.id == device; });
        });
    }
    SimAudioDevice& device(AudioObjectID id) { return *sim.state().audio.device(id); }
};

TEST_F(SimAudioTest, TheSystemListsItsDevicesItsProcessesAndItsDefaults) {
    EXPECT_THAT(*objects->words(audioSystem, {AudioSelector::devices}),
                ElementsAre(speakers, microphone, display));
    EXPECT_THAT(*objects->words(audioSystem, {AudioSelector::processes}), ElementsAre(music));
    EXPECT_EQ(objects->word(audioSystem, {AudioSelector::defaultOutput}), speakers);
    EXPECT_EQ(objects->word(audioSystem, {AudioSelector::defaultInput}), microphone);
}

TEST_F(SimAudioTest, ADeviceTellsItsNameAndItsStreams) {
    EXPECT_EQ(objects->text(speakers, {AudioSelector::name}), "MacBook Pro Speakers");
    EXPECT_EQ(objects->text(speakers, {AudioSelector::uid}), "BuiltInSpeakerDevice");
    EXPECT_EQ(objects->word(speakers, {AudioSelector::transport}), fourCC("bltn"));
    const auto streams = [&](AudioObjectID device, std::uint32_t scope) {
        return objects->words(device, {AudioSelector::streams, scope})->size();
    };
    EXPECT_EQ(streams(speakers, AudioScope::output), 1u);
    EXPECT_EQ(streams(speakers, AudioScope::input), 0u);
    EXPECT_EQ(streams(microphone, AudioScope::input), 1u);
    EXPECT_EQ(streams(microphone, AudioScope::output), 0u);
}

TEST_F(SimAudioTest, APropertyHasOneFormAndOnePlace) {
    EXPECT_EQ(objects->word(speakers, {AudioSelector::name}), std::nullopt);
    EXPECT_EQ(objects->text(speakers, {AudioSelector::transport}), std::nullopt);
    EXPECT_EQ(objects->words(audioSystem, {AudioSelector::defaultOutput}), std::nullopt);
    EXPECT_FALSE(objects->has(speakers, {AudioSelector::volume}));
    EXPECT_FALSE(objects->has(speakers, {AudioSelector::volume, AudioScope::input}));
    EXPECT_FALSE(objects->has(speakers, {AudioSelector::name, AudioScope::global, 1}));
    EXPECT_FALSE(objects->has(audioSystem, {AudioSelector::devices, AudioScope::output}));
    EXPECT_FALSE(objects->has(7777, {AudioSelector::name}));
    EXPECT_FALSE(objects->isSettable(speakers, {AudioSelector::name}));
    EXPECT_FALSE(objects->set(speakers, {AudioSelector::transport}, std::uint32_t{1}));
    EXPECT_FALSE(objects->set(speakers, outputVolume, std::uint32_t{1}));
}

TEST_F(SimAudioTest, WhatIsSetIsReadBack) {
    EXPECT_TRUE(objects->set(speakers, outputVolume, 0.25f));
    EXPECT_EQ(objects->real(speakers, outputVolume), 0.25f);
    EXPECT_EQ(objects->word(speakers, outputMute), 0u);
    EXPECT_TRUE(objects->set(speakers, outputMute, std::uint32_t{1}));
    EXPECT_EQ(objects->word(speakers, outputMute), 1u);
    EXPECT_TRUE(objects->set(audioSystem, {AudioSelector::defaultOutput}, display));
    EXPECT_EQ(objects->word(audioSystem, {AudioSelector::defaultOutput}), display);
    EXPECT_FALSE(objects->set(audioSystem, {AudioSelector::defaultOutput}, microphone));
    EXPECT_FALSE(objects->set(audioSystem, {AudioSelector::defaultOutput}, 7777u));
    EXPECT_EQ(objects->word(audioSystem, {AudioSelector::defaultOutput}), display);
}

TEST_F(SimAudioTest, AKnobThatIsFixedStays) {
    device(speakers).output.volume = SimAudioKnob{.value = 0.5f, .isSettable = false};
    EXPECT_TRUE(objects->has(speakers, outputVolume));
    EXPECT_FALSE(objects->isSettable(speakers, outputVolume));
    EXPECT_FALSE(objects->set(speakers, outputVolume, 1.0f));
    EXPECT_EQ(objects->real(speakers, outputVolume), 0.5f);
}

TEST_F(SimAudioTest, WhatIsRefusedIsThereButCantBeRead) {
    sim.state().audio.refused = {{speakers, {AudioSelector::name}}, {speakers, outputVolume}};
    EXPECT_TRUE(objects->has(speakers, {AudioSelector::name}));
    EXPECT_EQ(objects->text(speakers, {AudioSelector::name}), std::nullopt);
    EXPECT_EQ(objects->real(speakers, outputVolume), std::nullopt);
    EXPECT_TRUE(objects->set(speakers, outputVolume, 0.5f));
}

TEST_F(SimAudioTest, AProcessTellsWhetherItPlaysOrRecords) {
    const auto flags = [&] {
        const auto ask = [&](std::uint32_t selector) { return *objects->word(music, {selector}); };
        return std::array{ask(AudioSelector::processIsRunning),
                          ask(AudioSelector::processIsRunningOutput),
                          ask(AudioSelector::processIsRunningInput)};
    };
    EXPECT_EQ(objects->word(music, {AudioSelector::processID}), 321u);
    EXPECT_THAT(flags(), ElementsAre(0, 0, 0));
    sim.audio().change([](SimAudio& audio) { audio.process(music)->plays = true; });
    EXPECT_THAT(flags(), ElementsAre(1, 1, 0));
    EXPECT_EQ(objects->word(speakers, {AudioSelector::isRunning}), 1u);
    sim.audio().change(
        [](SimAudio& audio) { *audio.process(music) = {.id = music, .records = true}; });
    EXPECT_THAT(flags(), ElementsAre(1, 0, 1));
    EXPECT_EQ(objects->word(music, {AudioSelector::processID}), std::nullopt);
}

TEST_F(SimAudioTest, TheControllerReadsWhatItsUserSees) {
    SoundController::setVolume(*objects, 0.5);
    SoundController::setMuted(*objects, true);
    EXPECT_EQ(SoundController::read(*objects),
              (SoundSnapshot{.output = AudioOutput{.id = speakers,
                                                   .name = "MacBook Pro Speakers",
                                                   .uid = "BuiltInSpeakerDevice",
                                                   .transport = AudioOutput::Transport::builtIn},
                             .volume = 0.5,
                             .isMuted = true,
                             .outputs = {{.id = speakers,
                                          .name = "MacBook Pro Speakers",
                                          .uid = "BuiltInSpeakerDevice",
                                          .transport = AudioOutput::Transport::builtIn},
                                         {.id = display,
                                          .name = "Desk Display",
                                          .uid = "5E1D-D15P-1A7",
                                          .transport = AudioOutput::Transport::display}}}));

    SoundController::setOutput(*objects, display); // which has no volume
    SoundController::setVolume(*objects, 0.5);
    EXPECT_EQ(SoundController::read(*objects).volume, std::nullopt);

    device(display).output.channelVolumes = {SimAudioKnob{.value = 0.25f},
                                             SimAudioKnob{.value = 0.75f}};
    EXPECT_EQ(SoundController::read(*objects).volume, 0.5);
    SoundController::setVolume(*objects, 1.4);
    EXPECT_EQ(device(display).output.channelVolumes[0]->value, 1);
    EXPECT_EQ(device(display).output.channelVolumes[1]->value, 1);
}

TEST_F(SimAudioTest, ADefaultThatIsGoneFallsToTheBuiltInDevice) {
    sim.audio().change([](SimAudio& audio) {
        audio.devices.insert(audio.devices.begin(), simEarbuds(61, "Earbuds", "0C:output"));
        audio.defaultOutput = 61;
    });
    EXPECT_EQ(SoundController::defaultOutputUID(*objects), "0C:output");
    remove(61);
    EXPECT_EQ(SoundController::defaultOutputUID(*objects), "BuiltInSpeakerDevice");
    remove(speakers);
    EXPECT_EQ(SoundController::defaultOutputUID(*objects), "5E1D-D15P-1A7");
    remove(display);
    EXPECT_EQ(objects->word(audioSystem, {AudioSelector::defaultOutput}), 0u);
    EXPECT_EQ(SoundController::read(*objects), SoundSnapshot());
}

// Who listens to what, and how often they were called.
struct SimAudioListeners : SimAudioTest {
    int devices = 0;
    int output = 0;
    int playing = 0;
    std::unique_ptr<AudioListener> toDevices =
        objects->listen(audioSystem, {AudioSelector::devices}, [this] { ++devices; });
    std::unique_ptr<AudioListener> toOutput =
        objects->listen(audioSystem, {AudioSelector::defaultOutput}, [this] { ++output; });
    std::unique_ptr<AudioListener> toMusic =
        objects->listen(music, {AudioSelector::processIsRunning}, [this] { ++playing; });
};

TEST_F(SimAudioListeners, AreToldOfWhatChangedAndOfNothingElse) {
    sim.audio().tell();
    EXPECT_THAT((std::array{devices, output, playing}), ElementsAre(0, 0, 0));
    sim.audio().change([](SimAudio& audio) { audio.process(music)->plays = true; });
    EXPECT_THAT((std::array{devices, output, playing}), ElementsAre(0, 0, 1));
    remove(display);
    EXPECT_THAT((std::array{devices, output, playing}), ElementsAre(1, 0, 1));
    sim.audio().change([](SimAudio& audio) { audio.devices.push_back(simDisplay()); });
    EXPECT_THAT((std::array{devices, output, playing}), ElementsAre(2, 0, 1));
    remove(speakers);
    EXPECT_THAT((std::array{devices, output, playing}), ElementsAre(3, 1, 1));
}

TEST_F(SimAudioListeners, AreNeverCalledFromWithinAQuestion) {
    EXPECT_TRUE(objects->set(audioSystem, {AudioSelector::defaultOutput}, display));
    EXPECT_EQ(objects->word(audioSystem, {AudioSelector::defaultOutput}), display);
    EXPECT_EQ(output, 0);
    sim.audio().tell();
    EXPECT_EQ(output, 1);
    EXPECT_TRUE(objects->set(audioSystem, {AudioSelector::defaultOutput}, speakers));
    sim.audio().cycle();
    EXPECT_EQ(output, 2);
}

TEST_F(SimAudioListeners, MayAskAndListenThemselves) {
    std::optional<bool> plays;
    std::unique_ptr<AudioListener> more;
    const auto listener = objects->listen(music, {AudioSelector::processIsRunningOutput}, [&] {
        plays = objects->word(music, {AudioSelector::processIsRunningOutput}) == 1u;
        more = objects->listen(audioSystem, {AudioSelector::processes}, [] {});
        sim.audio().change([](SimAudio& audio) { audio.processes.push_back({.id = 901}); });
    });
    sim.audio().change([](SimAudio& audio) { audio.process(music)->plays = true; });
    EXPECT_EQ(plays, true);
    EXPECT_TRUE(more);
}

TEST_F(SimAudioListeners, AreNotCalledOnceTheyEnded) {
    std::unique_ptr<AudioListener> second;
    int secondCalls = 0;
    const auto first =
        objects->listen(audioSystem, {AudioSelector::processes}, [&] { second.reset(); });
    second = objects->listen(audioSystem, {AudioSelector::processes}, [&] { ++secondCalls; });
    toDevices.reset();
    sim.audio().change([](SimAudio& audio) {
        audio.devices.pop_back();
        audio.processes.push_back({.id = 901});
    });
    EXPECT_EQ(devices, 0);
    EXPECT_EQ(secondCalls, 0);
}

TEST_F(SimAudioListeners, OfAnObjectThatIsGoneHearNothing) {
    sim.audio().change([](SimAudio& audio) { audio.processes.clear(); });
    EXPECT_EQ(playing, 0);
    EXPECT_EQ(objects->listen(music, {AudioSelector::processIsRunning}, [] {}), nullptr);
}

TEST_F(SimAudioTest, ItIsAskedAndChangedFromAnyThread) {
    std::atomic<int> told = 0;
    const auto listener =
        objects->listen(music, {AudioSelector::processIsRunning}, [&] { ++told; });
    std::thread changing([&] {
        for (int i = 0; i < 200; ++i)
            sim.audio().change([](SimAudio& audio) { audio.process(music)->plays ^= true; });
    });
    for (int i = 0; i < 200; ++i) {
        EXPECT_TRUE(objects->word(music, {AudioSelector::processIsRunning}));
        sim.audio().cycle(8);
        sim.audio().heard("BuiltInSpeakerDevice");
    }
    changing.join();
    EXPECT_GT(told, 0);
}

TEST_F(SimAudioTest, AProcessThatEndsIsGoneForTheAudioSystemToo) {
    SimState& state = sim.state();
    state.processes = {{.pid = 321, .path = "/Applications/Music.app/Contents/MacOS/Music"}};
    state.audio.processes.push_back({.id = 901, .pid = 322});
    sim.quit("/Applications/Music.app");
    EXPECT_THAT(*objects->words(audioSystem, {AudioSelector::processes}), ElementsAre(901));
    sim.state().end(322);
    EXPECT_THAT(*objects->words(audioSystem, {AudioSelector::processes}), ElementsAre());
}

TEST_F(SimAudioTest, ItsUserIsAskedOnce) {
    using Status = AudioCapturePermission::Status;
    const auto permission = sim.machine().audio.permission;
    const auto asked = [&] {
        std::optional<bool> answer;
        permission->request([&](bool granted) { answer = granted; });
        return answer;
    };
    EXPECT_EQ(permission->status(), Status::notAsked);
    sim.state().audio.userAllows = false;
    EXPECT_EQ(asked(), false);
    EXPECT_EQ(permission->status(), Status::denied);
    sim.state().audio.userAllows = true;
    EXPECT_EQ(asked(), false);
    sim.state().audio.permission = Status::notAsked;
    EXPECT_EQ(asked(), true);
    EXPECT_EQ(permission->status(), Status::granted);
}

} // namespace
} // namespace tavero
