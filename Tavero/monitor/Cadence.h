#pragma once

#include "MonitorEngine.h"

#include <chrono>
#include <cstdint>

namespace tavero {

// What is on screen: a compact surface (dropdown, notch) or a full window.
enum class ViewKind { compact, window };

// How deep and how often to look, from one fact: which surfaces are on screen.
class Cadence {
  public:
    // One pass, as the engine is asked for it.
    struct Pass {
        MonitorEngine::Detail detail = MonitorEngine::Detail::light;
        std::int64_t topApps = 0;
        bool threads = false;

        bool operator==(const Pass&) const = default;
    };

    // True if this is the first surface to open, which wants fresh figures at once.
    bool appeared(ViewKind kind);
    void disappeared(ViewKind kind);

    std::int64_t visibleViews() const { return visibleViews_; }
    std::int64_t visibleWindows() const { return visibleWindows_; }

    // The pass to take now. With nothing open every twelfth is full, the first one included.
    Pass nextPass();

    // How long to wait after a pass. `refreshSeconds` below 1 counts as 1.
    std::chrono::seconds wait(std::int64_t refreshSeconds, bool savingEnergy) const;

  private:
    MonitorEngine::Detail nextDetail();

    std::int64_t visibleViews_ = 0;
    std::int64_t visibleWindows_ = 0;
    std::int64_t closedSamples_ = 0; // passes taken with nothing open, never reset
};

} // namespace tavero
