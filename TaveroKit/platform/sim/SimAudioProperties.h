#pragma once

#include "platform/sim/SimAudio.h"

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace tavero {

// A property's value in the form that it has.
using SimAudioValue = std::variant<std::vector<std::uint32_t>, std::uint32_t, float, std::string>;

// A property of an object of the simulated Mac.
struct SimAudioProperty {
    bool isSettable = false;
    std::optional<SimAudioValue> value; // absent if it can't be read

    bool operator==(const SimAudioProperty&) const = default;
};

// Absent if there is no such object, or it has no such property.
std::optional<SimAudioProperty> simAudioProperty(SimAudio& audio, AudioObjectID object,
                                                 const AudioAddress& address);
// False if there is none, it can't be set, or has another form.
bool simAudioSet(SimAudio& audio, AudioObjectID object, const AudioAddress& address,
                 const SimAudioValue& value);
// Whether there is such an object.
bool simAudioExists(SimAudio& audio, AudioObjectID object);

} // namespace tavero
