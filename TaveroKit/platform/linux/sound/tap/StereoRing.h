#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <span>

namespace tavero {

// Stereo sound on its way from the one side of a tap to the other. One thread writes, one reads,
// and neither ever waits. In a steady stream each block is read in the cycle that wrote it, so the
// ring adds no delay; what a change of the block's size leaves behind is thrown away.
class StereoRing {
  public:
    static constexpr std::uint32_t capacity = 16384; // frames, a power of two

    // Both of one length. Sound that there is no room for is dropped.
    void write(std::span<const float> left, std::span<const float> right);
    // For the reader: how many frames there are.
    std::uint32_t available() const;
    // Fills the beginning of both, of one length, with what there is, and gives how many frames
    // that were.
    std::uint32_t read(std::span<float> left, std::span<float> right);

  private:
    std::uint32_t skipStale(std::uint32_t there, std::uint32_t wanted);
    void noteLeft(std::uint32_t left);

    // Counts of frames that only grow, and wrap around.
    std::atomic<std::uint32_t> written_ = 0;
    std::atomic<std::uint32_t> taken_ = 0;
    // The reader's own: the least that stayed behind in its latest turns.
    std::uint32_t leastLeft_ = capacity;
    std::uint32_t turns_ = 0;
    std::array<std::array<float, capacity>, 2> samples_{};
};

} // namespace tavero
