#include "platform/mac/sound/FakeMacAudio.h"
#include "platform/mac/sound/ProcessTap.h"
#include "sound/tap/Render.h"
#include "sound/tap/test/RealTimeWatch.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <memory>
#include <variant>

namespace tavero {
namespace {

constexpr std::uint32_t bytesOf(std::size_t samples) {
    return static_cast<std::uint32_t>(samples * sizeof(float));
}

// Streams of every kind over the same samples.
struct Layouts {
    std::array<float, 1024> samples{};

    std::array<AudioBuffer, 1> interleaved{{{2, bytesOf(1024), samples.data()}}};
    std::array<AudioBuffer, 2> planar{
        {{1, bytesOf(512), samples.data()}, {1, bytesOf(512), samples.data() + 512}}};
    std::array<AudioBuffer, 1> surround{{{6, bytesOf(1020), samples.data()}}};
    std::array<AudioBuffer, 2> partlyOff{
        {{2, bytesOf(512), nullptr}, {3, bytesOf(511), samples.data()}}};

    std::array<std::span<const AudioBuffer>, 5> all() const {
        return {std::span<const AudioBuffer>(interleaved), planar, surround, partlyOff, {}};
    }
};

TEST(RealTime, RenderAllocatesNothingTakesNoLockAndNeverWaits) {
    Layouts in, out;
    in.samples.fill(.5f);
    in.samples[7] = std::numeric_limits<float>::quiet_NaN();
    TapCells cells;
    resetRealTimeFaults();
    {
        const RealTimeScope scope;
        for (const auto input : in.all())
            for (const auto output : out.all())
                render(input, output, .5f, cells.peak, cells.recent, cells.latest);
    }
    EXPECT_EQ(realTimeFaults(), RealTimeFaults{});
    EXPECT_EQ(cells.peak, .5f);
}

TEST(RealTime, TheBlockOfATapAllocatesNothingTakesNoLockAndNeverWaits) {
    const auto hardware = std::make_shared<FakeMacHardware>();
    ProcessTaps taps(hardware, std::make_shared<FakeMacObjects>());
    TapCells cells;
    const auto tap = taps.start({.processObjects = {1}, .outputUID = "usb"}, cells);
    ASSERT_EQ(tap.index(), 0u);
    Layouts in, out;
    in.samples.fill(.5f);
    resetRealTimeFaults();
    {
        const RealTimeScope scope;
        for (const auto input : in.all())
            for (const auto output : out.all())
                hardware->block.call(hardware->block.context, input, output);
    }
    EXPECT_EQ(realTimeFaults(), RealTimeFaults{});
    EXPECT_EQ(cells.peak, .5f);
}

} // namespace
} // namespace tavero
