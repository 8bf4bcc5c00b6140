#pragma once

#include "platform/linux/sound/tap/test/TestGraph.h"

#include <gtest/gtest.h>
#include <pipewire/filter.h>

#include <atomic>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tavero::test {

// Records the left channel of some nodes, all in the same cycles of the graph: what an output plays
// (by its monitor), or what a stream plays. Its links are its own, and stay where they are.
class Recorder {
  public:
    // `latency` such as "256/48000"; the graph follows the least that anyone wants.
    Recorder(TestGraph& graph, const std::vector<std::string>& nodes, const std::string& latency);
    ~Recorder();
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    // Everything since the creation or the last clear(), in the order of the nodes.
    std::vector<float> samples(std::size_t index) const;
    void clear();
    // How many frames there are; of all nodes the same.
    std::size_t frames() const { return end_ - begin_; }
    // The size of the latest block.
    std::uint32_t quantum() const { return quantum_; }

    // Waits until an output has played nothing but this level for a twentieth of a second.
    testing::AssertionResult waitForLevel(std::size_t index, float level);
    bool waitForFrames(std::size_t frames);

  private:
    struct Channel {
        std::string name;
        void* port = nullptr;
        pw_proxy* link = nullptr;
        std::vector<float> samples;
    };

    void record(std::uint32_t frames);

    TestGraph& graph_;
    std::vector<std::unique_ptr<Channel>> channels_;
    pw_filter_events events_{};
    spa_hook hook_{};
    pw_filter* filter_ = nullptr;
    std::atomic<std::size_t> begin_ = 0;
    std::atomic<std::size_t> end_ = 0;
    std::atomic<std::uint32_t> quantum_ = 0;
};

} // namespace tavero::test
