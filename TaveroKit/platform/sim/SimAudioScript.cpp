#include "platform/sim/SimAudioScript.h"

#include <algorithm>
#include <set>

namespace tavero {

namespace {

constexpr AudioObjectID firstProcess = 1000; // each is so much above its pid
constexpr AudioObjectID firstHeadphones = 61;
constexpr double right = 0.85; // how much quieter that side is

SimAudioProcess& audioProcess(SimAudio& audio, std::int32_t pid) {
    const auto id = firstProcess + static_cast<AudioObjectID>(pid);
    if (SimAudioProcess* known = audio.process(id)) return *known;
    return audio.processes.emplace_back(SimAudioProcess{.id = id, .pid = pid});
}

void moveProcesses(SimState& state, const Scenario& scenario, double elapsed) {
    std::set<std::int32_t> running;
    for (const SimProcess& process : state.processes) running.insert(process.pid);
    std::set<std::int32_t> gone;
    for (const Scenario::Process& process : scenario.processes) {
        if (!process.sound) continue;
        if (!running.contains(process.pid)) {
            gone.insert(process.pid);
            continue;
        }
        const double loudness = process.sound->loudness.at(elapsed);
        SimAudioProcess& moved = audioProcess(state.audio, process.pid);
        moved.loudness = {static_cast<float>(loudness), static_cast<float>(right * loudness)};
        moved.plays = process.sound->plays.isAlive(elapsed);
        moved.isProtected = process.sound->isProtected;
    }
    state.audio.end(gone);
}

std::string outputUID(std::string address) {
    std::replace(address.begin(), address.end(), ':', '-');
    return address + ":output";
}

void moveHeadphones(SimState& state, const Scenario& scenario) {
    AudioObjectID id = firstHeadphones;
    for (const Scenario::Bluetooth& script : scenario.bluetooth) {
        const AudioObjectID own = id++;
        if (!script.isOutput) continue;
        SimAudio& audio = state.audio;
        const bool isConnected =
            state.bluetooth.isOn &&
            std::any_of(state.bluetooth.devices.begin(), state.bluetooth.devices.end(),
                        [&](const auto& device) {
                            return device.isConnected && device.address == script.address;
                        });
        if (isConnected == (audio.device(own) != nullptr)) continue;
        if (isConnected) {
            audio.devices.push_back(simEarbuds(own, script.name, outputUID(script.address)));
            if (script.becomesDefault) audio.defaultOutput = own;
        } else {
            std::erase_if(audio.devices, [&](const auto& device) { return device.id == own; });
        }
    }
}

} // namespace

SimAudio simAudio() {
    SimAudio audio{.devices = {simSpeakers(), simMicrophone(), simDisplay()},
                   .permission = AudioCapturePermission::Status::granted};
    audio.settle();
    return audio;
}

void moveAudio(SimState& state, const Scenario& scenario, double elapsed) {
    moveHeadphones(state, scenario);
    moveProcesses(state, scenario, elapsed);
    state.audio.settle();
}

} // namespace tavero
