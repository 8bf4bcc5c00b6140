#include "platform/linux/sound/tap/TapPath.h"

#include "platform/linux/sound/tap/test/PathBench.h"

#include <algorithm>
#include <cmath>

using namespace tavero;
using namespace tavero::test;

namespace {

// How many frames later the second node of a recording has the impulses of the first; of each
// impulse that both have.
std::vector<std::size_t> delays(const Recorder& recorder) {
    const std::vector<float> from = recorder.samples(0);
    const std::vector<float> to = recorder.samples(1);
    std::vector<std::size_t> found;
    for (std::size_t i = 0; i < from.size(); ++i) {
        if (from[i] < 0.1f) continue;
        for (std::size_t j = i; j < to.size() && j < i + 5000; ++j) {
            if (to[j] < 0.1f) continue;
            found.push_back(j - i);
            break;
        }
    }
    return found;
}

// Frames in a row, at the end of the samples, in which the count goes on without a fault.
std::size_t countedAtEnd(const std::vector<float>& samples) {
    constexpr float step = 1.f / (1 << 20);
    std::size_t good = 0;
    for (std::size_t i = samples.size() - 1; i > 0; --i, ++good)
        if (samples[i] - samples[i - 1] != step) break;
    return good;
}

} // namespace

TEST_F(TapPathService, PlaysHalfAsLoudAndMeasuresBeforeTheGain) {
    Path path(0.5f);
    const Program app(player("level"));
    Recorder recorder(graph, {"test.speakers", "test.headset"}, "256/48000");
    EXPECT_TRUE(recorder.waitForLevel(1, 0.4f));
    EXPECT_TRUE(recorder.waitForLevel(0, 0));
    EXPECT_NEAR(path.cells->peak, 0.8f, 0.0001f);
    EXPECT_NEAR(path.cells->recent, 0.8f, 0.0001f);
    EXPECT_NEAR(path.cells->latest, 0.8f, 0.0001f);
    EXPECT_TRUE(path.path->sink().isStreaming());
    EXPECT_TRUE(path.path->player().isStreaming());
}

TEST_F(TapPathService, AMutedAppStillHasALevel) {
    Path path(0);
    const Program app(player("level"));
    EXPECT_TRUE(graph.waitUntil([&] { return path.cells->latest > 0.79f; }));
    Recorder recorder(graph, {"test.headset"}, "256/48000");
    EXPECT_TRUE(recorder.waitForLevel(0, 0));
}

TEST_F(TapPathService, TheGainWorksFromTheNextBlock) {
    Path path(0.25f);
    const Program app(player("level"));
    Recorder recorder(graph, {"test.headset"}, "256/48000");
    EXPECT_TRUE(recorder.waitForLevel(0, 0.2f));
    path.cells->gain = 1;
    EXPECT_TRUE(recorder.waitForLevel(0, 0.8f));
    for (const float sample : recorder.samples(0))
        EXPECT_TRUE(sample == 0 || std::abs(sample - 0.2f) < 0.001f ||
                    std::abs(sample - 0.8f) < 0.001f)
            << sample;
}

// A sink's monitor is one block behind what is played to it, tap or no tap.
TEST_F(TapPathService, AddsNoDelay) {
    const auto isOneBlockBehind = [this](std::uint32_t quantum) {
        Recorder recorder(graph, {"test.app", "test.headset"}, "256/48000");
        return graph.waitUntil([&] {
            const std::vector<std::size_t> behind = delays(recorder);
            return recorder.quantum() == quantum && behind.size() >= 2 &&
                   behind.back() == quantum && behind[behind.size() - 2] == quantum;
        });
    };
    for (const std::uint32_t quantum : {256u, 1024u, 2048u}) {
        graph.forceQuantum(quantum);
        {
            const Program app({TAVERO_SOUND_PLAYER, "test.app", "impulse", "target=test.headset"});
            EXPECT_TRUE(isOneBlockBehind(quantum)) << quantum;
        }
        Path path(1);
        const Program app(player("impulse"));
        EXPECT_TRUE(isOneBlockBehind(quantum)) << quantum;
    }
}

TEST_F(TapPathService, NoChangeOfTheQuantumJamsIt) {
    Path path(1);
    const Program app(player("count"));
    Recorder recorder(graph, {"test.app", "test.headset"}, "256/48000");
    for (const std::uint32_t quantum : {1024u, 128u, 2048u, 64u, 512u, 256u}) {
        graph.forceQuantum(quantum);
        EXPECT_TRUE(graph.waitUntil([&] { return recorder.quantum() == quantum; }));
        // The monitor is one block behind, as it always is.
        const auto isInStep = [&] {
            if (countedAtEnd(recorder.samples(1)) < std::size_t{quantum} * 10) return false;
            const float behind = recorder.samples(0).back() - recorder.samples(1).back();
            return behind * (1 << 20) == static_cast<float>(quantum);
        };
        EXPECT_TRUE(graph.waitUntil(isInStep)) << quantum;
        recorder.clear();
    }
}

TEST_F(TapPathService, TheSoundMovesOnWhenItsOutputGoes) {
    pw_proxy* output = nullptr;
    {
        const TestGraph::Lock lock(graph);
        output = graph.makeOutput("test.passing");
    }
    ASSERT_TRUE(graph.waitUntil([&] { return graph.node("test.passing") != nullptr; }));
    Path path(0.5f, "test.passing");
    const Program app(player("level"));
    {
        Recorder recorder(graph, {"test.speakers", "test.passing"}, "256/48000");
        EXPECT_TRUE(recorder.waitForLevel(1, 0.4f));
        EXPECT_TRUE(recorder.waitForLevel(0, 0));
    }
    {
        const TestGraph::Lock lock(graph);
        graph.remove(output);
    }
    Recorder recorder(graph, {"test.speakers"}, "256/48000");
    EXPECT_TRUE(recorder.waitForLevel(0, 0.4f));
    EXPECT_TRUE(path.path->player().isStreaming());
}

TEST_F(TapPathService, RestsWithItsAppAndWakesWithIt) {
    Path path(0.5f);
    const Program app(player("level"));
    EXPECT_TRUE(graph.waitUntil([&] { return path.path->player().isStreaming(); }));
    app.say("rest");
    EXPECT_TRUE(graph.waitUntil(
        [&] { return !path.path->player().isStreaming() && !path.path->sink().isStreaming(); }));
    app.say("play");
    Recorder recorder(graph, {"test.headset"}, "256/48000");
    EXPECT_TRUE(recorder.waitForLevel(0, 0.4f));
}

TEST_F(TapPathService, TakesAnyNumberOfChannelsAndStreams) {
    Path path(0.5f);
    {
        const Program app(player("level", {"channels=1"}));
        Recorder recorder(graph, {"test.headset"}, "256/48000");
        EXPECT_TRUE(recorder.waitForLevel(0, 0.4f));
    }
    {
        // What the system makes of six channels for two, the tap plays half as loud.
        const Program app(player("level", {"channels=6"}));
        EXPECT_TRUE(graph.waitUntil([&] { return path.cells->latest > 1; }));
        Recorder recorder(graph, {"test.headset"}, "256/48000");
        EXPECT_TRUE(recorder.waitForLevel(0, path.cells->latest / 2));
    }
    const Program app(player("level", {"streams=2"}));
    Recorder recorder(graph, {"test.headset"}, "256/48000");
    EXPECT_TRUE(recorder.waitForLevel(0, 0.8f)) << "their sum";
}

TEST_F(TapPathService, NothingTouchesTheCellsAfterItsEnd) {
    Path path(0.5f);
    const Program app(player("level"));
    Recorder recorder(graph, {"test.speakers"}, "256/48000");
    EXPECT_TRUE(graph.waitUntil([&] { return path.cells->latest > 0; }));
    {
        const TestGraph::Lock lock(path.graph);
        path.path.reset();
        path.cells->latest = -1;
    }
    recorder.clear();
    EXPECT_TRUE(recorder.waitForFrames(4000));
    EXPECT_EQ(path.cells->latest, -1);
}
