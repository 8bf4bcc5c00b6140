#include "platform/sim/SimAudioControl.h"

#include <algorithm>
#include <utility>

namespace tavero {

// Listens for as long as it lives.
class SimAudioControl::Listening final : public AudioListener {
  public:
    explicit Listening(std::shared_ptr<Listener> listener) : listener_(std::move(listener)) {}

  private:
    std::shared_ptr<Listener> listener_;
};

SimAudioControl::SimAudioControl(std::shared_ptr<SimTimeline> timeline)
    : timeline_(std::move(timeline)) {}

void SimAudioControl::change(const std::function<void(SimAudio&)>& change) {
    ask([&](SimAudio& audio) {
        change(audio);
        audio.settle();
    });
    tell();
}

SimAudio SimAudioControl::now() {
    return ask([](const SimAudio& audio) { return audio; });
}

void SimAudioControl::tell() {
    const auto due = ask([&](SimAudio& audio) {
        std::vector<std::weak_ptr<Listener>> changed;
        std::erase_if(listeners_, [](const auto& listener) { return listener.expired(); });
        for (const std::weak_ptr<Listener>& held : listeners_) {
            const std::shared_ptr<Listener> listener = held.lock();
            if (!listener) continue;
            const auto value = simAudioProperty(audio, listener->object, listener->address);
            // Of an object that is gone nothing is told.
            if (std::exchange(listener->told, value) != value && value) changed.push_back(held);
        }
        return changed;
    });
    // One may end another.
    for (const std::weak_ptr<Listener>& held : due)
        if (const std::shared_ptr<Listener> listener = held.lock()) listener->changed();
}

void SimAudioControl::cycle(std::uint32_t frames) {
    {
        const std::lock_guard lock(cycling_);
        heard_ = simAudioCycle(now(), frames);
    }
    tell();
}

float SimAudioControl::heard(const std::string& uid) {
    const std::vector<float> amplitudes = heardChannels(uid);
    const auto loudest = std::max_element(amplitudes.begin(), amplitudes.end());
    return loudest == amplitudes.end() ? 0 : *loudest;
}

std::vector<float> SimAudioControl::heardChannels(const std::string& uid) {
    const std::lock_guard lock(cycling_);
    const auto id = ask([&](const SimAudio& audio) {
        const SimAudioDevice* device = audio.device(uid);
        return device ? device->id : 0;
    });
    const auto found = heard_.find(id);
    return found == heard_.end() ? std::vector<float>() : found->second;
}

std::unique_ptr<AudioListener> SimAudioControl::listen(AudioObjectID object,
                                                       const AudioAddress& address,
                                                       std::function<void()> changed) {
    return ask([&](SimAudio& audio) -> std::unique_ptr<AudioListener> {
        if (!simAudioExists(audio, object)) return nullptr;
        auto listener =
            std::make_shared<Listener>(Listener{.object = object,
                                                .address = address,
                                                .changed = std::move(changed),
                                                .told = simAudioProperty(audio, object, address)});
        listeners_.push_back(listener);
        return std::make_unique<Listening>(std::move(listener));
    });
}

} // namespace tavero
