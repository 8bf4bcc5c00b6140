#include "platform/sim/SimMachine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <span>
#include <string>
#include <thread>

namespace tavero {
namespace {

constexpr AudioObjectID music = 900;
constexpr const char* speakers = "BuiltInSpeakerDevice";

// A block that only counts.
AudioIOBlock counting(std::atomic<int>& count) {
    return {.call = [](void* context, auto, auto) { ++*static_cast<std::atomic<int>*>(context); },
            .context = &count};
}

struct SimAudioHardware : testing::Test {
    SimMachine sim;
    std::shared_ptr<MacAudioHardware> hardware = sim.audioHardware();
    std::shared_ptr<AudioObjects> objects = sim.audioObjects();
    TapDescription tapDescription{
        .processes = {music}, .uuid = "T", .name = "Test", .isPrivate = true};
    AggregateDescription aggregateDescription{.name = "Test",
                                              .uid = "com.brimfold.tavero.app-audio.A",
                                              .main = speakers,
                                              .isPrivate = true,
                                              .tapAutoStart = true,
                                              .subdevices = {speakers},
                                              .taps = {{.uid = "T", .drift = true}}};
    AudioObjectID tap = 0;
    AudioObjectID aggregate = 0;
    std::atomic<int> blocks = 0;
    MacAudioHardware::IOProcID proc = nullptr;

    SimAudioHardware() {
        SimAudio& audio = sim.state().audio;
        audio.permission = AudioCapturePermission::Status::granted;
        audio.processes = {{.id = music, .pid = 321, .loudness = {0.5f, 0.5f}, .plays = true}};
    }

    void makeAll() {
        ASSERT_EQ(hardware->createTap(tapDescription, tap), 0);
        ASSERT_EQ(hardware->createAggregate(aggregateDescription, aggregate), 0);
        ASSERT_EQ(hardware->createIOProc(aggregate, counting(blocks), proc), 0);
        ASSERT_EQ(hardware->start(aggregate, proc), 0);
    }
    bool isRunning() { return objects->word(aggregate, {AudioSelector::isRunning}) == 1u; }
    void play(bool plays) {
        sim.audio().change([&](SimAudio& audio) { audio.process(music)->plays = plays; });
    }
};

TEST_F(SimAudioHardware, AllThatIsMadeIsDestroyedAgain) {
    makeAll();
    EXPECT_TRUE(sim.audio().now().hasLeftovers());
    EXPECT_EQ(hardware->stop(aggregate, proc), 0);
    EXPECT_EQ(hardware->destroyIOProc(aggregate, proc), 0);
    EXPECT_EQ(hardware->destroyAggregate(aggregate), 0);
    EXPECT_TRUE(sim.audio().now().hasLeftovers());
    EXPECT_EQ(hardware->destroyTap(tap), 0);
    EXPECT_FALSE(sim.audio().now().hasLeftovers());
    EXPECT_NE(hardware->stop(aggregate, proc), 0);
    EXPECT_NE(hardware->destroyIOProc(aggregate, proc), 0);
    EXPECT_NE(hardware->destroyAggregate(aggregate), 0);
    EXPECT_NE(hardware->destroyTap(tap), 0);
}

TEST_F(SimAudioHardware, AnAggregateIsADeviceOfTheSystem) {
    makeAll();
    EXPECT_THAT(*objects->words(audioSystem, {AudioSelector::devices}),
                testing::Contains(aggregate));
    EXPECT_EQ(objects->text(aggregate, {AudioSelector::uid}), "com.brimfold.tavero.app-audio.A");
    EXPECT_EQ(objects->word(aggregate, {AudioSelector::transport}), fourCC("grup"));
    EXPECT_EQ(objects->words(aggregate, {AudioSelector::streams, AudioScope::output})->size(), 1u);
    EXPECT_EQ(objects->words(aggregate, {AudioSelector::streams, AudioScope::input})->size(), 1u);
    EXPECT_TRUE(objects->set(aggregate, {AudioSelector::bufferFrameSize}, std::uint32_t{2048}));
    EXPECT_EQ(objects->word(aggregate, {AudioSelector::bufferFrameSize}), 2048u);
    EXPECT_FALSE(objects->set(aggregate, {AudioSelector::bufferFrameSize}, std::uint32_t{0}));
    EXPECT_FALSE(objects->set(audioSystem, {AudioSelector::defaultOutput}, aggregate));
}

TEST_F(SimAudioHardware, ATapOfWhatIsUnknownIsRefused) {
    const auto refused = [&](auto change) {
        TapDescription description = tapDescription;
        change(description);
        return hardware->createTap(description, tap) != 0;
    };
    EXPECT_TRUE(refused([](TapDescription& made) { made.processes = {music, 7}; }));
    EXPECT_TRUE(refused([](TapDescription& made) { made.processes = {}; }));
    EXPECT_TRUE(refused([](TapDescription& made) { made.deviceUID = "gone"; }));
    EXPECT_TRUE(refused([](TapDescription& made) { made.uuid = ""; }));
    EXPECT_EQ(tap, 0u);
    EXPECT_FALSE(refused([](TapDescription& made) { made.deviceUID = speakers; }));
    EXPECT_TRUE(refused([](TapDescription&) {})); // the UUID is taken
}

TEST_F(SimAudioHardware, AnAggregateOfWhatIsUnknownIsRefused) {
    ASSERT_EQ(hardware->createTap(tapDescription, tap), 0);
    const auto refused = [&](auto change) {
        AggregateDescription description = aggregateDescription;
        change(description);
        return hardware->createAggregate(description, aggregate) != 0;
    };
    using Description = AggregateDescription;
    EXPECT_TRUE(refused([](Description& all) { all.name = ""; }));
    EXPECT_TRUE(refused([](Description& all) { all.uid = ""; }));
    EXPECT_TRUE(refused([](Description& all) { all.uid = speakers; }));
    EXPECT_TRUE(refused([](Description& all) { all.main = ""; }));
    EXPECT_TRUE(refused([](Description& all) { all.subdevices = {}; }));
    EXPECT_TRUE(refused([](Description& all) { all.main = "gone", all.subdevices = {"gone"}; }));
    EXPECT_TRUE(refused([](Description& all) { all.subdevices.push_back("gone"); }));
    EXPECT_TRUE(refused([](Description& all) {
        all.main = "BuiltInMicrophoneDevice"; // nothing can be played to it
        all.subdevices = {all.main};
    }));
    EXPECT_TRUE(refused([](Description& all) { all.taps = {{.uid = "U"}}; }));
    EXPECT_TRUE(refused([](Description& all) { all.isPrivate = false; }));
    EXPECT_EQ(aggregate, 0u);
    EXPECT_FALSE(refused([](Description&) {}));
    EXPECT_TRUE(refused([](Description&) {})); // the UID is taken
}

TEST_F(SimAudioHardware, AProcNeedsAnAggregateAndABlock) {
    EXPECT_NE(hardware->createIOProc(41, counting(blocks), proc), 0);
    makeAll();
    MacAudioHardware::IOProcID second = nullptr;
    EXPECT_NE(hardware->createIOProc(aggregate, {}, second), 0);
    EXPECT_EQ(second, nullptr);
    EXPECT_NE(hardware->start(aggregate, second), 0);
}

TEST_F(SimAudioHardware, ACallFailsOnceWhenItIsToldTo) {
    sim.state().audio.failures = {{SimAudioCall::createTap, -50}, {SimAudioCall::start, -66}};
    EXPECT_EQ(hardware->createTap(tapDescription, tap), -50);
    EXPECT_EQ(tap, 0u);
    ASSERT_EQ(hardware->createTap(tapDescription, tap), 0);
    ASSERT_EQ(hardware->createAggregate(aggregateDescription, aggregate), 0);
    ASSERT_EQ(hardware->createIOProc(aggregate, counting(blocks), proc), 0);
    EXPECT_EQ(hardware->start(aggregate, proc), -66);
    EXPECT_FALSE(isRunning());
    EXPECT_EQ(hardware->start(aggregate, proc), 0);
    EXPECT_TRUE(isRunning());
}

TEST_F(SimAudioHardware, NoTwoUUIDsAreTheSame) {
    const std::string first = hardware->makeUUID();
    EXPECT_EQ(first.size(), 36u);
    EXPECT_NE(hardware->makeUUID(), first);
}

TEST_F(SimAudioHardware, AnAggregateWaitsForItsAppAndThenRunsUntilItIsStopped) {
    play(false);
    makeAll();
    EXPECT_FALSE(isRunning());
    sim.audio().cycle();
    EXPECT_EQ(blocks, 0);
    play(true);
    EXPECT_TRUE(isRunning());
    play(false);
    EXPECT_TRUE(isRunning());
    sim.audio().cycle();
    EXPECT_EQ(blocks, 1);
    hardware->stop(aggregate, proc);
    EXPECT_FALSE(isRunning());
    sim.audio().cycle();
    EXPECT_EQ(blocks, 1);
}

TEST_F(SimAudioHardware, AnAggregateThatDoesntWaitRunsAtOnce) {
    play(false);
    aggregateDescription.tapAutoStart = false;
    makeAll();
    EXPECT_TRUE(isRunning());
}

TEST_F(SimAudioHardware, AnAggregateStopsWhenItsDeviceGoes) {
    makeAll();
    const SimAudioDevice device = simSpeakers();
    sim.audio().change([&](SimAudio& audio) {
        std::erase_if(audio.devices, [&](const auto& each) { return each.id == device.id; });
    });
    EXPECT_FALSE(isRunning());
    sim.audio().cycle();
    EXPECT_EQ(blocks, 0);
    EXPECT_EQ(objects->words(aggregate, {AudioSelector::streams, AudioScope::output})->size(), 0u);
    sim.audio().change([&](SimAudio& audio) { audio.devices.push_back(device); });
    EXPECT_TRUE(isRunning());
}

TEST_F(SimAudioHardware, ItsChangesAreToldLater) {
    int told = 0;
    const auto listener = objects->listen(audioSystem, {AudioSelector::devices}, [&] { ++told; });
    makeAll();
    EXPECT_EQ(told, 0);
    sim.audio().tell();
    EXPECT_EQ(told, 1);
}

TEST_F(SimAudioHardware, WhoPlaysTappedSoundIsAProcessItself) {
    makeAll();
    const auto processes = *objects->words(audioSystem, {AudioSelector::processes});
    ASSERT_EQ(processes.size(), 2u);
    EXPECT_EQ(objects->word(processes[1], {AudioSelector::processID}), std::uint32_t{simOwnPid});
    const auto plays = [&] {
        return objects->word(processes[1], {AudioSelector::processIsRunningOutput});
    };
    EXPECT_EQ(plays(), 1u);
    hardware->stop(aggregate, proc);
    EXPECT_EQ(plays(), 0u);
}

// The block of a cycle that goes on for as long as it is wanted.
struct HeldBlock {
    std::atomic<bool> isIn = false;
    std::atomic<bool> mayLeave = false;

    static void call(void* context, std::span<const AudioBuffer>, std::span<const AudioBuffer>) {
        auto* self = static_cast<HeldBlock*>(context);
        self->isIn = true;
        while (!self->mayLeave) std::this_thread::yield();
        self->isIn = false;
    }
};

TEST_F(SimAudioHardware, DrainingWaitsForTheBlockAndStoppingDoesNot) {
    HeldBlock held;
    ASSERT_EQ(hardware->createTap(tapDescription, tap), 0);
    ASSERT_EQ(hardware->createAggregate(aggregateDescription, aggregate), 0);
    ASSERT_EQ(hardware->createIOProc(aggregate, {.call = HeldBlock::call, .context = &held}, proc),
              0);
    ASSERT_EQ(hardware->start(aggregate, proc), 0);
    std::thread cycling([&] { sim.audio().cycle(8); });
    while (!held.isIn) std::this_thread::yield();
    hardware->stop(aggregate, proc);
    EXPECT_TRUE(held.isIn);
    held.mayLeave = true;
    hardware->drain();
    EXPECT_FALSE(held.isIn);
    cycling.join();
}

} // namespace
} // namespace tavero
