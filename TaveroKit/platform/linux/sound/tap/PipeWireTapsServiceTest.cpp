#include "platform/linux/sound/tap/PipeWireTaps.h"

#include "platform/linux/sound/tap/test/TapsBench.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cmath>

using namespace tavero;
using namespace tavero::test;
using testing::Contains;
using testing::Each;
using testing::StartsWith;

namespace {

// Three kinds of apps: the player of these tests, and the desktop's own by both protocols.
class PipeWireTapsOfAnyApp : public PipeWireTapsService,
                             public testing::WithParamInterface<const char*> {
  protected:
    std::vector<std::string> command() const {
        if (GetParam() == std::string("sound-player")) return player({"test.app", "level"});
        return {GetParam(), file.path()};
    }
    LevelFile file{0.8f};
};

} // namespace

TEST_P(PipeWireTapsOfAnyApp, PlaysItHalfAsLoudElsewhereAndGivesItBack) {
    const Program app(command());
    Recorder recorder(seen, {"test.speakers", "test.headset"}, "256/48000");
    EXPECT_TRUE(recorder.waitForLevel(0, 0.8f));
    TapCells cells;
    {
        const auto running = tap(app, "test.headset", 0.5f, cells);
        EXPECT_TRUE(recorder.waitForLevel(1, 0.4f));
        EXPECT_TRUE(recorder.waitForLevel(0, 0)) << "nothing is left on its own way";
        EXPECT_TRUE(running->isRunning());
        EXPECT_NEAR(cells.peak, 0.8f, 0.001f) << "measured before the gain";
    }
    EXPECT_TRUE(recorder.waitForLevel(0, 0.8f));
    EXPECT_TRUE(recorder.waitForLevel(1, 0));
}

TEST_P(PipeWireTapsOfAnyApp, PlaysIfItIsTappedBeforeItsFirstSound) {
    // The tap is of a process; here it is one that played before and begins anew.
    const Program app(command());
    TapCells cells;
    const auto running = tap(app, "test.headset", 0, cells);
    EXPECT_TRUE(becomes([&] { return cells.latest > 0.79f; })) << "a muted app has a level";
    Recorder recorder(seen, {"test.speakers", "test.headset"}, "256/48000");
    EXPECT_TRUE(recorder.waitForLevel(0, 0));
    EXPECT_TRUE(recorder.waitForLevel(1, 0));
}

INSTANTIATE_TEST_SUITE_P(Apps, PipeWireTapsOfAnyApp,
                         testing::Values("sound-player", "pw-play", "paplay"), [](const auto& app) {
                             std::string name = app.param;
                             std::erase(name, '-');
                             return name;
                         });

TEST_F(PipeWireTapsService, TheSameOutputIsOneWayAsWell) {
    const Program app(player({"test.app", "level"}));
    Recorder recorder(seen, {"test.speakers"}, "256/48000");
    TapCells cells;
    const auto running = tap(app, "test.speakers", 0.5f, cells);
    EXPECT_TRUE(recorder.waitForLevel(0, 0.4f));
}

TEST_F(PipeWireTapsService, AnotherAppIsNeverIntercepted) {
    // Of one kind: session managers remember by the kind where an app was sent to.
    const Program app(player({"test.app", "level", "media.role=Music"}));
    const Program other(player({"test.other", "level", "media.role=Music"}));
    EXPECT_TRUE(becomes([&] { return seen.targets("test.other").size() == 2; }));
    std::vector<std::uint32_t> links;
    const auto linksOfOther = [&] {
        std::vector<std::uint32_t> found;
        for (const auto& [id, link] : seen.links())
            if (link.outputNode == seen.node("test.other")->id) found.push_back(id);
        return found;
    };
    {
        const TestGraph::Lock lock(seen);
        links = linksOfOther();
    }
    TapCells cells;
    const auto running = tap(app, "test.headset", 0.5f, cells);
    Recorder recorder(seen, {"test.speakers", "test.headset"}, "256/48000");
    EXPECT_TRUE(recorder.waitForLevel(1, 0.4f));
    EXPECT_TRUE(recorder.waitForLevel(0, 0.8f));

    recorder.clear();
    const Program late(player({"test.late", "level", "media.role=Music"}));
    EXPECT_TRUE(recorder.waitForLevel(0, 1.6f));
    EXPECT_THAT(recorder.samples(1), Each(testing::FloatNear(0.4f, 0.001f)));
    const TestGraph::Lock lock(seen);
    EXPECT_EQ(linksOfOther(), links);
    EXPECT_THAT(seen.targets("test.late"), Each("test.speakers"));
}

TEST_F(PipeWireTapsService, ANewStreamOfATappedAppIsNeverHeardOnItsOldWay) {
    const Program app(player({"test.app", "level"}));
    TapCells cells;
    const auto running = tap(app, "test.headset", 0.5f, cells);
    Recorder recorder(seen, {"test.speakers", "test.headset"}, "256/48000");
    EXPECT_TRUE(recorder.waitForLevel(1, 0.4f));
    EXPECT_TRUE(recorder.waitForLevel(0, 0));
    recorder.clear();
    app.say("more");
    EXPECT_TRUE(recorder.waitForLevel(1, 0.8f));
    EXPECT_THAT(recorder.samples(0), Each(0.f));
}

TEST_F(PipeWireTapsService, ATapThatFollowsAnotherLetsNothingThrough) {
    const Program app(player({"test.app", "level"}));
    TapCells first;
    TapCells second;
    auto running = tap(app, "test.headset", 0.5f, first);
    Recorder recorder(seen, {"test.speakers", "test.headset"}, "256/48000");
    EXPECT_TRUE(recorder.waitForLevel(1, 0.4f));
    EXPECT_TRUE(recorder.waitForLevel(0, 0));
    recorder.clear();
    running = tap(app, "test.headset", 0.25f, second);
    EXPECT_TRUE(recorder.waitForLevel(1, 0.2f));
    EXPECT_THAT(recorder.samples(0), Each(0.f));
    for (const float sample : recorder.samples(1)) EXPECT_LT(sample, 0.401f);
}

TEST_F(PipeWireTapsService, AnotherDefaultOutputDoesNotDoubleTheSound) {
    const Program app(player({"test.app", "level"}));
    TapCells cells;
    const auto running = tap(app, "test.speakers", 0.5f, cells);
    Recorder recorder(seen, {"test.speakers", "test.headset"}, "256/48000");
    EXPECT_TRUE(recorder.waitForLevel(0, 0.4f));
    const auto makeDefault = [&](const std::string& name) {
        const auto lock = graph->lock();
        graph->setDefaultSink(graph->mirror().named(name)->id);
        EXPECT_TRUE(
            graph->waitUntil([&] { return graph->mirror().defaultSink == name; }, patience));
    };
    for (const char* name : {"test.headset", "test.speakers"}) {
        makeDefault(name);
        recorder.clear();
        EXPECT_TRUE(recorder.waitForFrames(12'000));
        EXPECT_TRUE(recorder.waitForLevel(0, 0.4f));
        EXPECT_THAT(recorder.samples(1), Each(0.f));
    }
}

TEST_F(PipeWireTapsService, TheSoundComesBackIfTheTappingProgramDies) {
    const Program app(player({"test.app", "level"}));
    Program tapper({TAVERO_SOUND_TAPPER, std::to_string(app.pid()), "test.headset", "0.5"});
    EXPECT_EQ(tapper.line(), "tapping");
    Recorder recorder(seen, {"test.speakers", "test.headset"}, "256/48000");
    EXPECT_TRUE(recorder.waitForLevel(1, 0.4f));
    EXPECT_TRUE(recorder.waitForLevel(0, 0));
    tapper.kill();
    EXPECT_TRUE(recorder.waitForLevel(0, 0.8f));
}

TEST_F(PipeWireTapsService, AnAppAtRestKeepsNoOutputAwake) {
    const Program app(player({"test.app", "level"}));
    TapCells cells;
    const auto running = tap(app, "test.headset", 0.5f, cells);
    EXPECT_TRUE(becomes([&] { return running->isRunning(); }));
    app.say("rest");
    EXPECT_TRUE(becomes([&] { return !running->isRunning(); }));
    const auto isAwake = [&](const char* name) {
        const auto lock = graph->lock();
        return graph->mirror().named(name)->isRunning;
    };
    EXPECT_TRUE(becomes([&] { return !isAwake("test.headset"); }));
    app.say("play");
    EXPECT_TRUE(becomes([&] { return running->isRunning() && isAwake("test.headset"); }));
}

TEST_F(PipeWireTapsService, AMeterHearsAndChangesNothing) {
    const Program app(player({"test.app", "level", "latency=512/48000"}));
    Recorder recorder(seen, {"test.speakers", "test.headset"}, "512/48000");
    EXPECT_TRUE(recorder.waitForLevel(0, 0.8f));
    const std::uint32_t quantum = recorder.quantum();
    recorder.clear();
    TapCells cells;
    {
        const auto running = meter(app, cells);
        EXPECT_TRUE(becomes([&] { return running->isRunning() && cells.latest > 0; }));
        EXPECT_TRUE(recorder.waitForFrames(6000));
        EXPECT_NEAR(cells.peak, 0.8f, 0.0001f);
        EXPECT_NEAR(cells.latest, 0.8f, 0.0001f);
        EXPECT_EQ(recorder.quantum(), quantum);
        const TestGraph::Lock lock(seen);
        EXPECT_THAT(seen.targets("test.app"), Contains("test.speakers").Times(2));
    }
    EXPECT_TRUE(recorder.waitForLevel(0, 0.8f));
    EXPECT_THAT(recorder.samples(1), Each(0.f));
}

TEST_F(PipeWireTapsService, AMeterHearsTheSumOfAllStreamsAlsoOfLaterOnes) {
    const Program app(player({"test.app", "level", "channels=1"}));
    TapCells cells;
    const auto running = meter(app, cells);
    EXPECT_TRUE(becomes([&] { return std::abs(cells.latest - 0.8f) < 0.001f; }));
    app.say("more");
    EXPECT_TRUE(becomes([&] { return std::abs(cells.latest - 1.6f) < 0.001f; }));
}

TEST_F(PipeWireTapsService, AMeterIsNoUseOfTheMicrophoneAndKeepsNothingAwake) {
    const Program app(player({"test.app", "level"}));
    TapCells cells;
    const auto running = meter(app, cells);
    EXPECT_TRUE(becomes([&] { return running->isRunning(); }));
    {
        const auto lock = graph->lock();
        for (const auto& [id, node] : graph->mirror().nodes) {
            if (node.isOwn()) {
                EXPECT_EQ(node.mediaClass, "Stream/Input/Audio/Internal");
            }
        }
    }
    app.say("rest");
    EXPECT_TRUE(becomes([&] { return !running->isRunning(); }));
    app.say("play");
    EXPECT_TRUE(becomes([&] { return running->isRunning(); }));
}

TEST_F(PipeWireTapsService, NothingTouchesTheCellsOfAMeterAfterItsEnd) {
    const Program app(player({"test.app", "level"}));
    TapCells cells;
    auto running = meter(app, cells);
    EXPECT_TRUE(becomes([&] { return cells.latest > 0; }));
    running.reset();
    cells.latest = -1;
    Recorder recorder(seen, {"test.speakers"}, "256/48000");
    EXPECT_TRUE(recorder.waitForFrames(4000));
    EXPECT_EQ(cells.latest, -1);
}

TEST_F(PipeWireTapsService, AnOutputThatIsNotThereOrOursIsAFailure) {
    const Program app(player({"test.app", "level"}));
    TapCells cells;
    const auto nowhere = start(app, "test.nowhere", 0.5f, cells);
    ASSERT_EQ(nowhere.index(), 1u);
    EXPECT_EQ(std::get<1>(nowhere), (TapFailure{TapFailure::Step::aggregate, -ENODEV}));
    const auto input = start(app, "test.mic", 0.5f, cells);
    EXPECT_EQ(input.index(), 1u);
    const auto running = tap(app, "test.headset", 0.5f, cells);
    std::string own;
    EXPECT_TRUE(becomes([&] {
        for (const auto& [id, node] : seen.nodes())
            if (node.mediaClass == "Audio/Sink" && node.name.starts_with("com.brimfold.tavero."))
                own = node.name;
        return !own.empty();
    }));
    EXPECT_THAT(own, StartsWith("com.brimfold.tavero.app-audio."));
    EXPECT_EQ(start(app, own, 0.5f, cells).index(), 1u);
}
