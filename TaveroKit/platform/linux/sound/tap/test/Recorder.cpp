#include "platform/linux/sound/tap/test/Recorder.h"

#include <spa/node/io.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace tavero::test {

namespace {

constexpr std::size_t longest = 960'000; // frames, 20 seconds

// The left side of a node: FL, or the only one that it has.
const TestGraph::Port* leftPort(const std::vector<TestGraph::Port>& ports) {
    for (const TestGraph::Port& port : ports)
        if (port.channel == "FL" || port.channel == "MONO") return &port;
    return nullptr;
}

} // namespace

Recorder::Recorder(TestGraph& graph, const std::vector<std::string>& nodes,
                   const std::string& latency)
    : graph_(graph) {
    events_.version = PW_VERSION_FILTER_EVENTS;
    events_.process = [](void* self, spa_io_position* position) {
        static_cast<Recorder*>(self)->record(static_cast<std::uint32_t>(position->clock.duration));
    };
    {
        const TestGraph::Lock lock(graph);
        filter_ = pw_filter_new(graph.core(), "test.recorder",
                                pw_properties_new(PW_KEY_NODE_NAME, "test.recorder",
                                                  PW_KEY_NODE_LATENCY, latency.c_str(), nullptr));
        pw_filter_add_listener(filter_, &hook_, &events_, this);
        for (const std::string& name : nodes) {
            auto channel = std::make_unique<Channel>();
            channel->name = name;
            channel->samples.resize(longest);
            channel->port =
                pw_filter_add_port(filter_, PW_DIRECTION_INPUT, PW_FILTER_PORT_FLAG_MAP_BUFFERS, 8,
                                   pw_properties_new(PW_KEY_FORMAT_DSP, "32 bit float mono audio",
                                                     PW_KEY_PORT_NAME, name.c_str(), nullptr),
                                   nullptr, 0);
            channels_.push_back(std::move(channel));
        }
        pw_filter_connect(filter_, PW_FILTER_FLAG_RT_PROCESS, nullptr, 0);
    }
    const bool isLinked = graph.waitUntil([&] {
        const std::uint32_t own = pw_filter_get_node_id(filter_);
        for (const auto& channel : channels_) {
            if (channel->link != nullptr) continue;
            const TestGraph::Node* node = graph.node(channel->name);
            const auto outputs = graph.ports(node == nullptr ? own : node->id, true);
            const TestGraph::Port* from = leftPort(outputs);
            if (from == nullptr) return false;
            for (const TestGraph::Port& to : graph.ports(own, false))
                if (to.name == channel->name) channel->link = graph.link(*from, to);
            if (channel->link == nullptr) return false;
        }
        return end_ > 0;
    });
    if (!isLinked) throw std::runtime_error("nothing to record");
}

Recorder::~Recorder() {
    const TestGraph::Lock lock(graph_);
    pw_filter_destroy(filter_);
    for (const auto& channel : channels_)
        if (channel->link != nullptr) pw_proxy_destroy(channel->link);
}

void Recorder::record(std::uint32_t frames) {
    quantum_ = frames;
    if (end_ + frames > longest) return;
    for (const auto& channel : channels_) {
        const auto to = channel->samples.begin() + static_cast<std::ptrdiff_t>(end_.load());
        const auto* from = static_cast<float*>(pw_filter_get_dsp_buffer(channel->port, frames));
        if (from != nullptr)
            std::copy_n(from, frames, to);
        else
            std::fill_n(to, frames, 0.f);
    }
    end_ += frames;
}

std::vector<float> Recorder::samples(std::size_t index) const {
    const std::vector<float>& all = channels_[index]->samples;
    return {all.begin() + static_cast<std::ptrdiff_t>(begin_.load()),
            all.begin() + static_cast<std::ptrdiff_t>(end_.load())};
}

void Recorder::clear() { begin_ = end_.load(); }

testing::AssertionResult Recorder::waitForLevel(std::size_t index, float level) {
    constexpr std::size_t enough = 48000 / 20;
    const bool isHeard = graph_.waitUntil([&] {
        if (frames() < enough) return false;
        const std::vector<float>& all = channels_[index]->samples;
        const auto end = all.begin() + static_cast<std::ptrdiff_t>(end_.load());
        return std::all_of(end - enough, end,
                           [level](float sample) { return std::abs(sample - level) < 0.001f; });
    });
    if (isHeard) return testing::AssertionSuccess();
    const std::vector<float> heard = samples(index);
    return testing::AssertionFailure()
           << channels_[index]->name << " plays " << (heard.empty() ? 0 : heard.back()) << ", not "
           << level << ", after " << heard.size() << " frames; " << graph_.wiring();
}

bool Recorder::waitForFrames(std::size_t count) {
    return graph_.waitUntil([&] { return frames() >= count; });
}

} // namespace tavero::test
