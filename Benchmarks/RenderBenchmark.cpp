#include "sound/tap/Render.h"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstring>
#include <vector>

namespace tavero {
namespace {

// Streams of `frames` frames: all channels in one, or each in one of its own.
class Layout {
  public:
    Layout(std::size_t frames, std::uint32_t channels, bool isInterleaved)
        : samples_(frames * channels, .25f) {
        const std::size_t streams = isInterleaved ? 1 : channels;
        const std::size_t length = samples_.size() / streams;
        for (std::size_t i = 0; i < streams; ++i)
            buffers_.push_back({isInterleaved ? channels : 1,
                                static_cast<std::uint32_t>(length * sizeof(float)),
                                samples_.data() + i * length});
    }

    std::span<const AudioBuffer> buffers() const { return buffers_; }
    std::size_t bytes() const { return samples_.size() * sizeof(float); }
    float* data() { return samples_.data(); }

  private:
    std::vector<float> samples_;
    std::vector<AudioBuffer> buffers_;
};

// Each iteration is one block; "perFrame" is the time of one of its frames.
void countFrames(benchmark::State& state) {
    state.counters["perFrame"] = benchmark::Counter(static_cast<double>(state.range(0)),
                                                    benchmark::Counter::kIsIterationInvariantRate |
                                                        benchmark::Counter::kInvert);
}

// The blocks are so many that none is in the nearest cache when its turn comes, as it is in use.
constexpr std::size_t coldBlocks = 4096;

void render(benchmark::State& state, std::uint32_t inChannels, bool inInterleaved,
            std::uint32_t outChannels, bool outInterleaved) {
    const auto frames = static_cast<std::size_t>(state.range(0));
    const Layout in(frames, inChannels, inInterleaved);
    const Layout out(frames, outChannels, outInterleaved);
    TapCells cells;
    for (auto _ : state) {
        tavero::render(in.buffers(), out.buffers(), .5f, cells.peak, cells.recent, cells.latest);
        benchmark::ClobberMemory();
    }
    countFrames(state);
}

void RenderInterleaved(benchmark::State& state) { render(state, 2, true, 2, true); }
void RenderPlanar(benchmark::State& state) { render(state, 2, false, 2, false); }
void RenderPlanarToInterleaved(benchmark::State& state) { render(state, 2, false, 2, true); }
void RenderStereoToFour(benchmark::State& state) { render(state, 2, true, 4, true); }
BENCHMARK(RenderInterleaved)->Arg(256)->Arg(1024);
BENCHMARK(RenderPlanar)->Arg(256)->Arg(1024);
BENCHMARK(RenderPlanarToInterleaved)->Arg(256)->Arg(1024);
BENCHMARK(RenderStereoToFour)->Arg(256)->Arg(1024);

// The least that moving a stereo block can cost.
void RenderFloor(benchmark::State& state) {
    Layout in(static_cast<std::size_t>(state.range(0)), 2, true);
    Layout out(static_cast<std::size_t>(state.range(0)), 2, true);
    for (auto _ : state) {
        std::memcpy(out.data(), in.data(), in.bytes());
        benchmark::ClobberMemory();
    }
    countFrames(state);
}
BENCHMARK(RenderFloor)->Arg(256)->Arg(1024);

// One block after another of many.
class ColdBlocks {
  public:
    explicit ColdBlocks(std::size_t frames)
        : in_(frames * coldBlocks, 2, true), out_(frames * coldBlocks, 2, true),
          bytes_(frames * 2 * sizeof(float)) {}

    void next() { at_ = (at_ + 1237) % coldBlocks; }
    AudioBuffer in() { return block(in_); }
    AudioBuffer out() { return block(out_); }

  private:
    AudioBuffer block(Layout& layout) const {
        return {2, static_cast<std::uint32_t>(bytes_),
                layout.data() + at_ * bytes_ / sizeof(float)};
    }

    Layout in_, out_;
    std::size_t bytes_;
    std::size_t at_ = 0;
};

void RenderCold(benchmark::State& state) {
    ColdBlocks blocks(static_cast<std::size_t>(state.range(0)));
    TapCells cells;
    for (auto _ : state) {
        blocks.next();
        const AudioBuffer in = blocks.in(), out = blocks.out();
        tavero::render({&in, 1}, {&out, 1}, .5f, cells.peak, cells.recent, cells.latest);
        benchmark::ClobberMemory();
    }
    countFrames(state);
}
BENCHMARK(RenderCold)->Arg(256)->Arg(1024);

void RenderColdFloor(benchmark::State& state) {
    ColdBlocks blocks(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        blocks.next();
        const AudioBuffer in = blocks.in(), out = blocks.out();
        std::memcpy(out.data, in.data, in.bytes);
        benchmark::ClobberMemory();
    }
    countFrames(state);
}
BENCHMARK(RenderColdFloor)->Arg(256)->Arg(1024);

} // namespace
} // namespace tavero
