#pragma once

#include <pipewire/extensions/metadata.h>
#include <pipewire/pipewire.h>

#include <cstdint>

// PipeWire's methods are macros that cast as C does; here each is a function.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wold-style-cast"

namespace tavero::PipeWireCalls {

// The answer comes after all that the service says to what was sent before.
inline int sync(pw_core* core) { return pw_core_sync(core, PW_ID_CORE, 0); }

inline pw_registry* registry(pw_core* core) {
    return pw_core_get_registry(core, PW_VERSION_REGISTRY, 0);
}

inline pw_proxy* bind(pw_registry* registry, std::uint32_t id, const char* type,
                      std::uint32_t version) {
    return static_cast<pw_proxy*>(pw_registry_bind(registry, id, type, version, 0));
}

inline void listen(pw_core* core, spa_hook& hook, const pw_core_events& events, void* data) {
    pw_core_add_listener(core, &hook, &events, data);
}
inline void listen(pw_registry* registry, spa_hook& hook, const pw_registry_events& events,
                   void* data) {
    pw_registry_add_listener(registry, &hook, &events, data);
}
inline void listen(pw_node* node, spa_hook& hook, const pw_node_events& events, void* data) {
    pw_node_add_listener(node, &hook, &events, data);
}
inline void listen(pw_client* client, spa_hook& hook, const pw_client_events& events, void* data) {
    pw_client_add_listener(client, &hook, &events, data);
}
inline void listen(pw_device* device, spa_hook& hook, const pw_device_events& events, void* data) {
    pw_device_add_listener(device, &hook, &events, data);
}
inline void listen(pw_metadata* metadata, spa_hook& hook, const pw_metadata_events& events,
                   void* data) {
    pw_metadata_add_listener(metadata, &hook, &events, data);
}

// Lets the object tell of a parameter now and whenever it changes.
inline void subscribe(pw_node* node, std::uint32_t param) {
    pw_node_subscribe_params(node, &param, 1);
}
inline void subscribe(pw_device* device, std::uint32_t param) {
    pw_device_subscribe_params(device, &param, 1);
}

inline void setParam(pw_node* node, std::uint32_t param, const spa_pod* pod) {
    pw_node_set_param(node, param, 0, pod);
}
inline void setParam(pw_device* device, std::uint32_t param, const spa_pod* pod) {
    pw_device_set_param(device, param, 0, pod);
}

inline void setProperty(pw_metadata* metadata, std::uint32_t subject, const char* key,
                        const char* type, const char* value) {
    pw_metadata_set_property(metadata, subject, key, type, value);
}

} // namespace tavero::PipeWireCalls

#pragma GCC diagnostic pop
