#include "sound/tap/Render.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>
#include <type_traits>

namespace tavero {

namespace {

// Four samples at once. A plain loop would do, but no compiler turns a maximum of floats into
// vector code by itself. A vector library wouldn't do: it passes on a sample that is no number.
using Lanes = float __attribute__((vector_size(16)));
using Bits = std::int32_t __attribute__((vector_size(16)));
constexpr std::size_t laneCount = 4;

// Samples at even distances. `count` of them are there.
struct Strip {
    float* first = nullptr;
    std::size_t stride = 1;
    std::size_t count = 0;
};

std::size_t channelCount(const AudioBuffer& buffer) {
    return std::max<std::size_t>(buffer.channels, 1);
}

std::size_t frameCount(const AudioBuffer& buffer) {
    return buffer.bytes / sizeof(float) / channelCount(buffer);
}

Strip wholeStrip(const AudioBuffer& buffer) {
    return {buffer.data, 1, frameCount(buffer) * channelCount(buffer)};
}

Strip channelStrip(const AudioBuffer& buffer, std::size_t channel) {
    return {buffer.data + channel, channelCount(buffer), frameCount(buffer)};
}

// A channel of the input; null data if there is none of that number.
struct Source {
    const AudioBuffer* buffer = nullptr;
    std::size_t channel = 0;
};

Source find(std::span<const AudioBuffer> input, std::uint64_t number) {
    for (const AudioBuffer& buffer : input) {
        if (number < buffer.channels)
            return {buffer.data ? &buffer : nullptr, static_cast<std::size_t>(number)};
        number -= buffer.channels;
    }
    return {};
}

// With a stride known to be 1 the four are one load.
template <typename Stride>
Lanes load(const float* from, Stride stride) {
    if constexpr (std::is_same_v<Stride, std::size_t>) {
        return Lanes{from[0], from[stride], from[2 * stride], from[3 * stride]};
    } else {
        Lanes lanes;
        std::memcpy(&lanes, from, sizeof lanes);
        return lanes;
    }
}

template <typename Stride>
void store(Lanes lanes, float* to, Stride stride) {
    if constexpr (std::is_same_v<Stride, std::size_t>)
        for (std::size_t i = 0; i < laneCount; ++i) to[i * stride] = lanes[i];
    else
        std::memcpy(to, &lanes, sizeof lanes);
}

// Scales four samples and raises the levels to their magnitudes. What is infinite or no number
// isn't below infinity, and becomes 0.
Lanes scale(Lanes samples, float gain, Lanes& levels) {
    const Bits bits = std::bit_cast<Bits>(samples);
    const Bits magnitude = bits & std::numeric_limits<std::int32_t>::max();
    const Bits usable =
        std::bit_cast<Lanes>(magnitude) < Lanes{} + std::numeric_limits<float>::infinity();
    const Lanes magnitudes = std::bit_cast<Lanes>(magnitude & usable);
    levels = magnitudes > levels ? magnitudes : levels;
    return std::bit_cast<Lanes>(bits & usable) * gain;
}

float highest(Lanes lanes) {
    return std::max(std::max(lanes[0], lanes[1]), std::max(lanes[2], lanes[3]));
}

// Moves `count` samples and gives their level.
template <typename InStride, typename OutStride>
float move(const float* in, InStride inStride, float* out, OutStride outStride, std::size_t count,
           float gain) {
    Lanes even{};
    Lanes odd{}; // so that one maximum needn't wait for the last
    std::size_t i = 0;
    for (; i + 2 * laneCount <= count; i += 2 * laneCount) {
        const std::size_t j = i + laneCount;
        const Lanes first = scale(load(in + i * inStride, inStride), gain, even);
        const Lanes second = scale(load(in + j * inStride, inStride), gain, odd);
        store(first, out + i * outStride, outStride);
        store(second, out + j * outStride, outStride);
    }
    for (; i < count; ++i) out[i * outStride] = scale(Lanes{in[i * inStride]}, gain, even)[0];
    return std::max(highest(even), highest(odd));
}

void clear(Strip to) {
    if (to.stride == 1) {
        std::fill_n(to.first, to.count, 0.0f);
        return;
    }
    for (std::size_t i = 0; i < to.count; ++i) to.first[i * to.stride] = 0;
}

// Moves as many samples as both have, clears the rest, and gives the level of what was moved.
float move(Strip from, Strip to, float gain) {
    const std::integral_constant<std::size_t, 1> one;
    const std::size_t count = std::min(from.count, to.count);
    const float level = from.stride == 1 && to.stride == 1
                            ? move(from.first, one, to.first, one, count, gain)
                            : move(from.first, from.stride, to.first, to.stride, count, gain);
    if (count < to.count) clear({to.first + count * to.stride, to.stride, to.count - count});
    return level;
}

void raise(std::atomic<float>& cell, float level) {
    if (level > cell.load(std::memory_order_relaxed)) cell.store(level, std::memory_order_relaxed);
}

// Fills one output buffer, whose first channel has the number `index`, and gives the level of what
// it took.
float fill(const AudioBuffer& output, std::uint64_t index, std::span<const AudioBuffer> input,
           std::uint64_t inChannels, float gain) {
    if (frameCount(output) == 0) return 0;
    if (inChannels == 0) {
        clear(wholeStrip(output));
        return 0;
    }
    const std::size_t channels = channelCount(output);
    const Source first = find(input, index % inChannels);
    if (first.buffer && first.channel == 0 && first.buffer->channels == channels)
        return move(wholeStrip(*first.buffer), wholeStrip(output), gain);

    float level = 0;
    for (std::size_t channel = 0; channel < channels; ++channel) {
        const Source source = find(input, (index + channel) % inChannels);
        const Strip to = channelStrip(output, channel);
        if (source.buffer)
            level = std::max(level, move(channelStrip(*source.buffer, source.channel), to, gain));
        else
            clear(to);
    }
    return level;
}

} // namespace

void render(std::span<const AudioBuffer> input, std::span<const AudioBuffer> output, float gain,
            std::atomic<float>& peak, std::atomic<float>& recent, std::atomic<float>& latest) {
    const float safeGain = std::isnan(gain) ? 0 : std::clamp(gain, 0.0f, 1.0f);
    std::uint64_t inChannels = 0;
    for (const AudioBuffer& buffer : input) inChannels += buffer.channels;

    float level = 0;
    std::uint64_t index = 0;
    for (const AudioBuffer& buffer : output) {
        if (!buffer.data) continue;
        level = std::max(level, fill(buffer, index, input, inChannels, safeGain));
        index += channelCount(buffer);
    }
    raise(peak, level);
    raise(recent, level);
    latest.store(level, std::memory_order_relaxed);
}

} // namespace tavero
