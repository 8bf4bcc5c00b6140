#pragma once

#include "platform/AudioCapturePermission.h"
#include "platform/AudioObjects.h"
#include "platform/AudioProcesses.h"
#include "platform/AudioTapSource.h"
#include "platform/TaskQueue.h"

#include <functional>
#include <memory>

namespace tavero {

// The sound of a machine: all of it is there, or nothing.
struct AudioSystem {
    std::shared_ptr<AudioObjects> objects;
    std::shared_ptr<AudioProcesses> processes;
    std::shared_ptr<AudioTapSource> taps;
    std::shared_ptr<AudioCapturePermission> permission;
    // Makes the queue on which news of processes is awaited. Empty if the main thread serves.
    std::function<std::unique_ptr<TaskQueue>()> makeQueue;
};

// That of this machine. Not part of Machine::host(), since it is a connection that stays open; all
// null on a machine that can have no sound. Defined by the one platform that is linked in.
AudioSystem hostAudio();

} // namespace tavero
