#include "sound/tap/Render.h"

#include "sound/tap/test/PlainRender.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <random>
#include <vector>

namespace tavero {
namespace {

using testing::Each;
using testing::ElementsAre;

constexpr float nan = std::numeric_limits<float>::quiet_NaN();
constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float untouched = 99;

// A buffer over samples of its own, which end where it does.
struct Stream {
    std::vector<float> samples;
    std::uint32_t channels = 1;

    AudioBuffer buffer() {
        return {channels, static_cast<std::uint32_t>(samples.size() * sizeof(float)),
                samples.data()};
    }
};

Stream silence(std::size_t samples, std::uint32_t channels = 1) {
    return {std::vector<float>(samples, untouched), channels};
}

struct Levels {
    std::atomic<float> peak = 0;
    std::atomic<float> recent = 0;
    std::atomic<float> latest = 0;
};

// One cycle; gives its level.
float renderOnce(std::vector<Stream>& input, std::vector<Stream>& output, float gain = 1) {
    std::vector<AudioBuffer> in, out;
    for (Stream& stream : input) in.push_back(stream.buffer());
    for (Stream& stream : output) out.push_back(stream.buffer());
    Levels levels;
    render(in, out, gain, levels.peak, levels.recent, levels.latest);
    EXPECT_EQ(levels.peak, levels.latest);
    EXPECT_EQ(levels.recent, levels.latest);
    return levels.latest;
}

TEST(Render, WithoutInputTheOutputIsCleared) {
    std::vector<Stream> in, out{silence(6, 2), silence(3)};
    EXPECT_EQ(renderOnce(in, out), 0);
    EXPECT_THAT(out[0].samples, Each(0));
    EXPECT_THAT(out[1].samples, Each(0));
}

TEST(Render, InputWithoutChannelsIsNone) {
    std::vector<Stream> in{{{1, 1}, 0}}, out{silence(4, 2)};
    EXPECT_EQ(renderOnce(in, out), 0);
    EXPECT_THAT(out[0].samples, Each(0));
}

TEST(Render, AMonoInputFeedsEveryChannel) {
    std::vector<Stream> in{{{.1f, -.2f}, 1}}, out{silence(4, 2), silence(2)};
    EXPECT_EQ(renderOnce(in, out), .2f);
    EXPECT_THAT(out[0].samples, ElementsAre(.1f, .1f, -.2f, -.2f));
    EXPECT_THAT(out[1].samples, ElementsAre(.1f, -.2f));
}

// Five frames: one group of four and one over.
const std::vector<float> left{.1f, .2f, .3f, .4f, .5f};
const std::vector<float> right{-1, -2, -3, -4, -5};
const std::vector<float> both{.1f, -1, .2f, -2, .3f, -3, .4f, -4, .5f, -5};

TEST(Render, InterleavedStereoIntoInterleavedMapsChannelToChannel) {
    std::vector<Stream> in{{both, 2}}, out{silence(10, 2)};
    EXPECT_EQ(renderOnce(in, out), 5);
    EXPECT_EQ(out[0].samples, both);
}

TEST(Render, InterleavedStereoIntoSeparateMapsChannelToChannel) {
    std::vector<Stream> in{{both, 2}}, out{silence(5), silence(5)};
    EXPECT_EQ(renderOnce(in, out), 5);
    EXPECT_EQ(out[0].samples, left);
    EXPECT_EQ(out[1].samples, right);
}

TEST(Render, SeparateStereoIntoInterleavedMapsChannelToChannel) {
    std::vector<Stream> in{{left, 1}, {right, 1}}, out{silence(10, 2)};
    EXPECT_EQ(renderOnce(in, out), 5);
    EXPECT_EQ(out[0].samples, both);
}

TEST(Render, SeparateStereoIntoSeparateMapsChannelToChannel) {
    std::vector<Stream> in{{left, 1}, {right, 1}}, out{silence(5), silence(5)};
    EXPECT_EQ(renderOnce(in, out), 5);
    EXPECT_EQ(out[0].samples, left);
    EXPECT_EQ(out[1].samples, right);
}

TEST(Render, FourChannelsGetAStereoInputTwice) {
    std::vector<Stream> in{{{.1f, .2f, .3f, .4f}, 2}}, out{silence(8, 4)};
    renderOnce(in, out);
    EXPECT_THAT(out[0].samples, ElementsAre(.1f, .2f, .1f, .2f, .3f, .4f, .3f, .4f));
}

TEST(Render, ASecondOutputTakesUpWhereTheFirstEnds) {
    std::vector<Stream> in{{{1, 2, 3}, 3}}, out{silence(2, 2), silence(2, 2)};
    renderOnce(in, out);
    EXPECT_THAT(out[0].samples, ElementsAre(1, 2));
    EXPECT_THAT(out[1].samples, ElementsAre(3, 1));
}

TEST(Render, AnOutputWithoutDataIsSkippedWithItsChannels) {
    Stream in{{1, 2}, 2}, out = silence(2, 2);
    const AudioBuffer input = in.buffer();
    const std::vector<AudioBuffer> output{{1, 4, nullptr}, out.buffer()};
    Levels levels;
    render({&input, 1}, output, 1, levels.peak, levels.recent, levels.latest);
    EXPECT_THAT(out.samples, ElementsAre(1, 2));
}

TEST(Render, AnInputWithoutDataIsSilenceButKeepsItsNumbers) {
    Stream second{{.5f, .6f}, 1}, out = silence(6, 3);
    const std::vector<AudioBuffer> input{{2, 16, nullptr}, second.buffer()};
    const AudioBuffer output = out.buffer();
    Levels levels;
    render(input, {&output, 1}, 1, levels.peak, levels.recent, levels.latest);
    EXPECT_THAT(out.samples, ElementsAre(0, 0, .5f, 0, 0, .6f));
    EXPECT_EQ(levels.latest, .6f);
}

TEST(Render, BehindAShortInputTheOutputIsZeros) {
    std::vector<Stream> in{{{.1f, .2f, .3f, .4f}, 2}}, out{silence(8, 2)};
    renderOnce(in, out);
    EXPECT_THAT(out[0].samples, ElementsAre(.1f, .2f, .3f, .4f, 0, 0, 0, 0));

    in = {{{1}, 1}};
    out = {silence(6, 2)};
    renderOnce(in, out);
    EXPECT_THAT(out[0].samples, ElementsAre(1, 1, 0, 0, 0, 0));
}

TEST(Render, OfALongInputTheSurplusIsDroppedAndNotMeasured) {
    std::vector<Stream> in{{{.1f, .2f, .9f, .9f}, 2}}, out{silence(2, 2)};
    EXPECT_EQ(renderOnce(in, out), .2f);
    EXPECT_THAT(out[0].samples, ElementsAre(.1f, .2f));
}

TEST(Render, AnInputOfNoFramesLeavesZeros) {
    std::vector<Stream> in{{{}, 2}}, out{silence(4, 2)};
    in[0].samples.reserve(1); // data, but none of it used
    EXPECT_EQ(renderOnce(in, out), 0);
    EXPECT_THAT(out[0].samples, Each(0));
}

TEST(Render, AnOutputThatNamesNoChannelsHasOne) {
    std::vector<Stream> in{{{.1f, .2f}, 1}}, out{silence(2, 0)};
    renderOnce(in, out);
    EXPECT_THAT(out[0].samples, ElementsAre(.1f, .2f));
}

TEST(Render, BytesThatMakeNoFrameAreLeftAlone) {
    Stream in{{.1f, .2f, .3f, .4f}, 2}, out = silence(4, 2);
    AudioBuffer input = in.buffer(), output = out.buffer();
    input.bytes = 15;  // one frame and most of another
    output.bytes = 13; // the same
    Levels levels;
    render({&input, 1}, {&output, 1}, 1, levels.peak, levels.recent, levels.latest);
    EXPECT_THAT(out.samples, ElementsAre(.1f, .2f, untouched, untouched));
}

TEST(Render, ABufferThatClaimsBillionsOfChannelsCostsNothing) {
    Stream in{{1, 1}, 1}, out = silence(2, 0xffffffff);
    std::vector<AudioBuffer> input{in.buffer()};
    const std::vector<AudioBuffer> output(8, out.buffer());
    Levels levels;
    render(input, output, 1, levels.peak, levels.recent, levels.latest);
    input[0].channels = 0xffffffff;
    render(input, output, 1, levels.peak, levels.recent, levels.latest);
    EXPECT_THAT(out.samples, Each(untouched));
    EXPECT_EQ(levels.peak, 0);
}

TEST(Render, TheLevelIsThatBeforeTheGain) {
    std::vector<Stream> in{{{.8f, -.4f}, 2}}, out{silence(2, 2)};
    EXPECT_EQ(renderOnce(in, out, .5f), .8f);
    EXPECT_THAT(out[0].samples, ElementsAre(.4f, -.2f));
    EXPECT_EQ(renderOnce(in, out, 0), .8f);
    EXPECT_THAT(out[0].samples, Each(0));
}

TEST(Render, PeaksOnlyRiseAndTheLatestLevelFollows) {
    Levels levels;
    Stream in{{.5f}, 1}, out = silence(1);
    const AudioBuffer input = in.buffer(), output = out.buffer();
    const auto cycle = [&](float sample) {
        in.samples[0] = sample;
        render({&input, 1}, {&output, 1}, 1, levels.peak, levels.recent, levels.latest);
    };
    cycle(-.5f);
    cycle(.25f);
    EXPECT_EQ(levels.peak, .5f);
    EXPECT_EQ(levels.recent, .5f);
    EXPECT_EQ(levels.latest, .25f);
    levels.recent = 0; // taken
    cycle(.125f);
    EXPECT_EQ(levels.peak, .5f);
    EXPECT_EQ(levels.recent, .125f);
    EXPECT_EQ(levels.latest, .125f);
}

TEST(Render, ASampleThatIsNoNumberIsSilenceAndNoLevel) {
    std::vector<Stream> in{{{nan, .1f, infinity, -infinity, -nan, .2f, 0, nan, nan, infinity}, 2}};
    for (const std::uint32_t channels : {1u, 2u, 5u}) {
        std::vector<Stream> out{silence(10, channels)};
        EXPECT_LE(renderOnce(in, out), .2f);
        for (const float sample : out[0].samples) EXPECT_LE(std::abs(sample), .2f);
    }
    std::vector<Stream> out{silence(10, 2)};
    EXPECT_EQ(renderOnce(in, out), .2f);
    EXPECT_THAT(out[0].samples, ElementsAre(0, .1f, 0, 0, 0, .2f, 0, 0, 0, 0));
}

TEST(Render, ABadGainNeverMakesItLouder) {
    const std::vector<std::pair<float, float>> heard{{1.5f, .5f},    {infinity, .5f}, {-1, 0},
                                                     {-infinity, 0}, {nan, 0},        {-nan, 0}};
    for (const auto& [gain, expected] : heard) {
        std::vector<Stream> in{{{.5f}, 1}}, out{silence(1)};
        EXPECT_EQ(renderOnce(in, out, gain), .5f);
        EXPECT_EQ(out[0].samples[0], expected) << gain;
    }
}

TEST(Render, TheSmallestSoundIsSound) {
    constexpr float smallest = std::numeric_limits<float>::denorm_min();
    std::vector<Stream> in{{{0, -smallest}, 1}}, out{silence(2)};
    EXPECT_EQ(renderOnce(in, out), smallest);
}

// Any layout, against the steps written down as plainly as can be.
class RandomLayouts {
  public:
    explicit RandomLayouts(std::uint32_t seed) : random_(seed) {}

    std::uint32_t upTo(std::uint32_t most) {
        return std::uniform_int_distribution<std::uint32_t>(0, most)(random_);
    }
    float sample() {
        const float odd[] = {nan, infinity, -infinity, 0, 1e-42f, 3e38f};
        if (upTo(9) == 0) return odd[upTo(5)];
        return std::uniform_real_distribution<float>(-1, 1)(random_);
    }
    float gain() {
        const float odd[] = {nan, infinity, -1, 2, 0, 1};
        return upTo(3) == 0 ? odd[upTo(5)] : std::uniform_real_distribution<float>(0, 1)(random_);
    }

    // Memory that ends with the last whole sample, so that a sanitizer sees a read behind it.
    std::vector<AudioBuffer> buffers(std::vector<std::vector<float>>& memory) {
        std::vector<AudioBuffer> list(upTo(4));
        for (AudioBuffer& buffer : list) {
            buffer.channels = upTo(5);
            buffer.bytes = upTo(upTo(1) ? 40 : 400);
            std::vector<float> samples(buffer.bytes / sizeof(float));
            for (float& value : samples) value = sample();
            memory.push_back(std::move(samples));
            if (upTo(7) > 0) buffer.data = memory.back().data();
        }
        return list;
    }

  private:
    std::mt19937 random_;
};

TEST(Render, AnyLayoutGivesWhatThePlainStepsGive) {
    RandomLayouts random(20'000);
    for (int round = 0; round < 20'000; ++round) {
        std::vector<std::vector<float>> heard, played, expected;
        const std::vector<AudioBuffer> input = random.buffers(heard);
        const std::vector<AudioBuffer> output = random.buffers(played);
        expected = played;
        std::vector<AudioBuffer> plain = output;
        for (std::size_t i = 0; i < plain.size(); ++i)
            if (plain[i].data) plain[i].data = expected[i].data();
        const float gain = random.gain();

        Levels levels;
        render(input, output, gain, levels.peak, levels.recent, levels.latest);
        ASSERT_EQ(levels.latest, test::plainRender(input, plain, gain)) << "round " << round;
        for (std::size_t i = 0; i < played.size(); ++i)
            for (std::size_t at = 0; at < played[i].size(); ++at)
                // What is left alone may be no number.
                ASSERT_TRUE(played[i][at] == expected[i][at] || std::isnan(expected[i][at]))
                    << "round " << round << ", buffer " << i << ", sample " << at;
    }
}

TEST(Render, NothingIsEverLouderThanGainTimesInput) {
    RandomLayouts random(7);
    for (int round = 0; round < 20'000; ++round) {
        std::vector<std::vector<float>> heard;
        const std::vector<AudioBuffer> input = random.buffers(heard);
        const std::uint32_t channels = random.upTo(5);
        std::vector<float> played(60, nan);
        const AudioBuffer output{channels, 240, played.data()};
        float loudest = 0;
        for (const auto& samples : heard)
            for (const float value : samples)
                if (std::isfinite(value)) loudest = std::max(loudest, std::abs(value));
        const float gain = static_cast<float>(random.upTo(1000)) / 1000;

        Levels levels;
        render(input, {&output, 1}, gain, levels.peak, levels.recent, levels.latest);
        ASSERT_LE(levels.latest, loudest);
        for (const float value : played) ASSERT_LE(std::abs(value), gain * loudest) << round;
    }
}

} // namespace
} // namespace tavero
