#pragma once

#include "platform/AudioTapSource.h"

#include <atomic>
#include <cstdint>
#include <span>

namespace tavero {

// Samples of one stream, the channels of a frame side by side. The layout is that of Core Audio's
// AudioBuffer.
struct AudioBuffer {
    std::uint32_t channels = 0;
    std::uint32_t bytes = 0;
    float* data = nullptr; // null if the stream is off
};

// The one block of work that each cycle of a tap does: measures the input and writes it to the
// output times the gain. Takes any layout; what the input lacks is silence. Real-time: it allocates
// nothing, takes no lock and never waits.
//
// The level is the largest magnitude of the input that was used, before the gain; it raises `peak`
// and `recent` and replaces `latest`. A sample that is no number is silence; no output is louder
// than gain times input.
void render(std::span<const AudioBuffer> input, std::span<const AudioBuffer> output, float gain,
            std::atomic<float>& peak, std::atomic<float>& recent, std::atomic<float>& latest);

} // namespace tavero
