#include "presentation/LevelBars.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace tavero {
namespace {

using testing::DoubleNear;
using testing::Each;
using testing::ElementsAre;

class LevelBarsTest : public testing::Test {
  protected:
    float level = 1;
    bool saves = false;
    int energyChecks = 0;
    int levelReads = 0;
    double random = 0.5;

    LevelBars bars{{.level =
                        [this] {
                            ++levelReads;
                            return level;
                        },
                    .isSavingEnergy =
                        [this] {
                            ++energyChecks;
                            return saves;
                        },
                    .random = [this] { return random; }}};

    LevelBars::Heights heights(bool isMoving = false) { return bars.tick(isMoving)->heights; }
};

TEST_F(LevelBarsTest, BeforeTheFirstTickTheBarsAreLow) { EXPECT_THAT(bars.heights(), Each(0.18)); }

TEST_F(LevelBarsTest, SilenceIsFourLowBarsAlsoWhileMoving) {
    level = 0;
    EXPECT_THAT(heights(false), Each(0.18));
    random = 1;
    EXPECT_THAT(heights(true), Each(0.18));
    for (const float odd : {-1.0F, std::numeric_limits<float>::quiet_NaN(), 1e-30F}) {
        level = odd;
        EXPECT_THAT(heights(true), Each(0.18)) << odd;
    }
}

TEST_F(LevelBarsTest, BarsThatStandStillStandAtTheirWeights) {
    level = 1;
    EXPECT_THAT(heights(), ElementsAre(0.7, 1.0, 0.85, 0.6));
    level = std::numeric_limits<float>::infinity();
    EXPECT_THAT(heights(), ElementsAre(0.7, 1.0, 0.85, 0.6));
}

TEST_F(LevelBarsTest, TheySpanFromFiftyToSixDecibelsBelowFullScale) {
    level = std::pow(10.0F, -6.0F / 20);
    EXPECT_NEAR(heights()[1], 1.0, 1e-6);
    level = std::pow(10.0F, -28.0F / 20);
    EXPECT_NEAR(heights()[1], 0.5, 1e-6);
    level = std::pow(10.0F, -50.0F / 20);
    EXPECT_EQ(heights()[1], 0.18);
}

TEST_F(LevelBarsTest, MovingBarsJumpAroundTheirWeightsButNotOut) {
    random = 0;
    EXPECT_NEAR(heights(true)[0], 0.7 * 0.75, 1e-9);
    random = 1;
    EXPECT_THAT(heights(true),
                ElementsAre(DoubleNear(0.7 * 1.15, 1e-9), 1.0, DoubleNear(0.85 * 1.15, 1e-9),
                            DoubleNear(0.6 * 1.15, 1e-9)));
}

TEST_F(LevelBarsTest, EachStepLastsUntilTheNext) {
    EXPECT_DOUBLE_EQ(bars.tick(true)->duration, 1.0 / 6);
}

TEST_F(LevelBarsTest, SavingEnergyHalvesTheRateAndAsksNothingInBetween) {
    saves = true;
    for (int tick = 1; tick <= 30; ++tick) {
        const std::optional<LevelBars::Motion> motion = bars.tick(true);
        EXPECT_EQ(motion.has_value(), tick % 2 == 1) << tick;
        if (motion) {
            EXPECT_DOUBLE_EQ(motion->duration, 1.0 / 3);
        }
    }
    EXPECT_EQ(levelReads, 15);
}

TEST_F(LevelBarsTest, EnergyIsAskedAboutOnEveryThirtiethTick) {
    for (int tick = 1; tick <= 30; ++tick) bars.tick(false);
    EXPECT_EQ(energyChecks, 1);
    saves = true;
    EXPECT_DOUBLE_EQ(bars.tick(false)->duration, 1.0 / 3); // the 31st asks
    EXPECT_EQ(energyChecks, 2);
    EXPECT_FALSE(bars.tick(false));
}

TEST_F(LevelBarsTest, TheBarsFillTheirWidth) { EXPECT_DOUBLE_EQ(LevelBars::width, 16); }

} // namespace
} // namespace tavero
