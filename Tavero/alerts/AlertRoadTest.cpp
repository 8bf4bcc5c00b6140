#include "alerts/test/LivingMac.h"

#include <gtest/gtest.h>

namespace tavero {
namespace {

using namespace std::chrono_literals;

// An afternoon on which an app uses so much of a core.
Scenario withSpinner(const Curve& cpu, Scenario::Life life = {}) {
    Scenario scenario = idleAfternoon();
    scenario.processes.push_back({.pid = 9001,
                                  .path = "/Applications/Spinner.app/Contents/MacOS/Spinner",
                                  .core = 7,
                                  .cpu = cpu,
                                  .memory = 2e8,
                                  .life = life});
    scenario.bundles["/Applications/Spinner.app"] = {.displayName = "Spinner", .name = "Spinner"};
    return scenario;
}

std::vector<std::chrono::seconds> times(const LivingMac& mac) {
    std::vector<std::chrono::seconds> times;
    times.reserve(mac.met().size());
    for (const LivingMac::Met& met : mac.met()) times.push_back(met.at);
    return times;
}
using Times = std::vector<std::chrono::seconds>;

// With nothing open apps are read once a minute, so the first reading of a share comes after one.
TEST(AlertRoad, ABusyAppIsToldAtTheFirstLookAfterFiveMinutesAndNotBefore) {
    LivingMac mac(withSpinner(0.9));
    mac.enable(AlertKind::appCPU);
    mac.live(60s);
    EXPECT_TRUE(mac.lists("Spinner"));
    mac.live(300s - 1s);
    EXPECT_EQ(times(mac), Times());
    mac.live(1s);
    EXPECT_EQ(times(mac), Times{360s});
}

TEST(AlertRoad, TheFiveMinutesBeginWithTheFirstLookThatFindsItBusy) {
    // Half of the second minute is not enough.
    LivingMac mac(withSpinner(0.9, {.begins = 90}));
    mac.enable(AlertKind::appCPU);
    mac.live(1h);
    EXPECT_EQ(times(mac), Times{480s});
}

TEST(AlertRoad, WithoutANotchItBecomesANotificationThatCanQuitTheApp) {
    LivingMac mac(withSpinner(0.9));
    mac.enable(AlertKind::appCPU);
    mac.live(360s);
    ASSERT_EQ(mac.met().size(), 1u);
    const Notification told = mac.met().front().notification;
    EXPECT_EQ(told,
              (Notification{.key = "appCPU|/Applications/Spinner.app",
                            .title = "Spinner is working hard",
                            .body = "Above 80% CPU for 5 minutes. Quit it if you're not using it.",
                            .section = "cpu",
                            .bundlePath = "/Applications/Spinner.app"}));
    ASSERT_TRUE(mac.lists("Spinner"));

    mac.act(NotificationAction::quit, told);
    mac.live(2s);
    ASSERT_TRUE(mac.monitor().toast());
    EXPECT_TRUE(mac.monitor().toast()->ends_with("freed")) << *mac.monitor().toast();
    mac.live(58s); // up to the next look at the apps
    EXPECT_FALSE(mac.lists("Spinner"));
    mac.live(3h);
    EXPECT_EQ(mac.met().size(), 1u);
}

TEST(AlertRoad, AnAppThatGoesOnIsToldOnce) {
    LivingMac mac(withSpinner(0.9));
    mac.enable(AlertKind::appCPU);
    mac.live(3h);
    EXPECT_EQ(times(mac), Times{360s});
}

TEST(AlertRoad, AShortRestDoesNotMakeItNews) {
    LivingMac mac(withSpinner(Curve::pulses(0.9, 35 * 60, 28 * 60)));
    mac.enable(AlertKind::appCPU);
    mac.live(3h);
    EXPECT_EQ(times(mac), Times{360s});
}

TEST(AlertRoad, AfterALongRestItIsNewsAgainOnceTheHourIsOver) {
    // Busy for 30 minutes out of every 50: the second time ends the hour, the third comes too
    // early.
    LivingMac mac(withSpinner(Curve::pulses(0.9, 50 * 60, 30 * 60)));
    mac.enable(AlertKind::appCPU);
    mac.live(3h);
    EXPECT_EQ(times(mac), (Times{6min, 66min, 126min}));
}

TEST(AlertRoad, WhoDidNotAskForItHearsNothing) {
    LivingMac mac(withSpinner(0.9));
    mac.live(3h);
    EXPECT_EQ(times(mac), Times());
}

} // namespace
} // namespace tavero
