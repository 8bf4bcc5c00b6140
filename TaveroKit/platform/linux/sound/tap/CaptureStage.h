#pragma once

#include "platform/AudioTapSource.h"
#include "platform/linux/sound/tap/StereoStream.h"

#include <pipewire/stream.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>

namespace tavero {

// Puts what a stream captured through render(). A block longer than this has room for goes in
// pieces, of which the last one is the latest level; no graph with the usual limit has such blocks.
// Real-time: no memory, no lock.
class CaptureStage {
  public:
    static constexpr std::size_t longestPiece = 8192; // frames

    // The cells must outlive the stage's last block.
    explicit CaptureStage(TapCells& cells) : cells_(cells) {}

    // Calls `use(left, right)` with each piece as it is to be heard.
    template <typename Use>
    void pass(const pw_buffer& buffer, Use use) {
        const std::array<AudioBuffer, 2> input = captured(buffer);
        const std::size_t frames = std::max(input[0].bytes, input[1].bytes) / sizeof(float);
        for (std::size_t at = 0; at < frames; at += longestPiece) {
            const std::size_t length = std::min(frames - at, longestPiece);
            renderPiece(input, at, length);
            use(std::span<const float>(left_.data(), length),
                std::span<const float>(right_.data(), length));
        }
    }

  private:
    void renderPiece(std::array<AudioBuffer, 2> input, std::size_t at, std::size_t length);

    TapCells& cells_;
    std::array<float, longestPiece> left_{};
    std::array<float, longestPiece> right_{};
};

} // namespace tavero
