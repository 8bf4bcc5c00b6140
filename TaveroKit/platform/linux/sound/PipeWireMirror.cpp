#include "platform/linux/sound/PipeWireMirror.h"

#include "platform/linux/sound/PipeWireCalls.h"
#include "platform/linux/sound/PipeWireLevels.h"
#include "platform/linux/sound/PipeWireValues.h"

#include <spa/param/param.h>

#include <cerrno>
#include <string>

namespace tavero {

using PipeWireValues::number;
using PipeWireValues::text;

namespace {

// A sandboxed app's pid counts in its sandbox only.
constexpr const char* sandboxKey = "pipewire.access.portal.app_id";

template <class Object>
Object* as(pw_proxy* proxy) {
    return reinterpret_cast<Object*>(proxy);
}

} // namespace

// The callbacks, as PipeWire wants them.
struct PipeWireMirror::Events {
    static PipeWireMirror& self(void* data) { return *static_cast<PipeWireMirror*>(data); }
    static Binding& bound(void* data) { return *static_cast<Binding*>(data); }

    static inline const pw_core_events core = [] {
        pw_core_events events{};
        events.version = PW_VERSION_CORE_EVENTS;
        events.done = [](void* data, std::uint32_t id, int seq) {
            if (id == PW_ID_CORE) self(data).answered(seq);
        };
        events.error = [](void* data, std::uint32_t id, int, int result, const char*) {
            if (id == PW_ID_CORE && result == -EPIPE) self(data).watcher_.lost();
        };
        return events;
    }();

    static inline const pw_registry_events registry = [] {
        pw_registry_events events{};
        events.version = PW_VERSION_REGISTRY_EVENTS;
        events.global = [](void* data, std::uint32_t id, std::uint32_t, const char* type,
                           std::uint32_t, const spa_dict* properties) {
            self(data).appeared(id, type, properties);
        };
        events.global_remove = [](void* data, std::uint32_t id) { self(data).went(id); };
        return events;
    }();

    static inline const pw_node_events node = [] {
        pw_node_events events{};
        events.version = PW_VERSION_NODE_EVENTS;
        events.info = [](void* data, const pw_node_info* info) {
            bound(data).mirror.nodeTold(bound(data).id, *info);
        };
        events.param = [](void* data, int, std::uint32_t id, std::uint32_t, std::uint32_t,
                          const spa_pod* param) {
            if (id == SPA_PARAM_Props) bound(data).mirror.levelTold(bound(data).id, param);
        };
        return events;
    }();

    static inline const pw_client_events client = [] {
        pw_client_events events{};
        events.version = PW_VERSION_CLIENT_EVENTS;
        events.info = [](void* data, const pw_client_info* info) {
            bound(data).mirror.clientTold(bound(data).id, *info);
        };
        return events;
    }();

    static inline const pw_device_events device = [] {
        pw_device_events events{};
        events.version = PW_VERSION_DEVICE_EVENTS;
        events.param = [](void* data, int, std::uint32_t id, std::uint32_t, std::uint32_t,
                          const spa_pod* param) {
            if (id == SPA_PARAM_Route) bound(data).mirror.routeTold(bound(data).id, param);
        };
        return events;
    }();

    static inline const pw_metadata_events metadata = [] {
        pw_metadata_events events{};
        events.version = PW_VERSION_METADATA_EVENTS;
        events.property = [](void* data, std::uint32_t subject, const char* key, const char*,
                             const char* value) {
            bound(data).mirror.settingTold(subject, key, value);
            return 0;
        };
        return events;
    }();
};

PipeWireMirror::Binding::Binding(PipeWireMirror& owner, std::uint32_t object, const char* type,
                                 std::uint32_t version)
    : mirror(owner), id(object),
      proxy(PipeWireCalls::bind(owner.registry_, object, type, version)) {}

PipeWireMirror::Binding::~Binding() {
    if (!proxy) return;
    spa_hook_remove(&hook);
    pw_proxy_destroy(proxy);
}

PipeWireMirror::PipeWireMirror(pw_core* core, SoundGraph& graph, PipeWireMirrorWatcher& watcher,
                               const PipeWireGraph::Options& options)
    : core_(core), graph_(graph), watcher_(watcher), options_(options) {
    PipeWireCalls::listen(core_, coreHook_, Events::core, this);
    registry_ = PipeWireCalls::registry(core_);
    if (registry_) PipeWireCalls::listen(registry_, registryHook_, Events::registry, this);
    listedSeq_ = PipeWireCalls::sync(core_);
}

PipeWireMirror::~PipeWireMirror() {
    bindings_.clear();
    if (registry_) {
        spa_hook_remove(&registryHook_);
        pw_proxy_destroy(reinterpret_cast<pw_proxy*>(registry_));
    }
    spa_hook_remove(&coreHook_);
}

pw_metadata* PipeWireMirror::metadata() const {
    const auto found = bindings_.find(metadataID_);
    return found == bindings_.end() ? nullptr : as<pw_metadata>(found->second->proxy);
}

void PipeWireMirror::readSettingsAgain() {
    if (bindings_.erase(metadataID_) > 0) bindMetadata(metadataID_);
}

void PipeWireMirror::setNodeParam(std::uint32_t node, std::uint32_t param, const spa_pod* pod) {
    const auto found = bindings_.find(node);
    if (found == bindings_.end() || !pod) return;
    PipeWireCalls::setParam(as<pw_node>(found->second->proxy), param, pod);
}

void PipeWireMirror::setDeviceParam(std::uint32_t device, std::uint32_t param, const spa_pod* pod) {
    const auto found = bindings_.find(device);
    if (found == bindings_.end() || !pod) return;
    PipeWireCalls::setParam(as<pw_device>(found->second->proxy), param, pod);
}

void PipeWireMirror::appeared(std::uint32_t id, std::string_view type, const spa_dict* properties) {
    if (type == PW_TYPE_INTERFACE_Node)
        nodeAppeared(id, properties);
    else if (type == PW_TYPE_INTERFACE_Port)
        portAppeared(id, properties);
    else if (type == PW_TYPE_INTERFACE_Link)
        linkAppeared(id, properties);
    else if (type == PW_TYPE_INTERFACE_Client)
        clientAppeared(id, properties);
    else if (type == PW_TYPE_INTERFACE_Device &&
             text(properties, PW_KEY_MEDIA_CLASS) == "Audio/Device")
        deviceAppeared(id);
    else if (type == PW_TYPE_INTERFACE_Metadata)
        metadataAppeared(id, properties);
}

void PipeWireMirror::nodeAppeared(std::uint32_t id, const spa_dict* properties) {
    if (text(properties, PW_KEY_MEDIA_CLASS).find("Audio") == std::string_view::npos) return;
    auto binding = std::make_unique<Binding>(*this, id, PW_TYPE_INTERFACE_Node, PW_VERSION_NODE);
    if (!binding->proxy) return;
    SoundNode& node = graph_.nodes[id];
    node = {};
    node.id = id;
    PipeWireValues::describe(node, properties);
    const auto client = graph_.clients.find(node.client.value_or(SPA_ID_INVALID));
    if (node.isStream() && !node.isOwn() && client != graph_.clients.end())
        client->second.hadStream = true;
    // Before anything else is said: whoever links the stream finds it sent to where it is to go.
    watcher_.nodeAnnounced(node);

    auto* proxy = as<pw_node>(binding->proxy);
    PipeWireCalls::listen(proxy, binding->hook, Events::node, binding.get());
    if (node.isDevice()) PipeWireCalls::subscribe(proxy, SPA_PARAM_Props);
    binding->seq = PipeWireCalls::sync(core_);
    bindings_[id] = std::move(binding);
}

void PipeWireMirror::clientAppeared(std::uint32_t id, const spa_dict* properties) {
    auto binding =
        std::make_unique<Binding>(*this, id, PW_TYPE_INTERFACE_Client, PW_VERSION_CLIENT);
    if (!binding->proxy) return;
    SoundClient& client = graph_.clients[id];
    client = {.id = id};
    // The process at the other end of the socket, so that an app's very first stream is known for
    // its own. Behind PulseAudio's protocol that is the translator, until the client tells.
    client.pid = number<std::int32_t>(properties, PW_KEY_SEC_PID);
    PipeWireCalls::listen(as<pw_client>(binding->proxy), binding->hook, Events::client,
                          binding.get());
    bindings_[id] = std::move(binding);
}

void PipeWireMirror::deviceAppeared(std::uint32_t id) {
    auto binding =
        std::make_unique<Binding>(*this, id, PW_TYPE_INTERFACE_Device, PW_VERSION_DEVICE);
    if (!binding->proxy) return;
    graph_.hardware[id].id = id;
    auto* proxy = as<pw_device>(binding->proxy);
    PipeWireCalls::listen(proxy, binding->hook, Events::device, binding.get());
    PipeWireCalls::subscribe(proxy, SPA_PARAM_Route);
    bindings_[id] = std::move(binding);
}

void PipeWireMirror::portAppeared(std::uint32_t id, const spa_dict* properties) {
    const auto node = number<std::uint32_t>(properties, PW_KEY_NODE_ID);
    if (!node || !graph_.node(*node)) return;
    SoundPort& port = graph_.ports[id];
    port.id = id;
    port.node = *node;
    port.direction = text(properties, PW_KEY_PORT_DIRECTION) == "out" ? SoundPort::Direction::out
                                                                      : SoundPort::Direction::in;
    port.name = text(properties, PW_KEY_PORT_NAME);
    port.channel = text(properties, PW_KEY_AUDIO_CHANNEL);
    port.isMonitor = text(properties, PW_KEY_PORT_MONITOR) == "true";
    watcher_.portAppeared(port);
    watcher_.changed();
}

void PipeWireMirror::linkAppeared(std::uint32_t id, const spa_dict* properties) {
    const auto outNode = number<std::uint32_t>(properties, PW_KEY_LINK_OUTPUT_NODE);
    const auto outPort = number<std::uint32_t>(properties, PW_KEY_LINK_OUTPUT_PORT);
    const auto inNode = number<std::uint32_t>(properties, PW_KEY_LINK_INPUT_NODE);
    const auto inPort = number<std::uint32_t>(properties, PW_KEY_LINK_INPUT_PORT);
    if (!outNode || !outPort || !inNode || !inPort) return;
    graph_.links[id] = {id, *outNode, *outPort, *inNode, *inPort};
    watcher_.changed();
}

void PipeWireMirror::metadataAppeared(std::uint32_t id, const spa_dict* properties) {
    if (text(properties, PW_KEY_METADATA_NAME) == "default" && !metadata()) bindMetadata(id);
}

void PipeWireMirror::bindMetadata(std::uint32_t id) {
    auto binding =
        std::make_unique<Binding>(*this, id, PW_TYPE_INTERFACE_Metadata, PW_VERSION_METADATA);
    if (!binding->proxy) return;
    metadataID_ = id;
    PipeWireCalls::listen(as<pw_metadata>(binding->proxy), binding->hook, Events::metadata,
                          binding.get());
    bindings_[id] = std::move(binding);
}

void PipeWireMirror::went(std::uint32_t id) {
    bindings_.erase(id);
    if (id == metadataID_) {
        metadataID_ = SPA_ID_INVALID;
        graph_.defaultSink.clear();
        graph_.defaultSource.clear();
        watcher_.changed();
        return;
    }
    if (const auto node = graph_.nodes.extract(id)) {
        graph_.asking.erase(id);
        if (node.mapped().isKnown) watcher_.nodeGone(node.mapped());
    } else if (graph_.links.erase(id) + graph_.ports.erase(id) + graph_.clients.erase(id) +
                   graph_.hardware.erase(id) ==
               0) {
        return;
    }
    watcher_.changed();
}

void PipeWireMirror::answered(int seq) {
    for (auto& [id, node] : graph_.nodes) {
        const auto binding = bindings_.find(id);
        if (node.isKnown || binding == bindings_.end() || binding->second->seq != seq) continue;
        node.isKnown = true;
        watcher_.nodeKnown(node);
        watcher_.changed();
        break; // no two have the same
    }
    if (!isListed_ && seq == listedSeq_) {
        isListed_ = true;
        wholeSeq_ = PipeWireCalls::sync(core_);
    } else if (isListed_ && !isWhole_ && seq == wholeSeq_) {
        isWhole_ = true;
        watcher_.whole();
    }
}

void PipeWireMirror::nodeTold(std::uint32_t id, const pw_node_info& info) {
    const auto found = graph_.nodes.find(id);
    if (found == graph_.nodes.end()) return;
    SoundNode& node = found->second;
    node.isRunning = info.state == PW_NODE_STATE_RUNNING;
    if (info.change_mask & PW_NODE_CHANGE_MASK_PROPS) PipeWireValues::describe(node, info.props);
    watcher_.changed();
}

void PipeWireMirror::clientTold(std::uint32_t id, const pw_client_info& info) {
    if (!info.props) return;
    SoundClient& client = graph_.clients[id];
    if (client.isKnown) return; // who one is doesn't change
    const bool isPulse = text(info.props, PW_KEY_CLIENT_API) == "pipewire-pulse";
    client.pid = number<std::int32_t>(info.props, isPulse ? PW_KEY_APP_PROCESS_ID : PW_KEY_SEC_PID);
    const std::string_view sandbox = text(info.props, sandboxKey);
    if (isPulse && !sandbox.empty() && client.pid)
        client.pid = options_.sandboxPid ? options_.sandboxPid(sandbox, *client.pid) : std::nullopt;
    client.isKnown = true;
    watcher_.clientKnown(id);
    watcher_.changed();
}

void PipeWireMirror::levelTold(std::uint32_t id, const spa_pod* props) {
    const auto found = graph_.nodes.find(id);
    if (found == graph_.nodes.end()) return;
    SoundLevel level = found->second.level.value_or(SoundLevel{});
    const bool hasVolume = PipeWireLevels::read(props, level);
    if (!hasVolume && !found->second.level) return;
    found->second.level = std::move(level);
    confirm(found->second);
    watcher_.changed();
}

void PipeWireMirror::routeTold(std::uint32_t device, const spa_pod* param) {
    const auto told = PipeWireLevels::readRoute(param);
    if (!told) return;
    graph_.hardware[device].routes[told->profileDevice] = told->route;
    for (const auto& [id, node] : graph_.nodes)
        if (node.device == device) confirm(node);
    watcher_.changed();
}

void PipeWireMirror::confirm(const SoundNode& node) {
    const auto asked = graph_.asking.find(node.id);
    if (asked == graph_.asking.end()) return;
    const auto told = graph_.toldLevelOf(node);
    if (told && PipeWireLevels::isNear(*told, asked->second)) graph_.asking.erase(asked);
}

void PipeWireMirror::settingTold(std::uint32_t subject, const char* key, const char* value) {
    const std::string_view what = key ? key : "";
    if (subject != PW_ID_CORE) {
        watcher_.targetTold(subject, what, value);
        return;
    }
    const std::string name = PipeWireValues::nameIn(value ? value : "");
    // Without a key all of the subject was taken back.
    if (what.empty() || what == "default.audio.sink") {
        graph_.defaultSink = name;
        if (graph_.askedSink == name) graph_.askedSink.reset();
    }
    if (what.empty() || what == "default.audio.source") {
        graph_.defaultSource = name;
        if (graph_.askedSource == name) graph_.askedSource.reset();
    }
    watcher_.changed();
}

} // namespace tavero
