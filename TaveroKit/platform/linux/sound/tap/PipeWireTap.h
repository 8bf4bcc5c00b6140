#pragma once

#include "platform/AudioTapSource.h"
#include "platform/linux/sound/PipeWireGraph.h"
#include "platform/linux/sound/tap/TapPath.h"

#include <memory>
#include <optional>
#include <string>

namespace tavero {

// All that some processes play, streams to come included, sent through Tavero for as long as this
// lives or the service does. If this program dies the service sends the sound back by itself.
class PipeWireTap final : public RunningTap, private PipeWireObserver {
  public:
    explicit PipeWireTap(std::shared_ptr<PipeWireGraph> graph);
    ~PipeWireTap() override;
    PipeWireTap(const PipeWireTap&) = delete;
    PipeWireTap& operator=(const PipeWireTap&) = delete;

    // Once. `name` is the virtual output's. After a failure this is to be destroyed.
    std::optional<TapFailure> open(const std::string& name, const TapRequest& request,
                                   TapCells& cells);
    bool isRunning() override;

  private:
    void disconnected() override { path_.reset(); }

    std::shared_ptr<PipeWireGraph> graph_;
    std::unique_ptr<TapPath> path_; // null when the service has gone
    std::optional<PipeWireGraph::RedirectID> redirect_;
};

} // namespace tavero
