#include "platform/linux/sound/Redirects.h"

#include <algorithm>
#include <utility>

namespace tavero {

namespace {

constexpr const char* objectKey = "target.object"; // a serial, or a name
constexpr const char* nodeKey = "target.node";     // an id, the older way
constexpr const char* idType = "Spa:Id";
constexpr const char* forgotten = "-1"; // sent nowhere

std::optional<std::string> valueOf(const char* text) {
    return text ? std::optional<std::string>(text) : std::nullopt;
}

} // namespace

Redirects::Redirects(Write write, IsOf isOf) : write_(std::move(write)), isOf_(std::move(isOf)) {}

PipeWireGraph::RedirectID Redirects::add(std::vector<AudioObjectID> processes, std::uint64_t serial,
                                         const SoundGraph& graph) {
    redirects_.push_back({next_, std::move(processes), std::to_string(serial)});
    applyAll(graph);
    return next_++;
}

void Redirects::remove(PipeWireGraph::RedirectID redirect, const SoundGraph& graph) {
    std::erase_if(redirects_, [&](const Redirect& entry) { return entry.id == redirect; });
    applyAll(graph);
}

void Redirects::applyAll(const SoundGraph& graph) {
    for (const auto& [id, node] : graph.nodes) apply(node);
}

void Redirects::apply(const SoundNode& node) {
    if (node.kind != SoundNode::Kind::playback || node.isOwn()) return;
    const auto wanted =
        std::find_if(redirects_.rbegin(), redirects_.rend(),
                     [&](const Redirect& redirect) { return isOf_(node, redirect.processes); });
    if (wanted == redirects_.rend()) {
        if (const auto found = streams_.find(node.id); found != streams_.end())
            giveBack(node.id, found->second);
        return;
    }
    Stream& stream = streams_[node.id];
    if (stream.sent == wanted->serial) return;
    stream.sent = wanted->serial;
    stream.isTaken = false;
    send(node.id, stream, stream.sent);
    // Session managers remember where a stream was sent, and send other apps of its kind there as
    // well. This makes them forget, and changes nothing: the first of the two keys counts.
    write_(node.id, nodeKey, idType, forgotten);
}

void Redirects::send(std::uint32_t node, Stream& stream, std::optional<std::string> object) {
    write_(node, objectKey, object ? idType : nullptr, object ? object->c_str() : nullptr);
    stream.underWay.push_back(std::move(object));
}

void Redirects::giveBack(std::uint32_t node, Stream& stream) {
    if (std::exchange(stream.sent, {}).empty() || std::exchange(stream.isTaken, false)) return;
    send(node, stream, stream.object);
    // The session manager remembers the last place that a stream was sent to, for the app's next
    // start: it is to be the user's choice, not ours.
    write_(node, nodeKey, stream.node ? idType : nullptr,
           stream.node ? stream.node->c_str() : nullptr);
}

void Redirects::told(std::uint32_t node, std::string_view key, const char* value) {
    if (key.empty()) { // all of it was taken back
        streams_.erase(node);
        return;
    }
    if (key == nodeKey) {
        Stream& stream = streams_[node];
        if (stream.sent.empty() || valueOf(value) != forgotten) stream.node = valueOf(value);
        return;
    }
    if (key != objectKey) return;
    Stream& stream = streams_[node];
    const auto own = std::find(stream.underWay.begin(), stream.underWay.end(), valueOf(value));
    if (own != stream.underWay.end()) {
        stream.underWay.erase(stream.underWay.begin(), own + 1);
        return;
    }
    stream.object = valueOf(value);
    stream.isTaken = !stream.sent.empty();
}

void Redirects::gone(std::uint32_t node) { streams_.erase(node); }

void Redirects::clear() {
    redirects_.clear();
    streams_.clear();
}

} // namespace tavero
