#include "platform/linux/sound/tap/StereoRing.h"

#include <algorithm>
#include <utility>

namespace tavero {

namespace {

constexpr std::uint32_t mask = StereoRing::capacity - 1;
static_assert((StereoRing::capacity & mask) == 0);

// More than any block has. A reader that finds more than this was away, and what it finds is old.
constexpr std::uint32_t longestBlock = StereoRing::capacity / 2;

// So many turns in a row with something left over make it a delay and no coincidence.
constexpr std::uint32_t turnsToSettle = 16;

void copyIn(std::array<float, StereoRing::capacity>& ring, std::uint32_t at,
            std::span<const float> from) {
    const std::size_t begin = at & mask;
    const std::size_t first = std::min(from.size(), ring.size() - begin);
    std::copy_n(from.begin(), first, ring.begin() + static_cast<std::ptrdiff_t>(begin));
    std::copy(from.begin() + static_cast<std::ptrdiff_t>(first), from.end(), ring.begin());
}

void copyOut(const std::array<float, StereoRing::capacity>& ring, std::uint32_t at,
             std::span<float> to) {
    const std::size_t begin = at & mask;
    const std::size_t first = std::min(to.size(), ring.size() - begin);
    const auto from = ring.begin() + static_cast<std::ptrdiff_t>(begin);
    std::copy_n(from, first, to.begin());
    std::copy_n(ring.begin(), to.size() - first, to.begin() + static_cast<std::ptrdiff_t>(first));
}

} // namespace

void StereoRing::write(std::span<const float> left, std::span<const float> right) {
    const std::uint32_t at = written_.load(std::memory_order_relaxed);
    const std::uint32_t room = capacity - (at - taken_.load(std::memory_order_acquire));
    const auto frames =
        static_cast<std::uint32_t>(std::min({left.size(), right.size(), std::size_t{room}}));
    copyIn(samples_[0], at, left.first(frames));
    copyIn(samples_[1], at, right.first(frames));
    written_.store(at + frames, std::memory_order_release);
}

std::uint32_t StereoRing::available() const {
    return written_.load(std::memory_order_acquire) - taken_.load(std::memory_order_relaxed);
}

std::uint32_t StereoRing::read(std::span<float> left, std::span<float> right) {
    const std::uint32_t there = available();
    const auto wanted = static_cast<std::uint32_t>(std::min(left.size(), right.size()));
    const std::uint32_t skipped = skipStale(there, wanted);
    const std::uint32_t frames = std::min(there - skipped, wanted);
    const std::uint32_t at = taken_.load(std::memory_order_relaxed) + skipped;
    copyOut(samples_[0], at, left.first(frames));
    copyOut(samples_[1], at, right.first(frames));
    taken_.store(at + frames, std::memory_order_release);
    noteLeft(there - skipped - frames);
    return frames;
}

// How much of what is there must not be played any more.
std::uint32_t StereoRing::skipStale(std::uint32_t there, std::uint32_t wanted) {
    if (there > longestBlock) return there;
    if (turns_ < turnsToSettle) return 0;
    turns_ = 0;
    // Never so much that this block falls short.
    const std::uint32_t surplus = there > wanted ? there - wanted : 0;
    return std::min(std::exchange(leastLeft_, capacity), surplus);
}

void StereoRing::noteLeft(std::uint32_t left) {
    leastLeft_ = std::min(leastLeft_, left);
    ++turns_;
}

} // namespace tavero
