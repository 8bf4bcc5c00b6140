#pragma once

#include "platform/AudioCapturePermission.h"
#include "platform/AudioObjects.h"
#include "platform/mac/sound/MacAudioHardware.h"
#include "platform/sim/SimAudioControl.h"

#include <memory>

namespace tavero {

// The calls of the simulated Mac's sound. Its user answers a prompt at once, and only once.
// Stopping does not wait for a cycle under way: only MacAudioHardware::drain() does.
std::shared_ptr<AudioObjects> simAudioObjects(std::shared_ptr<SimAudioControl> control);
std::shared_ptr<MacAudioHardware> simAudioHardware(std::shared_ptr<SimAudioControl> control);
std::shared_ptr<AudioCapturePermission>
simCapturePermission(std::shared_ptr<SimAudioControl> control);

} // namespace tavero
