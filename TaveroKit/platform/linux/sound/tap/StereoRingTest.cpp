#include "platform/linux/sound/tap/StereoRing.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <numeric>
#include <thread>
#include <vector>

using namespace tavero;

namespace {

// A ring with blocks of ever growing numbers going through it; the right side is the left's
// negative.
struct Flow {
    std::unique_ptr<StereoRing> ring = std::make_unique<StereoRing>();
    float next = 1;

    void write(std::size_t frames) {
        std::vector<float> left(frames);
        std::iota(left.begin(), left.end(), next);
        next += static_cast<float>(frames);
        std::vector<float> right(frames);
        for (std::size_t i = 0; i < frames; ++i) right[i] = -left[i];
        ring->write(left, right);
    }

    std::vector<float> read(std::size_t frames) {
        std::vector<float> left(frames, 99);
        std::vector<float> right(frames, 99);
        left.resize(ring->read(left, right));
        for (std::size_t i = 0; i < left.size(); ++i) EXPECT_EQ(right[i], -left[i]) << i;
        return left;
    }
};

std::vector<float> counting(float from, std::size_t count) {
    std::vector<float> numbers(count);
    std::iota(numbers.begin(), numbers.end(), from);
    return numbers;
}

} // namespace

TEST(StereoRing, GivesEachBlockAsItWasWrittenAcrossItsEnd) {
    Flow flow;
    for (int i = 0; i < 100; ++i) {
        const float from = flow.next;
        flow.write(1000);
        EXPECT_EQ(flow.read(1000), counting(from, 1000));
    }
}

TEST(StereoRing, GivesNoMoreThanIsThere) {
    Flow flow;
    EXPECT_EQ(flow.ring->available(), 0u);
    EXPECT_EQ(flow.read(3), std::vector<float>());
    flow.write(2);
    EXPECT_EQ(flow.ring->available(), 2u);
    EXPECT_EQ(flow.read(4), std::vector<float>({1, 2}));
}

TEST(StereoRing, LosesNothingWhileBlocksGrowAndShrink) {
    Flow flow;
    flow.write(64);
    flow.write(64);
    flow.write(128);
    EXPECT_EQ(flow.read(256), counting(1, 256));
    flow.write(256);
    EXPECT_EQ(flow.read(128), counting(257, 128));
    EXPECT_EQ(flow.read(128), counting(385, 128));
}

TEST(StereoRing, DropsExactlyWhatStaysBehind) {
    Flow flow;
    flow.write(700);
    float newest = 0;
    for (int turn = 0; turn < 40; ++turn) {
        flow.write(256);
        newest = flow.read(256).back();
    }
    EXPECT_EQ(newest, flow.next - 1) << "each block is read in the turn that wrote it";
}

TEST(StereoRing, KeepsWhatIsLeftOnlyNowAndThen) {
    Flow flow;
    float expected = 1;
    for (int turn = 0; turn < 200; ++turn) {
        flow.write(turn % 2 == 0 ? 300 : 212);
        const std::vector<float> block = flow.read(256);
        ASSERT_EQ(block, counting(expected, 256)) << turn;
        expected += 256;
    }
}

TEST(StereoRing, AReaderThatWasAwayPlaysNothingOld) {
    Flow flow;
    for (int turn = 0; turn < 50; ++turn) flow.write(1024);
    EXPECT_EQ(flow.read(1024), std::vector<float>());
    const float from = flow.next;
    flow.write(1024);
    EXPECT_EQ(flow.read(1024), counting(from, 1024));
}

TEST(StereoRing, TakesTheLongestBlockOfAGraph) {
    Flow flow;
    for (int turn = 0; turn < 5; ++turn) {
        const float from = flow.next;
        flow.write(8192);
        EXPECT_EQ(flow.read(8192), counting(from, 8192));
    }
}

TEST(StereoRing, TwoThreadsNeverSeeHalfABlock) {
    const auto ring = std::make_unique<StereoRing>();
    std::atomic<bool> done = false;
    std::thread writer([&] {
        std::vector<float> block(64);
        for (float number = 1; !done;) {
            if (ring->available() > 4096) {
                std::this_thread::yield();
                continue;
            }
            block.assign(64, number++);
            ring->write(block, block);
        }
    });
    float last = 0;
    std::vector<float> left(64);
    std::vector<float> right(64);
    for (int heard = 0; heard < 2000;) {
        if (ring->read(left, right) == 0) continue;
        EXPECT_EQ(left, right);
        EXPECT_EQ(left, std::vector<float>(64, left[0]));
        EXPECT_GT(left[0], last);
        last = left[0];
        ++heard;
    }
    done = true;
    writer.join();
}
