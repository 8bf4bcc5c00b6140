#include "presentation/Motion.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace tavero {
namespace {

// The same spring in tiny steps of time, from its differential equation.
SpringState stepped(const Spring& spring, SpringState state, double target, double seconds) {
    constexpr double step = 1e-6;
    const double omega = 2 * std::acos(-1.0) / spring.response;
    for (double time = 0; time < seconds; time += step) {
        state.velocity += step * (-omega * omega * (state.value - target) -
                                  2 * spring.dampingFraction * omega * state.velocity);
        state.value += step * state.velocity;
    }
    return state;
}

TEST(Motion, ASpringFollowsItsEquationAlsoFromAMovingStart) {
    for (const Spring& spring : {Motion::navigation, Motion::notch, Spring{0.5, 0.2}})
        for (const double seconds : {0.02, 0.1, 0.3}) {
            const SpringState start{0.3, -4};
            const SpringState expected = stepped(spring, start, 1, seconds);
            const SpringState exact = moved(spring, start, 1, seconds);
            EXPECT_NEAR(exact.value, expected.value, 1e-3) << spring.dampingFraction << seconds;
            EXPECT_NEAR(exact.velocity, expected.velocity, 2e-2) << spring.dampingFraction;
        }
}

TEST(Motion, NavigationNeverOvershootsAndTheNotchALittle) {
    double farthestPage = 0;
    double farthestNotch = 0;
    for (double seconds = 0; seconds < 2; seconds += 0.001) {
        farthestPage = std::max(farthestPage, progress(Motion::navigation, seconds));
        farthestNotch = std::max(farthestNotch, progress(Motion::notch, seconds));
    }
    EXPECT_LE(farthestPage, 1.0);
    EXPECT_NEAR(farthestNotch, 1.0175, 0.0005);
}

TEST(Motion, ASpringBeginsAtRestAndEndsAtItsTarget) {
    for (const Spring& spring : {Motion::navigation, Motion::notch}) {
        EXPECT_EQ(progress(spring, 0), 0);
        EXPECT_EQ(progress(spring, -1), 0);
        const double end = settlingTime(spring);
        EXPECT_GT(end, spring.response);
        EXPECT_LT(end, 2 * spring.response);
        for (double later = 0; later < 1; later += 0.001)
            EXPECT_NEAR(progress(spring, end + later), 1, 0.00101);
    }
}

TEST(Motion, ANewTargetTakesOverWithoutAJump) {
    const SpringState underWay = moved(Motion::notch, {}, 1, 0.1);
    const SpringState after = moved(Motion::notch, underWay, 0, 1e-6);
    EXPECT_NEAR(after.value, underWay.value, 1e-4);
    EXPECT_NEAR(after.velocity, underWay.velocity, 1e-2);
    EXPECT_NEAR(moved(Motion::notch, underWay, 0, 3).value, 0, 1e-6);
}

TEST(Motion, CriticalDampingIsTheLimitOfLess) {
    for (double seconds = 0; seconds < 1; seconds += 0.01) {
        EXPECT_NEAR(progress({0.35, 0.99999}, seconds), progress({0.35, 1.0}, seconds), 1e-4);
        EXPECT_EQ(progress({0.35, 3}, seconds), progress({0.35, 1}, seconds));
    }
}

TEST(Motion, UnlikelySpringsStayFinite) {
    EXPECT_EQ(progress({0, 1}, 0.1), 1);
    EXPECT_EQ(progress({-1, 0.5}, 0.1), 1);
    EXPECT_EQ(settlingTime({0, 1}), 0);
    for (const Spring& spring : {Spring{0.3, 0}, Spring{0.3, -2}, Spring{1e-9, 0.5}}) {
        EXPECT_TRUE(std::isfinite(progress(spring, 0.2)));
        EXPECT_TRUE(std::isfinite(settlingTime(spring)));
    }
}

} // namespace
} // namespace tavero
