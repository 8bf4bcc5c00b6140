#pragma once

#include "platform/linux/sound/tap/CaptureStage.h"
#include "platform/linux/sound/tap/StereoRing.h"
#include "platform/linux/sound/tap/StereoStream.h"

#include <optional>
#include <string>

namespace tavero {

// The way of an app's sound through Tavero: a virtual output that the app plays to, the gain, and a
// stream that plays what comes out to a real output. Both are scheduled as one, so that a block is
// played in the cycle that brought it, and the way adds no delay.
//
// An output and not a stream for the app to play to, since an app behind PulseAudio's protocol
// waits for an output before it starts. Made and destroyed with the loop locked.
class TapPath {
  public:
    // `name` is the virtual output's; what comes out goes to the output named `target`.
    TapPath(pw_core* core, const std::string& name, const std::string& target, TapCells& cells);
    ~TapPath();
    TapPath(const TapPath&) = delete;
    TapPath& operator=(const TapPath&) = delete;

    // Each 0, or a negative errno. The player first: the sink's work wakes it.
    int connectPlayer();
    int connectSink();

    const StereoStream& sink() const { return *sink_; }
    const StereoStream& player() const { return *player_; }

  private:
    void capture();
    void play();

    CaptureStage stage_;
    StereoRing ring_;
    // Always there. The sink was made first and ends first, also when the connection ends: its work
    // uses the player.
    std::optional<StereoStream> sink_;
    std::optional<StereoStream> player_;
};

} // namespace tavero
