#include "hardware/EnergyModelReader.h"

#include <gtest/gtest.h>

#include <chrono>
#include <limits>

namespace tavero {
namespace {

using namespace std::chrono_literals;
using Channels = std::vector<EnergyChannel>;

struct SettableEnergy : EnergySource {
    std::optional<Channels> now;

    std::optional<Channels> channels() override { return now; }
};

// A reader and the counters under it.
class EnergyRun {
  public:
    std::optional<ComponentPower> at(Date::duration time, std::optional<Channels> channels) {
        source_.now = std::move(channels);
        return reader_.sample(source_, Date(std::chrono::days(20'000)) + time);
    }

  private:
    SettableEnergy source_;
    EnergyModelReader reader_;
};

// The watts of a counter that starts at 0 and stands at `value` after a second.
double wattsOf(const std::string& unit, std::int64_t value) {
    EnergyRun run;
    run.at(0s, Channels{{"a", unit, 0}});
    const std::optional<ComponentPower> power = run.at(1s, Channels{{"a", unit, value}});
    const auto found = power->watts.find("a");
    return found == power->watts.end() ? 0 : found->second;
}

TEST(EnergyModelReader, OneSampleGivesNoRate) {
    EnergyRun run;
    EXPECT_EQ(run.at(0s, Channels{{"CPU Energy", "mJ", 1000}}), std::nullopt);
}

TEST(EnergyModelReader, WattsAreJoulesASecond) {
    EnergyRun run;
    run.at(0s, Channels{{"CPU Energy", "mJ", 1000}, {"ANE", "nJ", 5}});
    const auto power = run.at(2s, Channels{{"CPU Energy", "mJ", 4000}, {"ANE", "nJ", 5}});
    EXPECT_EQ(power->watts.size(), 1u); // what didn't grow is left out
    EXPECT_DOUBLE_EQ(*power->cpu(), 1.5);
    EXPECT_EQ(power->neuralEngine(), std::nullopt);
}

TEST(EnergyModelReader, EveryUnitHasItsScale) {
    EXPECT_DOUBLE_EQ(wattsOf("mJ", 2'000), 2);
    EXPECT_DOUBLE_EQ(wattsOf("uJ", 2'000'000), 2);
    EXPECT_DOUBLE_EQ(wattsOf("\u00B5J", 2'000'000), 2);
    EXPECT_DOUBLE_EQ(wattsOf("nJ", 2'000'000'000), 2);
    EXPECT_DOUBLE_EQ(wattsOf(" nJ ", 2'000'000'000), 2);
    EXPECT_DOUBLE_EQ(wattsOf("\tmJ\n", 2'000), 2);
}

TEST(EnergyModelReader, AnUnknownUnitCountsNothing) {
    for (const char* unit : {"", " ", "J", "MJ", "m J", "mj", "mW"})
        EXPECT_EQ(wattsOf(unit, 5'000'000'000), 0) << unit;
}

TEST(EnergyModelReader, CountersOfTheSameNameAddUp) {
    EnergyRun run;
    run.at(0s, Channels{{"DRAM", "mJ", 0}, {"DRAM", "uJ", 0}});
    EXPECT_DOUBLE_EQ(*run.at(1s, Channels{{"DRAM", "mJ", 1000}, {"DRAM", "uJ", 500'000}})->memory(),
                     1.5);
}

TEST(EnergyModelReader, ACounterWithoutANameIsSkipped) {
    EnergyRun run;
    run.at(0s, Channels{{std::nullopt, "mJ", 0}});
    EXPECT_TRUE(run.at(1s, Channels{{std::nullopt, "mJ", 1000}})->watts.empty());
}

TEST(EnergyModelReader, ACounterThatFellIsLeftOutOnce) {
    EnergyRun run;
    run.at(0s, Channels{{"GPU", "mJ", 9000}});
    EXPECT_EQ(run.at(1s, Channels{{"GPU", "mJ", 1000}})->gpu(), std::nullopt);
    EXPECT_DOUBLE_EQ(*run.at(2s, Channels{{"GPU", "mJ", 3000}})->gpu(), 2);
}

TEST(EnergyModelReader, ANewCounterIsLeftOutOnce) {
    EnergyRun run;
    run.at(0s, Channels{});
    EXPECT_TRUE(run.at(1s, Channels{{"GPU", "mJ", 1000}})->watts.empty());
    EXPECT_DOUBLE_EQ(*run.at(2s, Channels{{"GPU", "mJ", 3000}})->gpu(), 2);
}

TEST(EnergyModelReader, ARefusedSampleKeepsThePreviousOne) {
    EnergyRun run;
    run.at(0s, Channels{{"GPU", "mJ", 1000}});
    EXPECT_EQ(run.at(1s, std::nullopt), std::nullopt);
    EXPECT_DOUBLE_EQ(*run.at(2s, Channels{{"GPU", "mJ", 5000}})->gpu(), 2);
}

TEST(EnergyModelReader, AClockThatStandsOrStepsBackGivesNothingAndStartsAnew) {
    EnergyRun run;
    run.at(5s, Channels{{"GPU", "mJ", 0}});
    EXPECT_EQ(run.at(5s, Channels{{"GPU", "mJ", 1000}}), std::nullopt);
    EXPECT_EQ(run.at(3s, Channels{{"GPU", "mJ", 2000}}), std::nullopt);
    EXPECT_DOUBLE_EQ(*run.at(4s, Channels{{"GPU", "mJ", 5000}})->gpu(), 3);
}

TEST(EnergyModelReader, TheLargestCountersDoNotOverflow) {
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
    EnergyRun run;
    run.at(0s, Channels{{"a", "mJ", least}, {"a", "mJ", least}});
    EXPECT_GT(run.at(1s, Channels{{"a", "mJ", most}, {"a", "mJ", most}})->watts.at("a"), 3e16);
}

TEST(ComponentPower, TheGPUIsTheSumOfBothOfItsCounters) {
    EXPECT_EQ((ComponentPower{{{"GPU", 1.5}, {"GPU Energy", 2.0}, {"GPU SRAM", 9.0}}}).gpu(), 3.5);
    EXPECT_EQ((ComponentPower{{{"GPU", 1.5}}}).gpu(), 1.5);
    EXPECT_EQ((ComponentPower{{{"GPU Energy", 2.0}}}).gpu(), 2.0);
    EXPECT_EQ(ComponentPower{}.gpu(), std::nullopt);
}

TEST(ComponentPower, PartsAreFoundByTheirNames) {
    const ComponentPower power{{{"CPU Energy", 1}, {"ANE", 2}, {"DRAM", 3}}};
    EXPECT_EQ(power.cpu(), 1);
    EXPECT_EQ(power.neuralEngine(), 2);
    EXPECT_EQ(power.memory(), 3);
    EXPECT_EQ(power.gpu(), std::nullopt);
}

} // namespace
} // namespace tavero
