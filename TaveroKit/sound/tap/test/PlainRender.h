#pragma once

#include "sound/tap/Render.h"

#include <span>

namespace tavero::test {

// What render() is to do, sample by sample and without a thought for speed. Gives the level.
float plainRender(std::span<const AudioBuffer> input, std::span<const AudioBuffer> output,
                  float gain);

} // namespace tavero::test
