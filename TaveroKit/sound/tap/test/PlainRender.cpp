#include "sound/tap/test/PlainRender.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace tavero::test {

namespace {

// A frame of an input channel by its number in the whole list. 0 if there is none, or no number.
float sampleOf(std::span<const AudioBuffer> input, std::uint64_t number, std::uint64_t frame) {
    for (const AudioBuffer& buffer : input) {
        if (number >= buffer.channels) {
            number -= buffer.channels;
            continue;
        }
        if (!buffer.data || frame >= buffer.bytes / (4ull * buffer.channels)) return 0;
        const float sample = buffer.data[frame * buffer.channels + number];
        return std::isfinite(sample) ? sample : 0;
    }
    return 0;
}

} // namespace

float plainRender(std::span<const AudioBuffer> input, std::span<const AudioBuffer> output,
                  float gain) {
    gain = std::isnan(gain) ? 0 : std::clamp(gain, 0.0f, 1.0f);
    std::uint64_t inChannels = 0;
    for (const AudioBuffer& buffer : input) inChannels += buffer.channels;

    float level = 0;
    std::uint64_t outIndex = 0;
    for (const AudioBuffer& buffer : output) {
        if (!buffer.data) continue;
        const std::uint64_t channels = std::max(buffer.channels, 1u);
        const std::uint64_t frames = buffer.bytes / (4 * channels);
        for (std::uint64_t channel = 0; channel < channels; ++channel, ++outIndex)
            for (std::uint64_t frame = 0; frame < frames; ++frame) {
                const float sample =
                    inChannels > 0 ? sampleOf(input, outIndex % inChannels, frame) : 0;
                level = std::max(level, std::abs(sample));
                buffer.data[frame * channels + channel] = sample * gain;
            }
    }
    return level;
}

} // namespace tavero::test
