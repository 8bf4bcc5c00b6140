#pragma once

#include "platform/linux/sound/SoundGraph.h"

#include <cstdint>

namespace tavero {

// How a device is attached, in the codes of `audioTransport`. 0 if nothing tells.
std::uint32_t transportCode(const SoundNode& node);

} // namespace tavero
