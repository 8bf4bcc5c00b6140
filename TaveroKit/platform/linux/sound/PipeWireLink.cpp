#include "platform/linux/sound/PipeWireLink.h"

#include <pipewire/pipewire.h>

#include <utility>

namespace tavero {

const pw_proxy_events PipeWireLink::events = [] {
    pw_proxy_events told{};
    told.version = PW_VERSION_PROXY_EVENTS;
    told.removed = [](void* self) { static_cast<PipeWireLink*>(self)->end(); };
    told.error = [](void* self, int, int, const char*) { static_cast<PipeWireLink*>(self)->end(); };
    return told;
}();

std::unique_ptr<PipeWireLink> PipeWireLink::make(pw_core* core, const SoundPort& out,
                                                 const SoundPort& in, bool isPassive) {
    pw_properties* properties = pw_properties_new(nullptr, nullptr);
    pw_properties_setf(properties, PW_KEY_LINK_OUTPUT_NODE, "%u", out.node);
    pw_properties_setf(properties, PW_KEY_LINK_OUTPUT_PORT, "%u", out.id);
    pw_properties_setf(properties, PW_KEY_LINK_INPUT_NODE, "%u", in.node);
    pw_properties_setf(properties, PW_KEY_LINK_INPUT_PORT, "%u", in.id);
    if (isPassive) pw_properties_set(properties, PW_KEY_LINK_PASSIVE, "true");
    void* proxy = pw_core_create_object(core, "link-factory", PW_TYPE_INTERFACE_Link,
                                        PW_VERSION_LINK, &properties->dict, 0);
    pw_properties_free(properties);
    return proxy ? std::make_unique<PipeWireLink>(static_cast<pw_proxy*>(proxy)) : nullptr;
}

PipeWireLink::PipeWireLink(pw_proxy* proxy) : proxy_(proxy) {
    pw_proxy_add_listener(proxy_, &hook_, &events, this);
}

PipeWireLink::~PipeWireLink() { end(); }

void PipeWireLink::end() {
    if (!proxy_) return;
    spa_hook_remove(&hook_);
    pw_proxy_destroy(std::exchange(proxy_, nullptr));
}

} // namespace tavero
