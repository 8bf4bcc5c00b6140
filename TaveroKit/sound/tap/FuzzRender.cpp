#include "sound/tap/Render.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace {

// What the input has left, as numbers; zeros when it is used up.
class Bytes {
  public:
    Bytes(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

    template <typename Number>
    Number next() {
        Number number{};
        const std::size_t count = std::min(sizeof number, size_);
        if (count > 0) std::memcpy(&number, data_, count);
        data_ += count;
        size_ -= count;
        return number;
    }

  private:
    const std::uint8_t* data_;
    std::size_t size_;
};

struct Streams {
    std::vector<std::vector<float>> memory; // no byte more than the buffers have
    std::vector<tavero::AudioBuffer> buffers;
};

Streams streams(Bytes& bytes) {
    Streams result;
    result.buffers.resize(bytes.next<std::uint8_t>() % 6u);
    for (tavero::AudioBuffer& buffer : result.buffers) {
        const auto form = bytes.next<std::uint8_t>();
        buffer.channels = form < 250 ? form % 9u : bytes.next<std::uint32_t>();
        buffer.bytes = bytes.next<std::uint16_t>() % 2000u;
        std::vector<float>& samples = result.memory.emplace_back(buffer.bytes / sizeof(float));
        for (float& sample : samples) sample = bytes.next<float>();
        if (form % 8 != 0) buffer.data = samples.data();
    }
    return result;
}

} // namespace

// Whatever the layouts and the samples, what is played is a number within gain times level, and
// what is left alone stays as it was.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    const auto gain = bytes.next<float>();
    Streams input = streams(bytes);
    Streams output = streams(bytes);
    constexpr float untouched = 2e38f;
    for (std::vector<float>& samples : output.memory)
        std::fill(samples.begin(), samples.end(), untouched);

    std::atomic<float> peak = 0, recent = 0, latest = 0;
    tavero::render(input.buffers, output.buffers, gain, peak, recent, latest);
    if (!std::isfinite(latest.load()) || latest < 0 || peak != latest || recent != latest)
        __builtin_trap();
    const float most = std::isnan(gain) ? 0 : std::clamp(gain, 0.0f, 1.0f) * latest;
    for (std::size_t i = 0; i < output.buffers.size(); ++i) {
        const tavero::AudioBuffer& buffer = output.buffers[i];
        const std::size_t channels = std::max<std::size_t>(buffer.channels, 1);
        const std::size_t written =
            buffer.data ? buffer.bytes / sizeof(float) / channels * channels : 0;
        for (std::size_t at = 0; at < output.memory[i].size(); ++at)
            if (at < written ? !(std::abs(output.memory[i][at]) <= most)
                             : output.memory[i][at] != untouched)
                __builtin_trap();
    }
    return 0;
}
