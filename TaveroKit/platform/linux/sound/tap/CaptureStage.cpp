#include "platform/linux/sound/tap/CaptureStage.h"

namespace tavero {

void CaptureStage::renderPiece(std::array<AudioBuffer, 2> input, std::size_t at,
                               std::size_t length) {
    const std::size_t skipped = at * sizeof(float);
    const std::size_t wanted = length * sizeof(float);
    for (AudioBuffer& channel : input) {
        const std::size_t left = channel.bytes - std::min<std::size_t>(channel.bytes, skipped);
        if (channel.data != nullptr && left > 0) channel.data += at;
        channel.bytes = static_cast<std::uint32_t>(std::min(left, wanted));
    }
    const auto bytes = static_cast<std::uint32_t>(wanted);
    const std::array<AudioBuffer, 2> output = {
        {{1, bytes, left_.data()}, {1, bytes, right_.data()}}};
    render(input, output, cells_.gain.load(std::memory_order_relaxed), cells_.peak, cells_.recent,
           cells_.latest);
}

} // namespace tavero
