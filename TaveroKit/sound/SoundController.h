#pragma once

#include "platform/AudioObjects.h"
#include "records/SoundSnapshot.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The devices of the system, and the volume of what it plays to and records from. Nothing is kept:
// each call asks again, and what can't be changed stays as it is. From any thread.
namespace tavero::SoundController {

// The UIDs of the devices that Tavero itself makes begin with this. They are never listed.
inline constexpr std::string_view ownPrefix = "com.brimfold.tavero.";

// The default output, its volume, and all outputs.
SoundSnapshot read(AudioObjects& objects);

// A device's name is "Output" and its uid empty where they can't be read.
std::vector<AudioOutput> outputs(AudioObjects& objects);
std::vector<AudioOutput> inputs(AudioObjects& objects);
// Absent if there is no default, or it has no UID.
std::optional<std::string> defaultOutputUID(AudioObjects& objects);
std::optional<AudioObjectID> defaultInputID(AudioObjects& objects);

// Of the default output; the volume a fraction, cut to 0...1.
void setVolume(AudioObjects& objects, double volume);
void setMuted(AudioObjects& objects, bool muted);

// Make a device the default.
void setOutput(AudioObjects& objects, AudioObjectID device);
void setInput(AudioObjects& objects, AudioObjectID device);

// Of an input. Absent if it has none, or it can't be read.
std::optional<double> inputVolume(AudioObjects& objects, AudioObjectID device);
std::optional<bool> isInputMuted(AudioObjects& objects, AudioObjectID device);
void setInputVolume(AudioObjects& objects, double volume, AudioObjectID device);
void setInputMuted(AudioObjects& objects, bool muted, AudioObjectID device);

} // namespace tavero::SoundController
