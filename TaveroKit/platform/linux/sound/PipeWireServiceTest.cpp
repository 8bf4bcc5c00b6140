#include "platform/linux/sound/PipeWireObjects.h"
#include "platform/linux/sound/test/SoundSession.h"
#include "sound/SoundController.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <memory>
#include <unistd.h>

// With the real services, in a session of their own.

namespace tavero {

namespace {

constexpr AudioAddress devices{AudioSelector::devices};
constexpr AudioAddress processList{AudioSelector::processes};
constexpr AudioAddress defaultOutput{AudioSelector::defaultOutput};
constexpr AudioAddress outputVolume{AudioSelector::volume, AudioScope::output};
constexpr AudioAddress outputMute{AudioSelector::mute, AudioScope::output};

class PipeWireService : public testing::Test {
  protected:
    PipeWireService() {
        objects.word(audioSystem, defaultOutput);
        EXPECT_TRUE(wait([&] {
            return idOf("test.headset") && idOf("test.mic") && graph->mirror().source() &&
                   SoundController::defaultOutputUID(objects) == "test.speakers";
        }));
    }

    bool wait(const std::function<bool()>& reached) {
        return SoundSession::waitUntil(*graph, reached);
    }
    AudioObjectID idOf(std::string_view uid) {
        for (const AudioObjectID id :
             objects.words(audioSystem, devices).value_or(std::vector<std::uint32_t>{}))
            if (objects.text(id, {AudioSelector::uid}) == uid) return id;
        return 0;
    }
    AudioObjectID processOf(pid_t pid) {
        for (const AudioObjectID id :
             objects.words(audioSystem, processList).value_or(std::vector<std::uint32_t>{}))
            if (objects.word(id, {AudioSelector::processID}) == static_cast<std::uint32_t>(pid))
                return id;
        return 0;
    }
    bool isOn(AudioObjectID object, std::uint32_t selector) {
        return objects.word(object, {selector}) == 1U;
    }
    static std::string pactl(const std::string& words) {
        return SoundSession::output("LC_ALL=C pactl " + words + " 2>&1");
    }
    // Waits until another program of the session says so, too.
    static bool pactlSays(const std::string& words, const std::string& part) {
        const auto end = std::chrono::steady_clock::now() + SoundSession::patience;
        while (pactl(words).find(part) == std::string::npos)
            if (std::chrono::steady_clock::now() > end) return false;
        return true;
    }

    std::shared_ptr<PipeWireGraph> graph = std::make_shared<PipeWireGraph>();
    PipeWireObjects objects{graph, ::getpid()};
};

std::vector<std::string> play() { return {"pw-play", SoundSession::silence().string()}; }

} // namespace

TEST_F(PipeWireService, TheFirstQuestionWaitsForTheConnection) {
    PipeWireObjects fresh(std::make_shared<PipeWireGraph>(), ::getpid());
    EXPECT_TRUE(fresh.word(audioSystem, defaultOutput));
}

TEST_F(PipeWireService, DevicesAreSaidAsTheServiceKnowsThem) {
    const SoundSnapshot sound = SoundController::read(objects);
    ASSERT_TRUE(sound.output);
    EXPECT_EQ(sound.output->uid, "test.speakers");
    EXPECT_EQ(sound.output->name, "Test Speakers");
    EXPECT_EQ(sound.output->transport, AudioOutput::Transport::builtIn);
    EXPECT_EQ(sound.output->id, idOf("test.speakers"));
    EXPECT_NE(sound.output->id, audioSystem);
    ASSERT_EQ(sound.outputs.size(), 2U);
    const auto headset = std::find_if(sound.outputs.begin(), sound.outputs.end(),
                                      [](const auto& one) { return one.uid == "test.headset"; });
    ASSERT_NE(headset, sound.outputs.end());
    EXPECT_EQ(headset->transport, AudioOutput::Transport::bluetooth);
}

TEST_F(PipeWireService, AnInputIsNoOutput) {
    const std::vector<AudioOutput> inputs = SoundController::inputs(objects);
    ASSERT_EQ(inputs.size(), 1U);
    EXPECT_EQ(inputs[0].uid, "test.mic");
    EXPECT_EQ(inputs[0].transport, AudioOutput::Transport::virtualDevice);
    EXPECT_EQ(SoundController::defaultInputID(objects), inputs[0].id);
    for (const AudioOutput& output : SoundController::outputs(objects))
        EXPECT_NE(output.uid, "test.mic");
    EXPECT_FALSE(objects.has(inputs[0].id, outputVolume));
}

TEST_F(PipeWireService, HalfOnTheSliderIsHalfInEveryMixer) {
    SoundController::setVolume(objects, 0.5);
    EXPECT_NEAR(SoundController::read(objects).volume.value_or(-1), 0.5, 1e-4); // at once
    EXPECT_TRUE(pactlSays("get-sink-volume test.speakers", " 50%"));
    EXPECT_TRUE(wait([&] { return graph->mirror().asking.empty(); })); // confirmed
    EXPECT_NEAR(SoundController::read(objects).volume.value_or(-1), 0.5, 1e-4);
    SoundController::setVolume(objects, 1.4);
    EXPECT_TRUE(pactlSays("get-sink-volume test.speakers", "100%"));
}

TEST_F(PipeWireService, AVolumeSetElsewhereIsHeardOf) {
    const AudioObjectID speakers = idOf("test.speakers");
    std::atomic<int> calls = 0;
    const auto listener = objects.listen(speakers, outputVolume, [&] { ++calls; });
    pactl("set-sink-volume test.speakers 40%");
    EXPECT_TRUE(wait([&] {
        return calls > 0 &&
               std::abs(objects.real(speakers, outputVolume).value_or(0) - 0.4F) < .01F;
    }));
    pactl("set-sink-volume test.speakers 150%");
    EXPECT_TRUE(wait([&] { return objects.real(speakers, outputVolume) == 1.0F; }));
    pactl("set-sink-volume test.speakers 100%");
}

TEST_F(PipeWireService, TheBalanceIsKeptEvenThroughNothing) {
    const AudioObjectID speakers = idOf("test.speakers");
    pactl("set-sink-volume test.speakers 80% 40%");
    ASSERT_TRUE(wait(
        [&] { return std::abs(objects.real(speakers, outputVolume).value_or(0) - 0.8F) < .01F; }));
    SoundController::setVolume(objects, 0.4);
    EXPECT_TRUE(pactlSays("get-sink-volume test.speakers", " 20%"));
    SoundController::setVolume(objects, -1);
    EXPECT_EQ(SoundController::read(objects).volume, 0);
    SoundController::setVolume(objects, 0.8);
    EXPECT_TRUE(pactlSays("get-sink-volume test.speakers", " 40%"));
    pactl("set-sink-volume test.speakers 100%");
}

TEST_F(PipeWireService, MuteIsSetAndReadAndLeavesTheVolume) {
    SoundController::setMuted(objects, true);
    EXPECT_TRUE(SoundController::read(objects).isMuted); // at once
    EXPECT_TRUE(pactlSays("get-sink-mute test.speakers", "yes"));
    pactl("set-sink-mute test.speakers 0");
    const AudioObjectID speakers = idOf("test.speakers");
    EXPECT_TRUE(wait([&] { return objects.word(speakers, outputMute) == 0U; }));
    EXPECT_NEAR(SoundController::read(objects).volume.value_or(-1), 1, 1e-4);
}

TEST_F(PipeWireService, AnInputHasAVolumeOfItsOwn) {
    const AudioObjectID microphone = idOf("test.mic");
    SoundController::setInputVolume(objects, 0.5, microphone);
    EXPECT_TRUE(pactlSays("get-source-volume test.mic", " 50%"));
    SoundController::setInputMuted(objects, true, microphone);
    EXPECT_EQ(SoundController::isInputMuted(objects, microphone), true);
    EXPECT_TRUE(pactlSays("get-source-mute test.mic", "yes"));
    SoundController::setInputMuted(objects, false, microphone);
    SoundController::setInputVolume(objects, 1, microphone);
    EXPECT_TRUE(pactlSays("get-source-volume test.mic", "100%"));
}

TEST_F(PipeWireService, AnotherDefaultIsChosenAndHeardOf) {
    std::atomic<int> calls = 0;
    const auto listener = objects.listen(audioSystem, defaultOutput, [&] { ++calls; });
    SoundController::setOutput(objects, idOf("test.headset"));
    EXPECT_EQ(SoundController::defaultOutputUID(objects), "test.headset"); // at once
    EXPECT_TRUE(pactlSays("get-default-sink", "test.headset"));
    EXPECT_TRUE(wait([&] { return calls == 1; }));
    pactl("set-default-sink test.speakers");
    EXPECT_TRUE(wait([&] {
        return calls == 2 && SoundController::defaultOutputUID(objects) == "test.speakers";
    }));
}

TEST_F(PipeWireService, WhatIsNoOutputCannotBecomeTheDefault) {
    EXPECT_FALSE(objects.set(audioSystem, defaultOutput, idOf("test.mic")));
    EXPECT_FALSE(objects.set(audioSystem, defaultOutput, 4'000'000U));
    EXPECT_EQ(SoundController::defaultOutputUID(objects), "test.speakers");
}

TEST_F(PipeWireService, DevicesComeAndGoAndOwnOnesAreNotOffered) {
    std::atomic<int> calls = 0;
    const auto listener = objects.listen(audioSystem, devices, [&] { ++calls; });
    int before = 0;
    {
        const RunningProgram loopback(
            {"pw-loopback", "--capture-props",
             "media.class=Audio/Sink node.name=com.brimfold.tavero.app-audio.1", "--playback-props",
             "node.name=com.brimfold.tavero.app-audio.1.out"});
        EXPECT_TRUE(wait([&] { return calls > 0 && idOf("com.brimfold.tavero.app-audio.1"); }));
        EXPECT_EQ(SoundController::outputs(objects).size(), 2U);
        EXPECT_EQ(processOf(loopback.pid()), 0U); // nor is their maker an app
        before = calls;
    }
    EXPECT_TRUE(wait([&] { return calls > before && !idOf("com.brimfold.tavero.app-audio.1"); }));
}

TEST_F(PipeWireService, AnAppThatPlaysIsAProcess) {
    std::atomic<int> lists = 0;
    const auto listener = objects.listen(audioSystem, processList, [&] { ++lists; });
    {
        const RunningProgram player(play());
        ASSERT_TRUE(wait([&] { return lists > 0 && processOf(player.pid()); }));
        const AudioObjectID process = processOf(player.pid());
        EXPECT_TRUE(wait([&] { return isOn(process, AudioSelector::processIsRunningOutput); }));
        EXPECT_TRUE(isOn(process, AudioSelector::processIsRunning));
        EXPECT_FALSE(isOn(process, AudioSelector::processIsRunningInput));
    }
    EXPECT_TRUE(wait([&] { return objects.words(audioSystem, processList)->empty(); }));
}

TEST_F(PipeWireService, BehindPulseAudiosProtocolTheAppIsKnownToo) {
    const RunningProgram player({"paplay", SoundSession::silence().string()});
    ASSERT_TRUE(wait([&] { return processOf(player.pid()); }));
    EXPECT_EQ(objects.words(audioSystem, processList)->size(), 1U);
    const AudioObjectID process = processOf(player.pid());
    EXPECT_TRUE(wait([&] { return isOn(process, AudioSelector::processIsRunningOutput); }));
}

TEST_F(PipeWireService, BeginningAndEndingToPlayIsHeardOf) {
    const RunningProgram player({"paplay", SoundSession::silence().string()});
    ASSERT_TRUE(wait([&] { return processOf(player.pid()); }));
    const AudioObjectID process = processOf(player.pid());
    ASSERT_TRUE(wait([&] { return isOn(process, AudioSelector::processIsRunning); }));
    std::atomic<int> calls = 0;
    const auto listener =
        objects.listen(process, {AudioSelector::processIsRunning}, [&] { ++calls; });
    SoundSession::output("pw-link -d paplay:output_FL test.speakers:playback_FL");
    SoundSession::output("pw-link -d paplay:output_FR test.speakers:playback_FR");
    EXPECT_TRUE(
        wait([&] { return calls == 1 && !isOn(process, AudioSelector::processIsRunning); }));
    SoundSession::output("pw-link paplay:output_FL test.speakers:playback_FL");
    EXPECT_TRUE(wait([&] { return calls == 2 && isOn(process, AudioSelector::processIsRunning); }));
}

TEST_F(PipeWireService, WhoListensToAnInputUsesTheMicrophone) {
    const RunningProgram recorder(
        {"pw-record", "--target", "test.mic", SoundSession::file("recording.wav").string()});
    ASSERT_TRUE(wait([&] {
        const AudioObjectID process = processOf(recorder.pid());
        return process && isOn(process, AudioSelector::processIsRunningInput);
    }));
    EXPECT_TRUE(isOn(processOf(recorder.pid()), AudioSelector::processIsRunning));
    EXPECT_FALSE(isOn(processOf(recorder.pid()), AudioSelector::processIsRunningOutput));
}

TEST_F(PipeWireService, WhoRecordsWhatIsPlayedDoesNot) {
    const RunningProgram recorder({"parec", "--device", "test.speakers.monitor", "/dev/null"});
    ASSERT_TRUE(wait([&] {
        const auto& nodes = graph->mirror().nodes;
        return processOf(recorder.pid()) &&
               std::any_of(nodes.begin(), nodes.end(), [](const auto& node) {
                   return node.second.kind == SoundNode::Kind::capture && node.second.isRunning;
               });
    }));
    EXPECT_FALSE(isOn(processOf(recorder.pid()), AudioSelector::processIsRunningInput));
}

TEST_F(PipeWireService, WhatAskedBeforeARestartIsAnotherObjectAfterIt) {
    const RunningProgram player(play());
    ASSERT_TRUE(wait([&] { return processOf(player.pid()); }));
    const AudioObjectID before = processOf(player.pid());
    std::atomic<int> calls = 0;
    const auto listener = objects.listen(audioSystem, devices, [&] { ++calls; });

    SoundSession::stopServices();
    EXPECT_TRUE(wait([&] { return calls == 1; }));
    EXPECT_TRUE(objects.words(audioSystem, devices)->empty());
    EXPECT_FALSE(objects.word(audioSystem, defaultOutput));
    EXPECT_FALSE(objects.has(before, {AudioSelector::processID}));

    SoundSession::startServices();
    EXPECT_TRUE(wait([&] {
        return calls > 1 && idOf("test.mic") && idOf("test.headset") &&
               SoundController::defaultOutputUID(objects) == "test.speakers";
    }));
    const RunningProgram other(play());
    EXPECT_TRUE(wait([&] { return processOf(other.pid()); }));
    EXPECT_EQ(processOf(other.pid()) - static_cast<std::uint32_t>(other.pid()),
              before - static_cast<std::uint32_t>(player.pid()) + (1U << 22));
    EXPECT_FALSE(objects.has(before, {AudioSelector::processID}));
}

} // namespace tavero
