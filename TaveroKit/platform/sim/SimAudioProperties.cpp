#include "platform/sim/SimAudioProperties.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace tavero {

namespace {

using Property = std::optional<SimAudioProperty>;

Property readable(SimAudioValue value) { return SimAudioProperty{.value = std::move(value)}; }
Property settable(SimAudioValue value) {
    return SimAudioProperty{.isSettable = true, .value = std::move(value)};
}
Property word(bool value) { return readable(std::uint32_t{value}); }

template <typename Value>
Property ifTold(const std::optional<Value>& value) {
    return value ? readable(*value) : std::nullopt;
}

template <typename Things>
std::vector<std::uint32_t> ids(const Things& things) {
    std::vector<std::uint32_t> all;
    all.reserve(things.size());
    for (const auto& thing : things) all.push_back(thing.id);
    return all;
}

// Streams are objects too, but nobody asks them anything.
Property streams(AudioObjectID object, std::size_t count) {
    std::vector<std::uint32_t> all;
    for (std::uint32_t i = 0; i < count; ++i) all.push_back(0x40000000 + object * 16 + i);
    return readable(std::move(all));
}

SimAudioSide* side(SimAudioDevice& device, std::uint32_t scope) {
    return scope == AudioScope::output  ? &device.output
           : scope == AudioScope::input ? &device.input
                                        : nullptr;
}

// Null if the device lacks it.
SimAudioKnob* knob(SimAudioDevice& device, const AudioAddress& address) {
    SimAudioSide* has = side(device, address.scope);
    if (!has) return nullptr;
    std::optional<SimAudioKnob>* found = nullptr;
    if (address.selector == AudioSelector::mute && address.element == 0) found = &has->mute;
    if (address.selector == AudioSelector::volume && address.element == 0) found = &has->volume;
    if (address.selector == AudioSelector::volume && address.element >= 1 && address.element <= 2)
        found = &has->channelVolumes[address.element - 1];
    return found && *found ? &**found : nullptr;
}

Property ofSystem(const SimAudio& audio, std::uint32_t selector) {
    switch (selector) {
    case AudioSelector::devices: {
        std::vector<std::uint32_t> all = ids(audio.devices);
        for (std::uint32_t id : ids(audio.aggregates)) all.push_back(id);
        return readable(std::move(all));
    }
    case AudioSelector::processes:
        return readable(ids(audio.processes));
    case AudioSelector::defaultOutput:
        return settable(audio.defaultOutput);
    case AudioSelector::defaultInput:
        return settable(audio.defaultInput);
    default:
        return std::nullopt;
    }
}

bool isPlayedTo(const SimAudio& audio, const SimAudioDevice& device) {
    return std::any_of(audio.processes.begin(), audio.processes.end(), [&](const auto& process) {
        return process.plays && audio.destination(process) == &device;
    });
}

Property ofKnob(const SimAudioKnob& knob, bool isMute) {
    Property property = isMute ? word(knob.value != 0) : readable(knob.value);
    property->isSettable = knob.isSettable;
    return property;
}

Property ofDevice(const SimAudio& audio, SimAudioDevice& device, const AudioAddress& address) {
    if (const SimAudioKnob* found = knob(device, address))
        return ofKnob(*found, address.selector == AudioSelector::mute);
    if (address.element != 0) return std::nullopt;
    if (address.selector == AudioSelector::streams) {
        const SimAudioSide* has = side(device, address.scope);
        return has ? streams(device.id, has->streams.size()) : std::nullopt;
    }
    if (address.scope != AudioScope::global) return std::nullopt;
    switch (address.selector) {
    case AudioSelector::name:
        return ifTold(device.name);
    case AudioSelector::uid:
        return ifTold(device.uid);
    case AudioSelector::transport:
        return ifTold(device.transport);
    case AudioSelector::isRunning:
        return word(isPlayedTo(audio, device));
    default:
        return std::nullopt;
    }
}

// The streams of its devices and, as inputs, of its taps.
Property streamsOf(const SimAudio& audio, const SimAudioAggregate& aggregate, std::uint32_t scope) {
    std::size_t count = scope == AudioScope::input ? aggregate.description.taps.size() : 0;
    for (const std::string& uid : aggregate.description.subdevices)
        if (const SimAudioDevice* device = audio.device(uid))
            count += (scope == AudioScope::input ? device->input : device->output).streams.size();
    return streams(aggregate.id, count);
}

Property ofAggregate(const SimAudio& audio, const SimAudioAggregate& aggregate,
                     const AudioAddress& address) {
    if (address.element != 0) return std::nullopt;
    if (address.scope != AudioScope::global)
        return address.selector == AudioSelector::streams
                   ? streamsOf(audio, aggregate, address.scope)
                   : std::nullopt;
    switch (address.selector) {
    case AudioSelector::name:
        return readable(aggregate.description.name);
    case AudioSelector::uid:
        return readable(aggregate.description.uid);
    case AudioSelector::transport:
        return readable(fourCC("grup"));
    case AudioSelector::isRunning:
        return word(aggregate.isRunning);
    case AudioSelector::bufferFrameSize:
        return settable(aggregate.bufferFrames);
    default:
        return std::nullopt;
    }
}

Property ofProcess(const SimAudioProcess& process, std::uint32_t selector) {
    switch (selector) {
    case AudioSelector::processID:
        if (!process.pid) return std::nullopt;
        return readable(static_cast<std::uint32_t>(*process.pid));
    case AudioSelector::processIsRunning:
        return word(process.plays || process.records);
    case AudioSelector::processIsRunningOutput:
        return word(process.plays);
    case AudioSelector::processIsRunningInput:
        return word(process.records);
    default:
        return std::nullopt;
    }
}

Property found(SimAudio& audio, AudioObjectID object, const AudioAddress& address) {
    if (SimAudioDevice* device = audio.device(object)) return ofDevice(audio, *device, address);
    if (const SimAudioAggregate* aggregate = audio.aggregate(object))
        return ofAggregate(audio, *aggregate, address);
    if (address.scope != AudioScope::global || address.element != 0) return std::nullopt;
    if (object == audioSystem) return ofSystem(audio, address.selector);
    if (const SimAudioProcess* process = audio.process(object))
        return ofProcess(*process, address.selector);
    return std::nullopt;
}

bool setDefault(AudioObjectID& id, SimAudio& audio, SimAudioSide SimAudioDevice::*side,
                AudioObjectID chosen) {
    const SimAudioDevice* device = audio.device(chosen);
    if (!device || (device->*side).streams.empty()) return false;
    id = chosen;
    return true;
}

bool setWord(SimAudio& audio, AudioObjectID object, std::uint32_t selector, std::uint32_t value) {
    if (selector == AudioSelector::defaultOutput)
        return setDefault(audio.defaultOutput, audio, &SimAudioDevice::output, value);
    if (selector == AudioSelector::defaultInput)
        return setDefault(audio.defaultInput, audio, &SimAudioDevice::input, value);
    SimAudioAggregate* aggregate = audio.aggregate(object);
    if (!aggregate || value == 0) return false;
    aggregate->bufferFrames = value;
    return true;
}

} // namespace

std::optional<SimAudioProperty> simAudioProperty(SimAudio& audio, AudioObjectID object,
                                                 const AudioAddress& address) {
    Property property = found(audio, object, address);
    if (property && audio.refused.contains({object, address})) property->value.reset();
    return property;
}

bool simAudioSet(SimAudio& audio, AudioObjectID object, const AudioAddress& address,
                 const SimAudioValue& value) {
    const Property property = found(audio, object, address);
    if (!property || !property->isSettable || property->value->index() != value.index())
        return false;
    const std::uint32_t* word = std::get_if<std::uint32_t>(&value);
    if (SimAudioDevice* device = audio.device(object)) {
        SimAudioKnob& turned = *knob(*device, address); // nothing else of a device can be set
        turned.value = word ? static_cast<float>(*word != 0) : std::get<float>(value);
        return true;
    }
    return word && setWord(audio, object, address.selector, *word);
}

bool simAudioExists(SimAudio& audio, AudioObjectID object) {
    return object == audioSystem || audio.device(object) || audio.aggregate(object) ||
           audio.process(object);
}

} // namespace tavero
