#pragma once

#include "records/SoundSnapshot.h"

#include <optional>
#include <string_view>

// What the small surfaces of sound share.
namespace tavero::CompactSoundPanel {

// The name of an output's symbol: by what it is called, or else by how it is attached.
std::string_view symbol(const std::optional<AudioOutput>& output);

} // namespace tavero::CompactSoundPanel
