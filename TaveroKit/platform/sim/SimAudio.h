#pragma once

#include "platform/AudioCapturePermission.h"
#include "platform/AudioObjects.h"
#include "platform/mac/sound/MacAudioHardware.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace tavero {

// A volume, or a mute: 1 while it is on.
struct SimAudioKnob {
    float value = 1;
    bool isSettable = true;
};

// What a device has in one direction. A knob that it lacks is absent.
struct SimAudioSide {
    std::vector<std::uint32_t> streams; // the channels of each
    std::optional<SimAudioKnob> volume; // of the whole
    std::array<std::optional<SimAudioKnob>, 2> channelVolumes;
    std::optional<SimAudioKnob> mute;
};

// A device of the simulated Mac. What is absent, it doesn't tell.
struct SimAudioDevice {
    AudioObjectID id = 0;
    std::optional<std::string> name;
    std::optional<std::string> uid;
    std::optional<std::uint32_t> transport;
    SimAudioSide output;
    SimAudioSide input;
};

// A process that touched sound.
struct SimAudioProcess {
    AudioObjectID id = 0;
    std::optional<std::int32_t> pid;
    std::array<float, 2> loudness{}; // of its tone, left and right: the amplitude while it plays
    bool plays = false;
    bool records = false;
    bool isProtected = false;             // taps get silence for what it plays
    std::optional<std::string> deviceUID; // where it plays; absent, or gone: the default output
};

struct SimAudioTap {
    AudioObjectID id = 0;
    TapDescription description;
};

struct SimAudioIOProc {
    std::shared_ptr<const int> id; // its address is what the caller holds
    AudioIOBlock block;
    bool isStarted = false;
};

// A private device that this program made.
struct SimAudioAggregate {
    AudioObjectID id = 0;
    AggregateDescription description;
    std::uint32_t bufferFrames = 512;
    std::vector<SimAudioIOProc> procs;
    bool isRunning = false;

    bool isStarted() const;
};

// The calls of MacAudioHardware that can fail.
enum class SimAudioCall {
    createTap,
    destroyTap,
    createAggregate,
    destroyAggregate,
    createIOProc,
    destroyIOProc,
    start,
    stop
};

// What the simulated Mac tells of sound, in the form its calls have.
struct SimAudio {
    std::vector<SimAudioDevice> devices;
    AudioObjectID defaultOutput = 0; // 0 if there is none
    AudioObjectID defaultInput = 0;
    std::vector<SimAudioProcess> processes;
    // What is there, and yet can't be read.
    std::set<std::pair<AudioObjectID, AudioAddress>> refused;

    AudioCapturePermission::Status permission = AudioCapturePermission::Status::notAsked;
    bool userAllows = true; // what the user says when asked

    // What this program made, in the order of making. Empty once all of it is destroyed.
    std::vector<SimAudioTap> taps;
    std::vector<SimAudioAggregate> aggregates;
    std::map<SimAudioCall, std::int32_t> failures; // the next such call fails with this status
    AudioObjectID nextObject = 100'000;            // the id of what is made next
    std::uint64_t nextUUID = 1;

    bool hasLeftovers() const { return !taps.empty() || !aggregates.empty(); }

    // Null if there is none.
    SimAudioDevice* device(AudioObjectID id);
    const SimAudioDevice* device(const std::string& uid) const;
    SimAudioProcess* process(AudioObjectID id);
    SimAudioAggregate* aggregate(AudioObjectID id);
    const SimAudioTap* tap(const std::string& uuid) const;
    // The device that a process plays to.
    const SimAudioDevice* destination(const SimAudioProcess& process) const;
    // Whether what a process plays goes through a tap.
    bool passes(const SimAudioProcess& process, const SimAudioTap& tap) const;

    // Draws the consequences of what was set. A default that is gone falls to another device, the
    // built-in one first. A started aggregate runs from when its tapped app first plays to when it
    // is stopped or its device goes.
    void settle();
    // The processes with these pids are gone.
    void end(const std::set<std::int32_t>& pids);

  private:
    bool canRun(const SimAudioAggregate& aggregate) const;
    bool passesNow(const SimAudioAggregate& aggregate) const;
};

// This program on the simulated Mac.
constexpr std::int32_t simOwnPid = 4999;

// Its devices; the volumes are those of a quiet room.
SimAudioDevice simSpeakers();   // with one volume for both channels
SimAudioDevice simMicrophone(); // of the laptop
SimAudioDevice simDisplay();    // without a volume of its own
SimAudioDevice simEarbuds(AudioObjectID id, const std::string& name, const std::string& uid);

} // namespace tavero
