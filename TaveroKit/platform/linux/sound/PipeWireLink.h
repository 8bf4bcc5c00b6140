#pragma once

#include "platform/linux/sound/PipeWireGraph.h"

#include <spa/utils/hook.h>

#include <memory>

struct pw_proxy;
struct pw_proxy_events;

namespace tavero {

// A link of ours between two ports.
class PipeWireLink : public PipeWireGraph::Link {
  public:
    // Null if there is no connection any more.
    static std::unique_ptr<PipeWireLink> make(pw_core* core, const SoundPort& out,
                                              const SoundPort& in, bool isPassive);
    explicit PipeWireLink(pw_proxy* proxy);
    ~PipeWireLink() override;
    PipeWireLink(const PipeWireLink&) = delete;

  private:
    static const pw_proxy_events events;

    void end();

    pw_proxy* proxy_; // null once the service has taken the link back, or went itself
    spa_hook hook_{};
};

} // namespace tavero
