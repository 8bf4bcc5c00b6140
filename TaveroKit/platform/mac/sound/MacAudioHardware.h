#pragma once

#include "platform/AudioObjects.h"
#include "sound/tap/Render.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tavero {

// What is asked of a process tap (CATapDescription).
struct TapDescription {
    // NSInteger on the Mac.
    enum class MuteBehavior { unmuted = 0, muted = 1 };

    std::vector<AudioObjectID> processes;
    // Absent: a stereo mixdown of all that they play. Else what they play to stream 0 of this
    // device.
    std::optional<std::string> deviceUID;
    std::string uuid;
    std::string name;
    bool isPrivate = false;
    MuteBehavior muteBehavior = MuteBehavior::unmuted;
};

// What is asked of an aggregate device; `main` is its "master".
struct AggregateDescription {
    struct Tap {
        std::string uid;
        bool drift = false;
    };

    std::string name;
    std::string uid;
    std::string main;
    bool isPrivate = false;
    bool isStacked = false;
    bool tapAutoStart = false;
    std::vector<std::string> subdevices; // UIDs
    std::vector<Tap> taps;
};

// Called on a real-time thread, once a cycle.
struct AudioIOBlock {
    void (*call)(void* context, std::span<const AudioBuffer> input,
                 std::span<const AudioBuffer> output) = nullptr;
    void* context = nullptr;
};

// The calls of Core Audio that make a tap run. Each gives the OSStatus that the call leaves, 0 on
// success. Main thread only.
class MacAudioHardware {
  public:
    using IOProcID = void*;

    virtual ~MacAudioHardware() = default;

    // A fresh UUID as text.
    virtual std::string makeUUID() = 0;

    // AudioHardwareCreateProcessTap and AudioHardwareDestroyProcessTap.
    virtual std::int32_t createTap(const TapDescription& description, AudioObjectID& tap) = 0;
    virtual std::int32_t destroyTap(AudioObjectID tap) = 0;

    // AudioHardwareCreateAggregateDevice and AudioHardwareDestroyAggregateDevice.
    virtual std::int32_t createAggregate(const AggregateDescription& description,
                                         AudioObjectID& device) = 0;
    virtual std::int32_t destroyAggregate(AudioObjectID device) = 0;

    // AudioDeviceCreateIOProcIDWithBlock and AudioDeviceDestroyIOProcID. The block runs on the
    // queue "com.brimfold.tavero.app-audio".
    virtual std::int32_t createIOProc(AudioObjectID device, AudioIOBlock block, IOProcID& proc) = 0;
    virtual std::int32_t destroyIOProc(AudioObjectID device, IOProcID proc) = 0;
    // AudioDeviceStart and AudioDeviceStop.
    virtual std::int32_t start(AudioObjectID device, IOProcID proc) = 0;
    virtual std::int32_t stop(AudioObjectID device, IOProcID proc) = 0;

    // Waits until no block runs on that queue. That AudioDeviceStop waits for one is not
    // documented.
    virtual void drain() = 0;
};

} // namespace tavero
