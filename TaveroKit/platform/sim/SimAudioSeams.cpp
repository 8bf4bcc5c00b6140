#include "platform/sim/SimAudioSeams.h"

#include <utility>

namespace tavero {

namespace {

class SimAudioObjects final : public AudioObjects {
  public:
    explicit SimAudioObjects(std::shared_ptr<SimAudioControl> control)
        : control_(std::move(control)) {}

    bool has(AudioObjectID object, const AudioAddress& address) override {
        return property(object, address).has_value();
    }
    bool isSettable(AudioObjectID object, const AudioAddress& address) override {
        const auto found = property(object, address);
        return found && found->isSettable;
    }
    std::optional<std::vector<std::uint32_t>> words(AudioObjectID object,
                                                    const AudioAddress& address) override {
        return read<std::vector<std::uint32_t>>(object, address);
    }
    std::optional<std::uint32_t> word(AudioObjectID object, const AudioAddress& address) override {
        return read<std::uint32_t>(object, address);
    }
    std::optional<float> real(AudioObjectID object, const AudioAddress& address) override {
        return read<float>(object, address);
    }
    std::optional<std::string> text(AudioObjectID object, const AudioAddress& address) override {
        return read<std::string>(object, address);
    }
    bool set(AudioObjectID object, const AudioAddress& address, std::uint32_t word) override {
        return write(object, address, word);
    }
    bool set(AudioObjectID object, const AudioAddress& address, float real) override {
        return write(object, address, real);
    }
    std::unique_ptr<AudioListener> listen(AudioObjectID object, const AudioAddress& address,
                                          std::function<void()> changed) override {
        return control_->listen(object, address, std::move(changed));
    }

  private:
    std::optional<SimAudioProperty> property(AudioObjectID object, const AudioAddress& address) {
        return control_->ask(
            [&](SimAudio& audio) { return simAudioProperty(audio, object, address); });
    }

    template <typename Value>
    std::optional<Value> read(AudioObjectID object, const AudioAddress& address) {
        const auto found = property(object, address);
        const Value* value = found && found->value ? std::get_if<Value>(&*found->value) : nullptr;
        return value ? std::optional(*value) : std::nullopt;
    }

    bool write(AudioObjectID object, const AudioAddress& address, const SimAudioValue& value) {
        return control_->ask(
            [&](SimAudio& audio) { return simAudioSet(audio, object, address, value); });
    }

    std::shared_ptr<SimAudioControl> control_;
};

class SimCapturePermission final : public AudioCapturePermission {
  public:
    explicit SimCapturePermission(std::shared_ptr<SimAudioControl> control)
        : control_(std::move(control)) {}

    Status status() override {
        return control_->ask([](const SimAudio& audio) { return audio.permission; });
    }
    void request(std::function<void(bool)> done) override {
        const Status status = control_->ask([](SimAudio& audio) {
            if (audio.permission == Status::notAsked)
                audio.permission = audio.userAllows ? Status::granted : Status::denied;
            return audio.permission;
        });
        done(status == Status::granted);
    }

  private:
    std::shared_ptr<SimAudioControl> control_;
};

} // namespace

std::shared_ptr<AudioObjects> simAudioObjects(std::shared_ptr<SimAudioControl> control) {
    return std::make_shared<SimAudioObjects>(std::move(control));
}

std::shared_ptr<AudioCapturePermission>
simCapturePermission(std::shared_ptr<SimAudioControl> control) {
    return std::make_shared<SimCapturePermission>(std::move(control));
}

} // namespace tavero
