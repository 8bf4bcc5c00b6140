#pragma once

#include "platform/sim/SimAudio.h"

#include <cstdint>
#include <map>
#include <vector>

namespace tavero {

// What was heard at each device: the amplitude on each of its channels, before the volume of the
// device itself. A sample that is no number counts as infinitely loud.
using SimAudioHeard = std::map<AudioObjectID, std::vector<float>>;

// Plays this many frames. What plays goes to its device, unless a tap mutes it; the blocks of the
// aggregates that run get what their taps took, and what they write goes to their device. The
// microphone of a device comes before its taps, and is as loud as can be. All tones are in step, so
// that their amplitudes add up.
SimAudioHeard simAudioCycle(const SimAudio& audio, std::uint32_t frames);

} // namespace tavero
