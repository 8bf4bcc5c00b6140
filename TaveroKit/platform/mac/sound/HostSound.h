#pragma once

#include "platform/AudioObjects.h"
#include "platform/TaskQueue.h"
#include "platform/mac/sound/MacAudioHardware.h"
#include "platform/mac/sound/PrivacyDatabase.h"

#include <memory>

namespace tavero {

// The seams of this Mac's sound.
std::shared_ptr<AudioObjects> hostAudioObjects();
std::shared_ptr<MacAudioHardware> hostAudioHardware();
std::unique_ptr<PrivacyCalls> hostPrivacyCalls();
// A fresh queue for the news of who plays.
std::unique_ptr<TaskQueue> hostAudioQueue();

} // namespace tavero
