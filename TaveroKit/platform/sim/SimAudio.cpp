#include "platform/sim/SimAudio.h"

#include <algorithm>

namespace tavero {

namespace {

constexpr std::uint32_t builtIn = fourCC("bltn");

template <typename Things, typename Is>
auto find(Things& things, Is is) -> decltype(things.data()) {
    const auto found = std::find_if(things.begin(), things.end(), is);
    return found == things.end() ? nullptr : &*found;
}

AudioObjectID fallback(const std::vector<SimAudioDevice>& devices,
                       SimAudioSide SimAudioDevice::*side) {
    const SimAudioDevice* chosen = nullptr;
    for (const SimAudioDevice& device : devices) {
        if ((device.*side).streams.empty()) continue;
        if (!chosen || (chosen->transport != builtIn && device.transport == builtIn))
            chosen = &device;
    }
    return chosen ? chosen->id : 0;
}

void settleDefault(AudioObjectID& id, const std::vector<SimAudioDevice>& devices,
                   SimAudioSide SimAudioDevice::*side) {
    const bool stands = std::any_of(devices.begin(), devices.end(), [&](const auto& device) {
        return device.id == id && !(device.*side).streams.empty();
    });
    if (!stands) id = fallback(devices, side);
}

} // namespace

bool SimAudioAggregate::isStarted() const {
    return std::any_of(procs.begin(), procs.end(), [](const auto& proc) { return proc.isStarted; });
}

SimAudioDevice* SimAudio::device(AudioObjectID id) {
    return find(devices, [&](const auto& device) { return device.id == id; });
}

const SimAudioDevice* SimAudio::device(const std::string& uid) const {
    return find(devices, [&](const auto& device) { return device.uid == uid; });
}

SimAudioProcess* SimAudio::process(AudioObjectID id) {
    return find(processes, [&](const auto& process) { return process.id == id; });
}

SimAudioAggregate* SimAudio::aggregate(AudioObjectID id) {
    return find(aggregates, [&](const auto& aggregate) { return aggregate.id == id; });
}

const SimAudioTap* SimAudio::tap(const std::string& uuid) const {
    return find(taps, [&](const auto& tap) { return tap.description.uuid == uuid; });
}

const SimAudioDevice* SimAudio::destination(const SimAudioProcess& process) const {
    if (process.deviceUID)
        if (const SimAudioDevice* chosen = device(*process.deviceUID)) return chosen;
    return find(devices, [&](const auto& device) { return device.id == defaultOutput; });
}

bool SimAudio::passes(const SimAudioProcess& process, const SimAudioTap& tap) const {
    const std::vector<AudioObjectID>& tapped = tap.description.processes;
    if (std::find(tapped.begin(), tapped.end(), process.id) == tapped.end()) return false;
    const SimAudioDevice* device = destination(process);
    return device && (!tap.description.deviceUID || device->uid == tap.description.deviceUID);
}

void SimAudio::settle() {
    settleDefault(defaultOutput, devices, &SimAudioDevice::output);
    settleDefault(defaultInput, devices, &SimAudioDevice::input);
    for (SimAudioAggregate& aggregate : aggregates)
        aggregate.isRunning =
            canRun(aggregate) &&
            (aggregate.isRunning || !aggregate.description.tapAutoStart || passesNow(aggregate));
    for (SimAudioProcess& own : processes)
        if (own.pid == simOwnPid)
            own.plays = std::any_of(aggregates.begin(), aggregates.end(),
                                    [](const auto& aggregate) { return aggregate.isRunning; });
}

bool SimAudio::canRun(const SimAudioAggregate& aggregate) const {
    const std::vector<std::string>& uids = aggregate.description.subdevices;
    return aggregate.isStarted() && std::all_of(uids.begin(), uids.end(), [&](const auto& uid) {
               return device(uid) != nullptr;
           });
}

// Whether something plays into a tap of it.
bool SimAudio::passesNow(const SimAudioAggregate& aggregate) const {
    for (const AggregateDescription::Tap& part : aggregate.description.taps)
        if (const SimAudioTap* source = tap(part.uid))
            for (const SimAudioProcess& process : processes)
                if (process.plays && passes(process, *source)) return true;
    return false;
}

void SimAudio::end(const std::set<std::int32_t>& pids) {
    std::erase_if(processes,
                  [&](const auto& process) { return process.pid && pids.contains(*process.pid); });
}

SimAudioDevice simSpeakers() {
    return {.id = 41,
            .name = "MacBook Pro Speakers",
            .uid = "BuiltInSpeakerDevice",
            .transport = builtIn,
            .output = {.streams = {2},
                       .volume = SimAudioKnob{.value = 0.44f},
                       .mute = SimAudioKnob{.value = 0}}};
}

SimAudioDevice simMicrophone() {
    return {.id = 42,
            .name = "MacBook Pro Microphone",
            .uid = "BuiltInMicrophoneDevice",
            .transport = builtIn,
            .input = {.streams = {1},
                      .volume = SimAudioKnob{.value = 0.7f},
                      .mute = SimAudioKnob{.value = 0}}};
}

SimAudioDevice simDisplay() {
    return {.id = 45,
            .name = "Desk Display",
            .uid = "5E1D-D15P-1A7",
            .transport = fourCC("dprt"),
            .output = {.streams = {2}}};
}

SimAudioDevice simEarbuds(AudioObjectID id, const std::string& name, const std::string& uid) {
    return {.id = id,
            .name = name,
            .uid = uid,
            .transport = fourCC("blue"),
            .output = {.streams = {2},
                       .volume = SimAudioKnob{.value = 0.5f},
                       .mute = SimAudioKnob{.value = 0}}};
}

} // namespace tavero
