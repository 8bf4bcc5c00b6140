#pragma once

#include "platform/AudioTapSource.h"
#include "platform/linux/sound/PipeWireGraph.h"

#include <memory>

namespace tavero {

// Taps of what apps play by PipeWire. Its processes play wherever they are sent, so that a tap is
// always of all that they play, whatever output the request names as theirs.
//
// The steps of a failure are: `tap` is the side that hears the app, `aggregate` the output and the
// stream that plays to it, `start` the service's answer. The status is a negative errno.
class PipeWireTaps final : public AudioTapSource {
  public:
    explicit PipeWireTaps(std::shared_ptr<PipeWireGraph> graph);

    // PipeWire keeps nothing from whoever listens. So an app that is silent just is: one that waits
    // for a call, for example, plays silence for hours.
    bool canBeDenied() const override { return false; }

    // Waits for the service's answer, a few milliseconds and at most 100.
    Result start(const TapRequest& request, TapCells& cells) override;

  private:
    std::shared_ptr<PipeWireGraph> graph_;
};

} // namespace tavero
