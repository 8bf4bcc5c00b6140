#pragma once

#include "platform/sim/SimAudioCycle.h"
#include "platform/sim/SimAudioProperties.h"
#include "platform/sim/SimTimeline.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace tavero {

// The sound of the simulated Mac as a whole: whoever holds it changes it, lets it play, and hears
// it. What listens to properties is told here and nowhere else, on the calling thread: at the end
// of change() and cycle(), and by tell(). From any thread.
class SimAudioControl {
  public:
    explicit SimAudioControl(std::shared_ptr<SimTimeline> timeline);

    // What `change` writes is what the Mac answers from then on. It must not ask the Mac.
    void change(const std::function<void(SimAudio&)>& change);
    // As it is now.
    SimAudio now();
    // Calls whoever listens to a property whose value isn't the one of the last time. For changes
    // that came by time, by SimMachine::state(), or by a call of this program.
    void tell();

    // One cycle of the hardware. Nothing is heard or measured without one. The demo calls it some
    // twenty times a second.
    void cycle(std::uint32_t frames = 512);
    // What a listener at the device heard in the last cycle: the amplitude on its loudest channel,
    // before the volume of the device itself. 0 for one that wasn't there.
    float heard(const std::string& uid);
    // The same of each of its channels.
    std::vector<float> heardChannels(const std::string& uid);

    // For the seams. `ask` gets the SimAudio of this moment.
    template <typename Ask>
    auto ask(Ask ask) {
        return timeline_->read([&](SimState& state) {
            state.audio.settle();
            return ask(state.audio);
        });
    }
    std::unique_ptr<AudioListener> listen(AudioObjectID object, const AudioAddress& address,
                                          std::function<void()> changed);
    // Waits until no cycle is under way.
    void waitForCycle() { const std::lock_guard lock(cycling_); }

  private:
    struct Listener {
        AudioObjectID object;
        AudioAddress address;
        std::function<void()> changed;
        std::optional<SimAudioProperty> told;
    };
    class Listening;

    std::shared_ptr<SimTimeline> timeline_;
    std::vector<std::weak_ptr<Listener>> listeners_; // with the timeline's lock
    std::mutex cycling_;
    SimAudioHeard heard_;
};

} // namespace tavero
