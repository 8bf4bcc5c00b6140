#pragma once

#include "platform/linux/sound/tap/TapPath.h"
#include "platform/linux/sound/tap/test/Program.h"
#include "platform/linux/sound/tap/test/Recorder.h"
#include "platform/linux/sound/tap/test/TestGraph.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace tavero::test {

inline const std::string sinkName = "com.brimfold.tavero.app-audio.path-test";

// A path to the headset, and nothing yet that plays.
struct Path {
    explicit Path(float gain, const std::string& target = "test.headset") {
        cells->gain = gain;
        const TestGraph::Lock lock(graph);
        path = std::make_unique<TapPath>(graph.core(), sinkName, target, *cells);
        EXPECT_EQ(path->connectPlayer(), 0);
        EXPECT_EQ(path->connectSink(), 0);
    }
    ~Path() {
        const TestGraph::Lock lock(graph);
        path.reset();
    }

    std::unique_ptr<TapCells> cells = std::make_unique<TapCells>();
    TestGraph graph;
    std::unique_ptr<TapPath> path;
};

// An app that plays to the path.
inline std::vector<std::string> player(const std::string& wave,
                                       std::vector<std::string> more = {}) {
    std::vector<std::string> command = {TAVERO_SOUND_PLAYER, "test.app", wave,
                                        "target=" + sinkName};
    command.insert(command.end(), more.begin(), more.end());
    return command;
}

class TapPathService : public testing::Test {
  protected:
    ~TapPathService() override {
        graph.forceQuantum(0);
        EXPECT_TRUE(graph.waitUntil([this] { return graph.node("test.app") == nullptr; }));
    }

    TestGraph graph;
};

} // namespace tavero::test
