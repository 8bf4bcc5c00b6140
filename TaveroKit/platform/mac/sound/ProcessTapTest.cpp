#include "platform/mac/sound/ProcessTap.h"

#include "platform/mac/sound/FakeMacAudio.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

namespace tavero {
namespace {

using testing::ElementsAre;
using testing::SizeIs;
using Step = TapFailure::Step;

constexpr AudioObjectID aggregateID = FakeMacHardware::aggregateID;
const TapRequest someApp{.processObjects = {40, 41}, .outputUID = "usb", .sourceUID = "builtIn"};
const TapRequest someMeter{
    .processObjects = {40}, .outputUID = "usb", .sourceUID = "builtIn", .listenOnly = true};

class ProcessTapTest : public testing::Test {
  protected:
    std::shared_ptr<FakeMacHardware> hardware = std::make_shared<FakeMacHardware>();
    std::shared_ptr<FakeMacObjects> objects = std::make_shared<FakeMacObjects>();
    ProcessTaps taps{hardware, objects};
    TapCells cells;

    std::unique_ptr<RunningTap> start(const TapRequest& request) {
        return std::get<std::unique_ptr<RunningTap>>(taps.start(request, cells));
    }

    // One cycle of the block over these input streams of one channel; gives what is played.
    std::array<float, 2> play(std::vector<std::array<float, 2>> streams) {
        std::vector<AudioBuffer> input;
        for (auto& samples : streams) input.push_back({1, 2 * sizeof(float), samples.data()});
        std::array<float, 2> played{99, 99};
        const AudioBuffer output{1, 2 * sizeof(float), played.data()};
        hardware->block.call(hardware->block.context, input, {&output, 1});
        return played;
    }
};

TEST_F(ProcessTapTest, TakesItsStepsInOrderAndGoesBackInOrder) {
    auto tap = start(someApp);
    EXPECT_THAT(hardware->calls,
                ElementsAre("createTap", "createAggregate", "createIOProc 80", "start 80"));
    hardware->calls.clear();
    tap.reset();
    EXPECT_THAT(hardware->calls, ElementsAre("stop 80", "destroyIOProc 80", "destroyAggregate 80",
                                             "destroyTap 70", "drain"));
}

TEST_F(ProcessTapTest, TheTapIsOfWhatTheAppPlaysToItsDeviceAndMutesIt) {
    const auto tap = start(someApp);
    EXPECT_THAT(hardware->tap.processes, ElementsAre(40, 41));
    EXPECT_EQ(hardware->tap.deviceUID, "builtIn");
    EXPECT_EQ(hardware->tap.name, "Tavero");
    EXPECT_TRUE(hardware->tap.isPrivate);
    EXPECT_EQ(hardware->tap.muteBehavior, TapDescription::MuteBehavior::muted);
}

TEST_F(ProcessTapTest, WithoutASourceItIsOfAllThatTheAppPlays) {
    TapRequest request = someApp;
    request.sourceUID.reset();
    const auto tap = start(request);
    EXPECT_EQ(hardware->tap.deviceUID, std::nullopt);
    EXPECT_EQ(hardware->tap.muteBehavior, TapDescription::MuteBehavior::muted);
}

TEST_F(ProcessTapTest, OneThatOnlyListensMutesNothingAndHearsAllThatTheAppPlays) {
    const auto tap = start(someMeter);
    EXPECT_EQ(hardware->tap.deviceUID, std::nullopt);
    EXPECT_EQ(hardware->tap.muteBehavior, TapDescription::MuteBehavior::unmuted);
    EXPECT_TRUE(hardware->tap.isPrivate);
}

TEST_F(ProcessTapTest, TheAggregateIsPrivateAndOfTheOutputAndTheTap) {
    const auto tap = start(someApp);
    const AggregateDescription& aggregate = hardware->aggregate;
    EXPECT_EQ(aggregate.name, "Tavero");
    EXPECT_EQ(aggregate.uid, "com.brimfold.tavero.app-audio.uuid-2");
    EXPECT_EQ(aggregate.main, "usb");
    EXPECT_TRUE(aggregate.isPrivate);
    EXPECT_FALSE(aggregate.isStacked);
    EXPECT_TRUE(aggregate.tapAutoStart);
    EXPECT_THAT(aggregate.subdevices, ElementsAre("usb"));
    ASSERT_THAT(aggregate.taps, SizeIs(1));
    EXPECT_EQ(aggregate.taps[0].uid, hardware->tap.uuid);
    EXPECT_TRUE(aggregate.taps[0].drift);
}

TEST_F(ProcessTapTest, EveryTapHasIDsOfItsOwn) {
    const auto first = start(someApp);
    const std::string tap = hardware->tap.uuid;
    const std::string aggregate = hardware->aggregate.uid;
    const auto second = start(someApp);
    EXPECT_NE(hardware->tap.uuid, tap);
    EXPECT_NE(hardware->aggregate.uid, aggregate);
}

TEST_F(ProcessTapTest, OnlyAMeterTakesBiggerBlocks) {
    const std::pair frames{aggregateID, AudioAddress{AudioSelector::bufferFrameSize}};
    const auto tap = start(someApp);
    EXPECT_FALSE(objects->values.contains(frames));
    const auto meter = start(someMeter);
    EXPECT_EQ(objects->values.at(frames), 2048u);
}

TEST_F(ProcessTapTest, AMeterRunsEvenIfItsBlocksStaySmall) {
    objects->refuses = true;
    EXPECT_TRUE(start(someMeter));
}

TEST_F(ProcessTapTest, RunsWhileItsDeviceDoes) {
    const auto tap = start(someApp);
    EXPECT_FALSE(tap->isRunning()); // not told
    objects->values[{aggregateID, {AudioSelector::isRunning}}] = 1;
    EXPECT_TRUE(tap->isRunning());
    objects->values[{aggregateID, {AudioSelector::isRunning}}] = 0;
    EXPECT_FALSE(tap->isRunning());
}

TEST_F(ProcessTapTest, OneThatNeverStartedDoesNotRun) {
    objects->values[{0, {AudioSelector::isRunning}}] = 1;
    ProcessTap tap(hardware, objects, cells);
    EXPECT_FALSE(tap.isRunning());
}

struct FailingStep {
    const char* call;
    Step step;
    std::vector<std::string> calls; // all of them
};

class ProcessTapFailure : public ProcessTapTest, public testing::WithParamInterface<FailingStep> {};

TEST_P(ProcessTapFailure, IsToldAndLeavesNothingBehind) {
    hardware->failures[GetParam().call] = -10851;
    const AudioTapSource::Result result = taps.start(someApp, cells);
    EXPECT_EQ(std::get<TapFailure>(result), (TapFailure{GetParam().step, -10851}));
    EXPECT_EQ(hardware->calls, GetParam().calls);
}

INSTANTIATE_TEST_SUITE_P(
    OfEachStep, ProcessTapFailure,
    testing::Values(FailingStep{"createTap", Step::tap, {"createTap"}},
                    FailingStep{"createAggregate",
                                Step::aggregate,
                                {"createTap", "createAggregate", "destroyTap 70"}},
                    FailingStep{"createIOProc",
                                Step::ioProc,
                                {"createTap", "createAggregate", "createIOProc 80",
                                 "destroyAggregate 80", "destroyTap 70"}},
                    FailingStep{"start",
                                Step::start,
                                {"createTap", "createAggregate", "createIOProc 80", "start 80",
                                 "stop 80", "destroyIOProc 80", "destroyAggregate 80",
                                 "destroyTap 70", "drain"}}),
    [](const auto& test) { return std::string(test.param.call); });

TEST_F(ProcessTapTest, WhatFailsOnTheWayBackIsPassedOver) {
    auto tap = start(someApp);
    for (const char* call : {"stop", "destroyIOProc", "destroyAggregate", "destroyTap"})
        hardware->failures[call] = -50;
    hardware->calls.clear();
    tap.reset();
    EXPECT_THAT(hardware->calls, SizeIs(5));
}

TEST_F(ProcessTapTest, TheBlockPlaysTheTapTimesTheGain) {
    const auto tap = start(someApp);
    cells.gain = .5f;
    EXPECT_THAT(play({{.8f, -.4f}}), ElementsAre(.4f, -.2f));
    EXPECT_EQ(cells.latest, .8f);
    EXPECT_EQ(cells.recent, .8f);
    EXPECT_EQ(cells.peak, .8f);
}

TEST_F(ProcessTapTest, AMicrophoneOfTheOutputIsNeverPlayedNorMeasured) {
    const auto tap = start(someApp);
    cells.gain = 1;
    EXPECT_THAT(play({{.9f, .9f}, {.1f, .2f}}), ElementsAre(.1f, .2f));
    EXPECT_EQ(cells.latest, .2f);
}

TEST_F(ProcessTapTest, WithoutInputTheBlockPlaysSilence) {
    const auto tap = start(someApp);
    cells.gain = 1;
    EXPECT_THAT(play({}), ElementsAre(0, 0));
    EXPECT_EQ(cells.latest, 0);
}

} // namespace
} // namespace tavero
