#include "platform/sim/Curve.h"

#include <gtest/gtest.h>

#include <vector>

namespace tavero {
namespace {

TEST(Curve, ALevelIsTheSameAtAllTimes) {
    EXPECT_EQ(Curve(3).at(-10), 3);
    EXPECT_EQ(Curve(3).at(1e9), 3);
    EXPECT_EQ(Curve(3).integral(4), 12);
}

TEST(Curve, AWaveSwingsAroundNothing) {
    const Curve wave = Curve::wave(2, 8);
    EXPECT_NEAR(wave.at(0), 0, 1e-12);
    EXPECT_NEAR(wave.at(2), 2, 1e-12);
    EXPECT_NEAR(wave.at(6), -2, 1e-12);
    EXPECT_NEAR(wave.integral(8), 0, 1e-12);
    EXPECT_GT(wave.integral(4), 0);
}

TEST(Curve, PulsesComeOnceAPeriodForTheirWidth) {
    const Curve pulses = Curve::pulses(5, 100, 10, 30);
    EXPECT_EQ(pulses.at(29.9), 0);
    EXPECT_EQ(pulses.at(30), 5);
    EXPECT_EQ(pulses.at(39.9), 5);
    EXPECT_EQ(pulses.at(40.1), 0);
    EXPECT_EQ(pulses.at(135), 5);
    EXPECT_NEAR(pulses.integral(35), 25, 1e-9);
    EXPECT_NEAR(pulses.integral(1000), 500, 1e-9);
}

TEST(Curve, ARampStaysWhereItEnds) {
    const Curve ramp = Curve::ramp(4, 10, 20);
    EXPECT_EQ(ramp.at(10), 0);
    EXPECT_EQ(ramp.at(15), 2);
    EXPECT_EQ(ramp.at(1000), 4);
    EXPECT_EQ(ramp.integral(10), 0);
    EXPECT_EQ(ramp.integral(20), 20);
    EXPECT_EQ(ramp.integral(25), 40);
}

TEST(Curve, ARampWithoutLengthIsAStep) {
    const Curve step = Curve::ramp(4, 10, 10);
    EXPECT_EQ(step.at(10), 0);
    EXPECT_EQ(step.at(10.1), 4);
    EXPECT_EQ(step.integral(12), 8);
}

TEST(Curve, ARampThatBeganBeforeTheOriginCountsFromTheOrigin) {
    EXPECT_EQ(Curve::ramp(4, -10, 0).integral(5), 20);
}

TEST(Curve, TheIntegralIsTheSumOfTheValues) {
    Curve curve = 1 + Curve::wave(0.5, 13, 4) + Curve::pulses(2, 17, 3, 5) + Curve::ramp(1, 20, 60);
    curve += curve;
    constexpr double step = 1e-3;
    double sum = 0;
    for (int i = 0; i < 100'000; ++i) sum += curve.at((i + 0.5) * step) * step;
    EXPECT_NEAR(curve.integral(100), sum, 1e-2);
}

TEST(Curve, TheMeanOfNoTimeIsTheValue) {
    const Curve curve = Curve::ramp(4, 0, 8);
    EXPECT_EQ(curve.mean(0, 8), 2);
    EXPECT_EQ(curve.mean(2, 2), 1);
}

} // namespace
} // namespace tavero
