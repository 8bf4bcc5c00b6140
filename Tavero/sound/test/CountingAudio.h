#pragma once

#include "platform/AudioObjects.h"

namespace tavero {

// Another audio system, and how often it was asked.
class CountingAudio final : public AudioObjects {
  public:
    explicit CountingAudio(AudioObjects& audio) : audio_(audio) {}

    int reads = 0;

    bool has(AudioObjectID object, const AudioAddress& address) override {
        ++reads;
        return audio_.has(object, address);
    }
    bool isSettable(AudioObjectID object, const AudioAddress& address) override {
        ++reads;
        return audio_.isSettable(object, address);
    }
    std::optional<std::vector<std::uint32_t>> words(AudioObjectID object,
                                                    const AudioAddress& address) override {
        ++reads;
        return audio_.words(object, address);
    }
    std::optional<std::uint32_t> word(AudioObjectID object, const AudioAddress& address) override {
        ++reads;
        return audio_.word(object, address);
    }
    std::optional<float> real(AudioObjectID object, const AudioAddress& address) override {
        ++reads;
        return audio_.real(object, address);
    }
    std::optional<std::string> text(AudioObjectID object, const AudioAddress& address) override {
        ++reads;
        return audio_.text(object, address);
    }
    bool set(AudioObjectID object, const AudioAddress& address, std::uint32_t word) override {
        return audio_.set(object, address, word);
    }
    bool set(AudioObjectID object, const AudioAddress& address, float real) override {
        return audio_.set(object, address, real);
    }
    [[nodiscard]] std::unique_ptr<AudioListener> listen(AudioObjectID object,
                                                        const AudioAddress& address,
                                                        std::function<void()> changed) override {
        return audio_.listen(object, address, std::move(changed));
    }

  private:
    AudioObjects& audio_;
};

} // namespace tavero
