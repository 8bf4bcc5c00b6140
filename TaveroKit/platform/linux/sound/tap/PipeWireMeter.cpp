#include "platform/linux/sound/tap/PipeWireMeter.h"

#include <pipewire/keys.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <span>

namespace tavero {

namespace {

constexpr std::chrono::milliseconds patience{100};

} // namespace

PipeWireMeter::PipeWireMeter(std::shared_ptr<PipeWireGraph> graph,
                             std::vector<AudioObjectID> processObjects, TapCells& cells)
    : graph_(std::move(graph)), processObjects_(std::move(processObjects)), stage_(cells) {
    const auto lock = graph_->lock();
    graph_->add(*this);
}

PipeWireMeter::~PipeWireMeter() {
    const auto lock = graph_->lock();
    graph_->remove(*this);
    disconnected();
}

std::optional<TapFailure> PipeWireMeter::open(const std::string& name) {
    using Step = TapFailure::Step;
    const auto lock = graph_->lock();
    if (!graph_->isConnected()) return TapFailure{Step::tap, -ENOTCONN};
    // Internal: desktops take any other capture stream for a use of the microphone. Passive: it
    // keeps nothing awake. It needs no low latency.
    stream_.emplace(
        graph_->core(),
        StereoStream::Properties{{PW_KEY_NODE_NAME, name},
                                 {PW_KEY_NODE_DESCRIPTION, "Tavero"},
                                 {PW_KEY_MEDIA_CLASS, "Stream/Input/Audio/Internal"},
                                 {PW_KEY_NODE_PASSIVE, "true"},
                                 {PW_KEY_NODE_LATENCY, "2048/48000"},
                                 {PW_KEY_STREAM_MONITOR, "true"},
                                 {"state.restore-props", "false"},
                                 {"state.restore-target", "false"}},
        StereoStream::Work{[](void* self) { static_cast<PipeWireMeter*>(self)->hear(); }, this});
    const int status = stream_->connect(SPA_DIRECTION_INPUT, PW_STREAM_FLAG_MAP_BUFFERS |
                                                                 PW_STREAM_FLAG_RT_PROCESS |
                                                                 PW_STREAM_FLAG_DONT_RECONNECT);
    if (status < 0) return TapFailure{Step::tap, status};
    const auto isReady = [this] {
        return graph_->mirror().portsOf(stream_->nodeID(), SoundPort::Direction::in).size() == 2;
    };
    if (!graph_->waitUntil([&] { return !stream_ || stream_->isOff() || isReady(); }, patience))
        return TapFailure{Step::start, -ETIMEDOUT};
    if (!stream_) return TapFailure{Step::start, -ENOTCONN};
    if (stream_->isOff()) return TapFailure{Step::tap, -EIO};
    for (const auto& [id, node] : graph_->mirror().nodes) listen(node);
    return std::nullopt;
}

bool PipeWireMeter::isRunning() {
    const auto lock = graph_->lock();
    return stream_ && stream_->isStreaming();
}

void PipeWireMeter::disconnected() {
    links_.clear();
    stream_.reset();
}

void PipeWireMeter::portAppeared(const SoundPort& port) {
    forgetGonePorts(); // a stream that changes its channels has new ports
    if (const SoundNode* node = graph_->mirror().node(port.node)) listen(*node);
}

// Channel to channel; what has no counterpart goes to both sides.
void PipeWireMeter::listen(const SoundNode& stream) {
    if (!stream_ || stream.kind != SoundNode::Kind::playback) return;
    if (!graph_->isOf(stream, processObjects_)) return;
    const SoundGraph& mirror = graph_->mirror();
    const auto own = mirror.portsOf(stream_->nodeID(), SoundPort::Direction::in);
    for (const SoundPort& out : mirror.portsOf(stream.id, SoundPort::Direction::out)) {
        if (out.isMonitor) continue;
        const bool isOneOfOurs = std::ranges::any_of(
            own, [&out](const SoundPort& in) { return in.channel == out.channel; });
        for (const SoundPort& in : own) {
            if (isOneOfOurs && in.channel != out.channel) continue;
            auto& link = links_[{out.id, in.id}];
            if (link == nullptr) link = graph_->link(out, in, true);
        }
    }
}

void PipeWireMeter::forgetGonePorts() {
    const auto& ports = graph_->mirror().ports;
    std::erase_if(links_, [&](const auto& link) { return !ports.contains(link.first.first); });
}

void PipeWireMeter::hear() {
    while (pw_buffer* buffer = stream_->take()) {
        stage_.pass(*buffer, [](std::span<const float>, std::span<const float>) {});
        stream_->giveBack(buffer);
    }
}

} // namespace tavero
