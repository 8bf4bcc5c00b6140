#include "platform/sim/SimAudioScript.h"

#include "platform/sim/SimMachine.h"
#include "sound/AudioApps.h"
#include "sound/SoundController.h"
#include "sound/tap/AppAudioTap.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace tavero {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

struct SimAudioScript : testing::Test {
    Date now{};

    SimMachine machine(Scenario scenario) {
        return {std::move(scenario), [this] { return now; }};
    }
    template <typename Things>
    static std::vector<std::string> names(const Things& things) {
        std::vector<std::string> names(things.size());
        std::transform(things.begin(), things.end(), names.begin(),
                       [](const auto& thing) { return thing.name; });
        return names;
    }
    static std::vector<std::string> playing(const AudioSystem& sound) {
        return names(AudioApps::playing(*sound.objects, *sound.processes));
    }
};

TEST_F(SimAudioScript, AnIdleAfternoonHasThreeOutputs) {
    SimMachine sim = machine(idleAfternoon());
    const SoundSnapshot sound = SoundController::read(*sim.audioObjects());
    EXPECT_THAT(names(sound.outputs),
                ElementsAre("MacBook Pro Speakers", "Desk Display", "Anna’s Earbuds"));
    EXPECT_EQ(sound.output->name, "MacBook Pro Speakers");
    EXPECT_EQ(sound.outputs.at(2).transport, AudioOutput::Transport::bluetooth);
    EXPECT_FALSE(sound.isMuted);
}

TEST_F(SimAudioScript, MusicAndATabPlayQuietly) {
    SimMachine sim = machine(idleAfternoon());
    const AudioSystem sound = sim.machine().audio;
    EXPECT_THAT(playing(sound), ElementsAre("Music", "Wayfarer"));
    const auto all = AudioApps::all(*sound.objects, *sound.processes);
    EXPECT_EQ(all.size(), 3u);
    EXPECT_EQ(all.at(1).processObjects.size(), 2u);
    sim.audio().cycle();
    EXPECT_GT(sim.audio().heard("BuiltInSpeakerDevice"), 0);
    EXPECT_LT(sim.audio().heard("BuiltInSpeakerDevice"), 0.5f);
    now += 230s; // the clip is over
    EXPECT_THAT(playing(sound), ElementsAre("Music"));
}

TEST_F(SimAudioScript, WhatPlaysIsToldAsTimePasses) {
    SimMachine sim = machine(idleAfternoon());
    const AudioSystem sound = sim.machine().audio;
    const auto app = AudioApps::playing(*sound.objects, *sound.processes).at(1);
    int told = 0;
    std::vector<std::unique_ptr<AudioListener>> listeners;
    for (AudioObjectID object : app.processObjects)
        listeners.push_back(
            sound.objects->listen(object, {AudioSelector::processIsRunning}, [&] { ++told; }));
    sim.audio().cycle();
    EXPECT_EQ(told, 0);
    now += 230s;
    EXPECT_THAT(playing(sound), ElementsAre("Music"));
    EXPECT_EQ(told, 0);
    sim.audio().cycle();
    EXPECT_EQ(told, 1);
}

TEST_F(SimAudioScript, AMeterLives) {
    SimMachine sim = machine(idleAfternoon());
    const AudioSystem sound = sim.machine().audio;
    const auto app = AudioApps::playing(*sound.objects, *sound.processes).at(0);
    const auto result = AppAudioTap::start(*sound.taps,
                                           {.processObjects = app.processObjects,
                                            .outputUID = "BuiltInSpeakerDevice",
                                            .listenOnly = true},
                                           0, now);
    const auto& meter = *std::get<std::unique_ptr<AppAudioTap>>(result);
    std::set<float> levels;
    for (int i = 0; i < 20; ++i, now += 50ms) {
        sim.audio().cycle();
        levels.insert(meter.latestLevel());
    }
    EXPECT_GT(levels.size(), 10u);
    EXPECT_GT(*levels.begin(), 0);
}

TEST_F(SimAudioScript, AnAppThatIsQuitIsSilent) {
    SimMachine sim = machine(idleAfternoon());
    const AudioSystem sound = sim.machine().audio;
    sim.quit("/System/Applications/Music.app");
    EXPECT_THAT(playing(sound), ElementsAre("Wayfarer"));
    now += 10s;
    EXPECT_THAT(playing(sound), ElementsAre("Wayfarer"));
}

TEST_F(SimAudioScript, OneAppCantBeCaptured) {
    SimMachine sim = machine(idleAfternoon());
    const AudioSystem sound = sim.machine().audio;
    now += 80s;
    const auto apps = AudioApps::playing(*sound.objects, *sound.processes);
    ASSERT_THAT(names(apps), ElementsAre("Music", "Parley", "Wayfarer"));
    const auto result = AppAudioTap::start(
        *sound.taps, {.processObjects = apps[1].processObjects, .outputUID = "5E1D-D15P-1A7"}, 1,
        now);
    const auto& tap = *std::get<std::unique_ptr<AppAudioTap>>(result);
    for (int i = 0; i < 180; ++i, now += 50ms) sim.audio().cycle();
    EXPECT_TRUE(tap.isRunning());
    EXPECT_FALSE(tap.hasHeardSound());
}

TEST_F(SimAudioScript, EarbudsTakeTheSoundWheneverTheyConnect) {
    SimMachine sim = machine(earbudsRunningLow());
    const auto objects = sim.audioObjects();
    const auto output = [&](std::chrono::minutes time) {
        now = Date(time);
        return SoundController::read(*objects).output->name;
    };
    EXPECT_EQ(output(0min), "Anna’s Earbuds");
    SoundController::setOutput(*objects, 45);
    EXPECT_EQ(output(1min), "Desk Display"); // as the user says
    SoundController::setOutput(*objects, 61);
    EXPECT_EQ(output(2min), "Anna’s Earbuds");
    EXPECT_EQ(output(40min), "MacBook Pro Speakers"); // they are in their case
    EXPECT_EQ(SoundController::outputs(*objects).size(), 2u);
    EXPECT_EQ(output(82min), "Anna’s Earbuds");
}

TEST_F(SimAudioScript, EarbudsThatTheirUserDisconnectsAreNoOutput) {
    SimMachine sim = machine(earbudsRunningLow());
    ASSERT_EQ(sim.bluetoothCalls()->device("0C-11-22-33-44-55")->closeConnection(), 0);
    now += 1s;
    EXPECT_EQ(SoundController::read(*sim.audioObjects()).output->name, "MacBook Pro Speakers");
}

TEST_F(SimAudioScript, WhatATestAddsStays) {
    SimMachine sim = machine(idleAfternoon());
    sim.state().audio.processes.push_back({.id = 7, .pid = 77, .plays = true});
    now += 10s;
    EXPECT_TRUE(sim.state().audio.process(7));
}

TEST_F(SimAudioScript, NoToneIsLouderThanCanBeOrBelowSilence) {
    for (const Scenario& scenario : scenarios())
        for (double time = 0; time < 1800; time += 0.25)
            for (const Scenario::Process& process : scenario.processes)
                if (process.sound) {
                    const double loudness = process.sound->loudness.at(time);
                    ASSERT_GE(loudness, 0) << process.path << " at " << time;
                    ASSERT_LE(loudness, 1) << process.path << " at " << time;
                }
}

} // namespace
} // namespace tavero
