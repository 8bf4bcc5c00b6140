#include "sound/SoundController.h"

#include "sound/AudioProperty.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace tavero::SoundController {

namespace {

constexpr std::uint32_t whole = 0; // the element of a device's main control
constexpr std::array<std::uint32_t, 2> channels{1, 2};

// What the system says is a default, if there is one.
std::optional<AudioObjectID> defaultDevice(AudioObjects& objects, std::uint32_t selector) {
    const std::optional<AudioObjectID> device = objects.word(audioSystem, {selector});
    return device == 0u ? std::nullopt : device; // 0 is no object
}

std::optional<AudioObjectID> defaultOutput(AudioObjects& objects) {
    return defaultDevice(objects, AudioSelector::defaultOutput);
}

AudioOutput describe(AudioObjects& objects, AudioObjectID device) {
    return {
        .id = device,
        .name = AudioProperty::string(objects, device, AudioSelector::name).value_or("Output"),
        .uid = AudioProperty::string(objects, device, AudioSelector::uid).value_or(""),
        .transport = audioTransport(objects.word(device, {AudioSelector::transport}).value_or(0)),
    };
}

std::vector<AudioOutput> devices(AudioObjects& objects, std::uint32_t scope) {
    std::vector<AudioOutput> devices;
    for (const AudioObjectID device :
         AudioProperty::array(objects, audioSystem, AudioSelector::devices))
        if (!AudioProperty::array(objects, device, AudioSelector::streams, scope).empty())
            devices.push_back(describe(objects, device));
    std::erase_if(devices, [](const AudioOutput& d) { return d.uid.starts_with(ownPrefix); });
    return devices;
}

std::optional<float> volume(AudioObjects& objects, AudioObjectID device, std::uint32_t scope,
                            std::uint32_t element) {
    const AudioAddress address{AudioSelector::volume, scope, element};
    if (!objects.has(device, address)) return std::nullopt;
    const std::optional<float> volume = objects.real(device, address);
    return volume && std::isfinite(*volume) ? volume : std::nullopt;
}

std::optional<double> volume(AudioObjects& objects, AudioObjectID device, std::uint32_t scope) {
    if (const auto main = volume(objects, device, scope, whole)) return *main;
    double sum = 0;
    int count = 0;
    for (const std::uint32_t channel : channels)
        if (const auto one = volume(objects, device, scope, channel)) {
            sum += static_cast<double>(*one);
            ++count;
        }
    return count > 0 ? std::optional(sum / count) : std::nullopt;
}

bool set(AudioObjects& objects, AudioObjectID device, const AudioAddress& address, auto value) {
    return objects.has(device, address) && objects.isSettable(device, address) &&
           objects.set(device, address, value);
}

// A main control that takes the volume leaves the channels' own alone.
void setVolume(AudioObjects& objects, AudioObjectID device, std::uint32_t scope, double volume) {
    if (std::isnan(volume)) return;
    const auto value = static_cast<float>(std::clamp(volume, 0.0, 1.0));
    if (set(objects, device, {AudioSelector::volume, scope, whole}, value)) return;
    for (const std::uint32_t channel : channels)
        set(objects, device, {AudioSelector::volume, scope, channel}, value);
}

std::optional<bool> isMuted(AudioObjects& objects, AudioObjectID device, std::uint32_t scope) {
    const AudioAddress address{AudioSelector::mute, scope};
    if (!objects.has(device, address)) return std::nullopt;
    const std::optional<std::uint32_t> muted = objects.word(device, address);
    return muted ? std::optional(*muted != 0) : std::nullopt;
}

void setMuted(AudioObjects& objects, AudioObjectID device, std::uint32_t scope, bool muted) {
    set(objects, device, {AudioSelector::mute, scope}, std::uint32_t{muted});
}

} // namespace

SoundSnapshot read(AudioObjects& objects) {
    SoundSnapshot sound{.outputs = outputs(objects)};
    const std::optional<AudioObjectID> device = defaultOutput(objects);
    if (!device) return sound;
    sound.output = describe(objects, *device);
    sound.volume = volume(objects, *device, AudioScope::output);
    sound.isMuted = isMuted(objects, *device, AudioScope::output).value_or(false);
    return sound;
}

std::vector<AudioOutput> outputs(AudioObjects& objects) {
    return devices(objects, AudioScope::output);
}

std::vector<AudioOutput> inputs(AudioObjects& objects) {
    return devices(objects, AudioScope::input);
}

std::optional<std::string> defaultOutputUID(AudioObjects& objects) {
    const std::optional<AudioObjectID> device = defaultOutput(objects);
    if (!device) return std::nullopt;
    const auto uid = AudioProperty::string(objects, *device, AudioSelector::uid);
    return uid == "" ? std::nullopt : uid;
}

std::optional<AudioObjectID> defaultInputID(AudioObjects& objects) {
    return defaultDevice(objects, AudioSelector::defaultInput);
}

void setVolume(AudioObjects& objects, double volume) {
    if (const std::optional<AudioObjectID> device = defaultOutput(objects))
        setVolume(objects, *device, AudioScope::output, volume);
}

void setMuted(AudioObjects& objects, bool muted) {
    if (const std::optional<AudioObjectID> device = defaultOutput(objects))
        setMuted(objects, *device, AudioScope::output, muted);
}

void setOutput(AudioObjects& objects, AudioObjectID device) {
    objects.set(audioSystem, {AudioSelector::defaultOutput}, device);
}

void setInput(AudioObjects& objects, AudioObjectID device) {
    objects.set(audioSystem, {AudioSelector::defaultInput}, device);
}

std::optional<double> inputVolume(AudioObjects& objects, AudioObjectID device) {
    return volume(objects, device, AudioScope::input);
}

std::optional<bool> isInputMuted(AudioObjects& objects, AudioObjectID device) {
    return isMuted(objects, device, AudioScope::input);
}

void setInputVolume(AudioObjects& objects, double volume, AudioObjectID device) {
    setVolume(objects, device, AudioScope::input, volume);
}

void setInputMuted(AudioObjects& objects, bool muted, AudioObjectID device) {
    setMuted(objects, device, AudioScope::input, muted);
}

} // namespace tavero::SoundController
