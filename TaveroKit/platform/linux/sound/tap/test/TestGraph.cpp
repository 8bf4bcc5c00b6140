#include "platform/linux/sound/tap/test/TestGraph.h"

#include <cstdlib>
#include <ctime>
#include <stdexcept>

// PipeWire's calls are macros of C: they cast in its way, and have statements as values.
#pragma GCC diagnostic ignored "-Wold-style-cast"
#pragma GCC diagnostic ignored "-Wpedantic"

namespace tavero::test {

namespace {

std::string text(const spa_dict* properties, const char* key) {
    const char* value = properties == nullptr ? nullptr : spa_dict_lookup(properties, key);
    return value == nullptr ? "" : value;
}

std::uint32_t number(const spa_dict* properties, const char* key) {
    return static_cast<std::uint32_t>(std::atoi(text(properties, key).c_str()));
}

} // namespace

TestGraph::TestGraph() {
    pw_init(nullptr, nullptr);
    loop_ = pw_thread_loop_new("test-graph", nullptr);
    context_ = pw_context_new(pw_thread_loop_get_loop(loop_), nullptr, 0);
    pw_thread_loop_start(loop_);
    const Lock lock(*this);
    core_ = pw_context_connect(context_, nullptr, 0);
    if (core_ == nullptr) throw std::runtime_error("no PipeWire answers");
    static const pw_registry_events events = [] {
        pw_registry_events told{};
        told.version = PW_VERSION_REGISTRY_EVENTS;
        told.global = [](void* self, std::uint32_t id, std::uint32_t, const char* type,
                         std::uint32_t, const spa_dict* properties) {
            static_cast<TestGraph*>(self)->appeared(id, type, properties);
        };
        told.global_remove = [](void* self, std::uint32_t id) {
            static_cast<TestGraph*>(self)->went(id);
        };
        return told;
    }();
    registry_ = pw_core_get_registry(core_, PW_VERSION_REGISTRY, 0);
    pw_registry_add_listener(registry_, &hook_, &events, this);
}

TestGraph::~TestGraph() {
    pw_thread_loop_stop(loop_);
    for (pw_proxy* output : outputs_) pw_proxy_destroy(output);
    if (settings_ != nullptr) pw_proxy_destroy(reinterpret_cast<pw_proxy*>(settings_));
    pw_proxy_destroy(reinterpret_cast<pw_proxy*>(registry_));
    pw_core_disconnect(core_);
    pw_context_destroy(context_);
    pw_thread_loop_destroy(loop_);
}

void TestGraph::appeared(std::uint32_t id, const char* type, const spa_dict* properties) {
    const std::string kind = type;
    if (kind == PW_TYPE_INTERFACE_Node) {
        nodes_[id] = {id, text(properties, PW_KEY_OBJECT_SERIAL),
                      text(properties, PW_KEY_NODE_NAME), text(properties, PW_KEY_MEDIA_CLASS)};
    } else if (kind == PW_TYPE_INTERFACE_Port) {
        ports_[id] = {id, number(properties, PW_KEY_NODE_ID),
                      text(properties, PW_KEY_PORT_DIRECTION) == "out",
                      text(properties, PW_KEY_PORT_NAME), text(properties, PW_KEY_AUDIO_CHANNEL)};
    } else if (kind == PW_TYPE_INTERFACE_Link) {
        links_[id] = {id, number(properties, PW_KEY_LINK_OUTPUT_NODE),
                      number(properties, PW_KEY_LINK_INPUT_NODE)};
    } else if (kind == PW_TYPE_INTERFACE_Metadata && settings_ == nullptr &&
               text(properties, PW_KEY_METADATA_NAME) == "settings") {
        settings_ = static_cast<pw_metadata*>(
            pw_registry_bind(registry_, id, type, PW_VERSION_METADATA, 0));
    }
    pw_thread_loop_signal(loop_, false);
}

void TestGraph::went(std::uint32_t id) {
    nodes_.erase(id);
    ports_.erase(id);
    links_.erase(id);
    pw_thread_loop_signal(loop_, false);
}

bool TestGraph::waitUntil(const std::function<bool()>& isTrue) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point deadline = Clock::now() + std::chrono::seconds(10);
    const Lock lock(*this);
    while (!isTrue()) {
        if (Clock::now() > deadline) return false;
        timespec next{};
        pw_thread_loop_get_time(loop_, &next, 5 * SPA_NSEC_PER_MSEC);
        pw_thread_loop_timed_wait_full(loop_, &next);
    }
    return true;
}

const TestGraph::Node* TestGraph::node(const std::string& name) const {
    for (const auto& [id, node] : nodes_)
        if (node.name == name) return &node;
    return nullptr;
}

std::vector<TestGraph::Port> TestGraph::ports(std::uint32_t node, bool isOutput) const {
    std::vector<Port> found;
    for (const auto& [id, port] : ports_)
        if (port.node == node && port.isOutput == isOutput) found.push_back(port);
    return found;
}

std::vector<std::string> TestGraph::targets(const std::string& name) const {
    std::vector<std::string> found;
    for (const auto& [id, link] : links_) {
        const auto from = nodes_.find(link.outputNode);
        const auto to = nodes_.find(link.inputNode);
        if (from == nodes_.end() || to == nodes_.end() || from->second.name != name) continue;
        found.push_back(to->second.name);
    }
    return found;
}

std::string TestGraph::wiring() {
    const Lock lock(*this);
    std::string text;
    for (const auto& [id, node] : nodes_)
        for (const std::string& target : targets(node.name))
            text += node.name + " -> " + target + "; ";
    return text;
}

pw_proxy* TestGraph::link(const Port& from, const Port& to) {
    pw_properties* properties = pw_properties_new(nullptr, nullptr);
    pw_properties_setf(properties, PW_KEY_LINK_OUTPUT_NODE, "%u", from.node);
    pw_properties_setf(properties, PW_KEY_LINK_OUTPUT_PORT, "%u", from.id);
    pw_properties_setf(properties, PW_KEY_LINK_INPUT_NODE, "%u", to.node);
    pw_properties_setf(properties, PW_KEY_LINK_INPUT_PORT, "%u", to.id);
    void* proxy = pw_core_create_object(core_, "link-factory", PW_TYPE_INTERFACE_Link,
                                        PW_VERSION_LINK, &properties->dict, 0);
    pw_properties_free(properties);
    return static_cast<pw_proxy*>(proxy);
}

pw_proxy* TestGraph::makeOutput(const std::string& name) {
    pw_properties* properties =
        pw_properties_new("factory.name", "support.null-audio-sink", PW_KEY_NODE_NAME, name.c_str(),
                          PW_KEY_MEDIA_CLASS, "Audio/Sink", "audio.position", "[ FL FR ]", nullptr);
    void* proxy = pw_core_create_object(core_, "adapter", PW_TYPE_INTERFACE_Node, PW_VERSION_NODE,
                                        &properties->dict, 0);
    pw_properties_free(properties);
    if (proxy != nullptr) outputs_.push_back(static_cast<pw_proxy*>(proxy));
    return static_cast<pw_proxy*>(proxy);
}

void TestGraph::remove(pw_proxy* output) {
    std::erase(outputs_, output);
    pw_proxy_destroy(output);
}

void TestGraph::forceQuantum(std::uint32_t frames) {
    if (!waitUntil([this] { return settings_ != nullptr; }))
        throw std::runtime_error("no settings");
    const Lock lock(*this);
    const std::string value = std::to_string(frames);
    pw_metadata_set_property(settings_, 0, "clock.force-quantum", nullptr, value.c_str());
}

} // namespace tavero::test
