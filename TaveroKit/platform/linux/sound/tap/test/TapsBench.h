#pragma once

#include "platform/linux/sound/tap/PipeWireTaps.h"
#include "platform/linux/sound/tap/test/Program.h"
#include "platform/linux/sound/tap/test/Recorder.h"
#include "platform/linux/sound/tap/test/TestGraph.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace tavero::test {

// How long a test waits for what must come.
inline constexpr std::chrono::seconds patience{10};

// An app that plays to the default output.
inline std::vector<std::string> player(std::vector<std::string> words) {
    words.insert(words.begin(), TAVERO_SOUND_PLAYER);
    return words;
}

// What the programs of the private session play. At its default, test.speakers, apps play by
// themselves.
class PipeWireTapsService : public testing::Test {
  protected:
    PipeWireTapsService() {
        const auto lock = graph->lock();
        EXPECT_TRUE(graph->waitUntil([this] { return graph->isConnected(); }, patience));
    }
    ~PipeWireTapsService() override {
        const auto isAlone = [this] {
            return std::ranges::none_of(graph->mirror().nodes, [](const auto& entry) {
                return entry.second.isStream() || entry.second.isOwn();
            });
        };
        const auto lock = graph->lock();
        EXPECT_TRUE(graph->waitUntil(isAlone, patience)) << "something was left behind";
    }

    // The process of a program, as soon as it plays.
    AudioObjectID process(const Program& program) {
        const auto lock = graph->lock();
        EXPECT_TRUE(
            graph->waitUntil([&] { return graph->mirror().isPlaying(program.pid()); }, patience));
        return PipeWireGraph::processObject(graph->generation(), program.pid());
    }

    AudioTapSource::Result start(const Program& program, const std::string& output, float gain,
                                 TapCells& cells, bool listenOnly = false) {
        cells.gain = gain;
        return taps.start({{process(program)}, output, std::nullopt, listenOnly}, cells);
    }
    std::unique_ptr<RunningTap> tap(const Program& program, const std::string& output, float gain,
                                    TapCells& cells) {
        auto result = start(program, output, gain, cells);
        EXPECT_EQ(result.index(), 0u);
        return std::move(std::get<0>(result));
    }
    std::unique_ptr<RunningTap> meter(const Program& program, TapCells& cells) {
        auto result = start(program, "test.speakers", 0, cells, true);
        EXPECT_EQ(result.index(), 0u);
        return std::move(std::get<0>(result));
    }

    bool becomes(const std::function<bool()>& isTrue) { return seen.waitUntil(isTrue); }

    std::shared_ptr<PipeWireGraph> graph = std::make_shared<PipeWireGraph>();
    PipeWireTaps taps{graph};
    TestGraph seen;
};

} // namespace tavero::test
