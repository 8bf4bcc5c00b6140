#include "hardware/AppGPUSampler.h"

#include <gtest/gtest.h>

#include <limits>

namespace tavero {
namespace {

using Shares = std::unordered_map<std::int32_t, double>;

struct SettableGPU : GPUSource {
    std::unordered_map<std::int32_t, std::uint64_t> times;
    std::uint64_t now = 0;

    std::optional<GPUSnapshot> gpu() override { return std::nullopt; }
    std::unordered_map<std::int32_t, std::uint64_t> gpuTimes() override { return times; }
    std::uint64_t uptime() override { return now; }
};

class AppGPUSamplerRun {
  public:
    Shares at(std::uint64_t now, std::unordered_map<std::int32_t, std::uint64_t> times) {
        source_.now = now;
        source_.times = std::move(times);
        return sampler_.sample(source_);
    }

  private:
    SettableGPU source_;
    AppGPUSampler sampler_;
};

TEST(AppGPUSampler, TheFirstCallGivesNothing) {
    EXPECT_TRUE(AppGPUSamplerRun().at(1000, {{1, 500}}).empty());
}

TEST(AppGPUSampler, AShareIsGPUTimePerWallTime) {
    AppGPUSamplerRun run;
    run.at(1000, {{1, 500}, {2, 70}});
    EXPECT_EQ(run.at(2000, {{1, 750}, {2, 170}}), (Shares{{1, 0.25}, {2, 0.1}}));
}

TEST(AppGPUSampler, SeveralEnginesAtOnceGiveMoreThanOne) {
    AppGPUSamplerRun run;
    run.at(1000, {{1, 0}});
    EXPECT_EQ(run.at(1100, {{1, 250}}), (Shares{{1, 2.5}}));
}

TEST(AppGPUSampler, AProcessSeenForTheFirstTimeIsLeftOutAndKnownFromThenOn) {
    AppGPUSamplerRun run;
    run.at(1000, {});
    EXPECT_TRUE(run.at(2000, {{1, 900'000}}).empty());
    EXPECT_EQ(run.at(3000, {{1, 900'500}}), (Shares{{1, 0.5}}));
}

TEST(AppGPUSampler, ATimeThatStandsStillOrFallsGivesNoEntry) {
    AppGPUSamplerRun run;
    run.at(1000, {{1, 500}, {2, 500}});
    EXPECT_TRUE(run.at(2000, {{1, 500}, {2, 400}}).empty());
    EXPECT_EQ(run.at(3000, {{1, 500}, {2, 500}}), (Shares{{2, 0.1}})); // from where it fell to
}

TEST(AppGPUSampler, AProcessThatEndedIsForgotten) {
    AppGPUSamplerRun run;
    run.at(1000, {{1, 500}});
    EXPECT_TRUE(run.at(2000, {}).empty());
    EXPECT_TRUE(run.at(3000, {{1, 800}}).empty()); // another one with its pid
}

TEST(AppGPUSampler, TwoCallsAtTheSameTimeGiveNothingAndTheLaterTimesCount) {
    AppGPUSamplerRun run;
    run.at(1000, {{1, 500}});
    EXPECT_TRUE(run.at(1000, {{1, 600}}).empty());
    EXPECT_EQ(run.at(2000, {{1, 700}}), (Shares{{1, 0.1}}));
}

TEST(AppGPUSampler, AClockThatStepsBackGivesNothingOnce) {
    AppGPUSamplerRun run;
    run.at(1000, {{1, 500}});
    EXPECT_TRUE(run.at(900, {{1, 600}}).empty());
    EXPECT_EQ(run.at(1900, {{1, 700}}), (Shares{{1, 0.1}}));
}

TEST(AppGPUSampler, TheLargestTimesAreDifferencesToo) {
    constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    AppGPUSamplerRun run;
    run.at(0, {{1, 0}});
    EXPECT_EQ(run.at(most, {{1, most}}), (Shares{{1, 1.0}}));
}

} // namespace
} // namespace tavero
