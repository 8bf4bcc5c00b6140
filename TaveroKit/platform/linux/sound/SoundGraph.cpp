#include "platform/linux/sound/SoundGraph.h"

#include <algorithm>
#include <set>

namespace tavero {

namespace {

template <class T>
const T* find(const std::map<std::uint32_t, T>& all, std::uint32_t id) {
    const auto found = all.find(id);
    return found == all.end() ? nullptr : &found->second;
}

} // namespace

const SoundNode* SoundGraph::node(std::uint32_t id) const { return find(nodes, id); }

const SoundNode* SoundGraph::named(std::string_view name) const {
    if (name.empty()) return nullptr;
    for (const auto& [id, node] : nodes)
        if (node.name == name) return &node;
    return nullptr;
}

std::vector<SoundPort> SoundGraph::portsOf(std::uint32_t node,
                                           SoundPort::Direction direction) const {
    std::vector<SoundPort> found;
    for (const auto& [id, port] : ports)
        if (port.node == node && port.direction == direction) found.push_back(port);
    return found;
}

std::optional<std::int32_t> SoundGraph::pidOf(const SoundNode& node) const {
    const SoundClient* client = node.client ? find(clients, *node.client) : nullptr;
    return client ? client->pid : std::nullopt;
}

const SoundRoute* SoundGraph::routeOf(const SoundNode& node) const {
    const SoundHardware* owner = node.device ? find(hardware, *node.device) : nullptr;
    if (!owner || !node.profileDevice) return nullptr;
    const auto route = owner->routes.find(*node.profileDevice);
    return route == owner->routes.end() ? nullptr : &route->second;
}

std::optional<SoundLevel> SoundGraph::toldLevelOf(const SoundNode& node) const {
    const SoundRoute* route = routeOf(node);
    if (route && !route->level.channels.empty()) return route->level;
    return node.level;
}

std::optional<SoundLevel> SoundGraph::levelOf(const SoundNode& node) const {
    if (const SoundLevel* asked = find(asking, node.id)) return *asked;
    return toldLevelOf(node);
}

const SoundNode* SoundGraph::sink() const {
    const SoundNode* node = named(askedSink ? *askedSink : defaultSink);
    // With no output left the service may choose one that a tap made, which leads nowhere.
    return node && !node->isOwn() ? node : nullptr;
}

const SoundNode* SoundGraph::source() const {
    return named(askedSource ? *askedSource : defaultSource);
}

bool SoundGraph::lacksSink() const {
    return !sink() && std::any_of(nodes.begin(), nodes.end(), [](const auto& entry) {
        return entry.second.isSink() && !entry.second.isOwn();
    });
}

std::vector<std::int32_t> SoundGraph::processes(std::int32_t ownPid) const {
    std::set<std::int32_t> pids;
    for (const auto& [id, client] : clients)
        if (client.hadStream && client.isKnown && client.pid && client.pid != ownPid)
            pids.insert(*client.pid);
    return {pids.begin(), pids.end()};
}

bool SoundGraph::isPlaying(std::int32_t pid) const {
    return std::any_of(nodes.begin(), nodes.end(), [&](const auto& entry) {
        const SoundNode& node = entry.second;
        return node.kind == SoundNode::Kind::playback && node.isRunning && !node.isOwn() &&
               pidOf(node) == pid;
    });
}

bool SoundGraph::listensToInput(const SoundNode& stream) const {
    return std::any_of(links.begin(), links.end(), [&](const auto& entry) {
        const SoundLink& link = entry.second;
        if (link.inNode != stream.id) return false;
        const SoundNode* from = node(link.outNode);
        if (!from || !from->isSource()) return false;
        // All ports of a virtual input are monitors; of a device of both directions only those are
        // that tell what is played.
        const SoundPort* port = find(ports, link.outPort);
        return from->kind == SoundNode::Kind::source || !(port && port->isMonitor);
    });
}

bool SoundGraph::isRecording(std::int32_t pid) const {
    return std::any_of(nodes.begin(), nodes.end(), [&](const auto& entry) {
        const SoundNode& node = entry.second;
        return node.kind == SoundNode::Kind::capture && node.isRunning && !node.isOwn() &&
               pidOf(node) == pid && listensToInput(node);
    });
}

} // namespace tavero
