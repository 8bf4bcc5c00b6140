#pragma once

#include "platform/AudioObjects.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// The two reads that all of sound shares.
namespace tavero::AudioProperty {

// A list of 32-bit values. Empty if it is, or can't be read.
std::vector<std::uint32_t> array(AudioObjects& objects, AudioObjectID object,
                                 std::uint32_t selector, std::uint32_t scope = AudioScope::global);

// Absent if it can't be read.
std::optional<std::string> string(AudioObjects& objects, AudioObjectID object,
                                  std::uint32_t selector);

} // namespace tavero::AudioProperty
