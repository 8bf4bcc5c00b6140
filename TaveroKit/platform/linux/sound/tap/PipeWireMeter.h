#pragma once

#include "platform/AudioTapSource.h"
#include "platform/linux/sound/PipeWireGraph.h"
#include "platform/linux/sound/tap/CaptureStage.h"
#include "platform/linux/sound/tap/StereoStream.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tavero {

// Hears what some processes play, beside their own way to an output, and changes nothing of it. The
// streams of an app are summed, as an output would; the level is that of the sum. Streams to come
// are heard as well. Off for good once the service has gone.
class PipeWireMeter final : public RunningTap, private PipeWireObserver {
  public:
    PipeWireMeter(std::shared_ptr<PipeWireGraph> graph, std::vector<AudioObjectID> processObjects,
                  TapCells& cells);
    ~PipeWireMeter() override;
    PipeWireMeter(const PipeWireMeter&) = delete;
    PipeWireMeter& operator=(const PipeWireMeter&) = delete;

    // Once. After a failure this is to be destroyed.
    std::optional<TapFailure> open(const std::string& name);
    bool isRunning() override;

  private:
    using Ports = std::pair<std::uint32_t, std::uint32_t>; // the app's, and ours

    void disconnected() override;
    void streamAppeared(const SoundNode& stream) override { listen(stream); }
    void streamGone(std::uint32_t) override { forgetGonePorts(); }
    void portAppeared(const SoundPort& port) override;
    void listen(const SoundNode& stream);
    void forgetGonePorts();
    void hear();

    std::shared_ptr<PipeWireGraph> graph_;
    std::vector<AudioObjectID> processObjects_;
    CaptureStage stage_;
    std::optional<StereoStream> stream_; // absent when the service has gone
    std::map<Ports, std::unique_ptr<PipeWireGraph::Link>> links_;
};

} // namespace tavero
