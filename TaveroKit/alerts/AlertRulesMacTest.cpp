#include "alerts/AlertRules.h"

#include <gtest/gtest.h>

#include <chrono>
#include <limits>

namespace tavero {
namespace {

using namespace std::chrono_literals;

AppUsage app(const std::string& name) {
    const std::string path = "/Applications/" + name + ".app";
    return {.identity = {AppIdentity::Kind::app, path}, .name = name, .bundlePath = path};
}

AppUsage system() { return {.identity = AppIdentity::system, .name = "macOS"}; }

std::set<AlertKind> allKinds() {
    std::set<AlertKind> all;
    for (const AlertKindEntry& kind : allAlertKinds) all.insert(kind.kind);
    return all;
}

class MacRulesTest : public testing::Test {
  protected:
    AlertRules rules{allKinds()};
    Date now = Date(1'800'000'000s);
    LiveSnapshot snapshot;
    AlertRules::Context context;

    std::vector<SystemAlert> evaluate() { return rules.evaluate(snapshot, context, now); }
    std::vector<SystemAlert> evaluateAfter(std::chrono::seconds time) {
        now += time;
        return evaluate();
    }
    // What is told when the battery stands at this; the title alone, empty for nothing.
    std::string titleAt(std::int64_t percent, bool pluggedIn = false) {
        snapshot.battery = BatterySnapshot{.percent = percent, .onExternalPower = pluggedIn};
        now += 60s;
        const auto alerts = evaluate();
        EXPECT_LE(alerts.size(), 1u);
        return alerts.empty() ? "" : alerts[0].title;
    }
};

constexpr bool pluggedIn = true;

TEST_F(MacRulesTest, ADischargeIsToldAtTwentyAndAtTenOnceEach) {
    EXPECT_EQ(titleAt(21), "");
    EXPECT_EQ(titleAt(20), "Your battery is at 20%");
    EXPECT_EQ(titleAt(15), "");
    EXPECT_EQ(titleAt(11), "");
    EXPECT_EQ(titleAt(10), "Your battery is at 10%");
    EXPECT_EQ(titleAt(3), "");
    EXPECT_EQ(titleAt(25), ""); // no reset yet
    EXPECT_EQ(titleAt(10), "");
    EXPECT_EQ(titleAt(31), "");
    EXPECT_EQ(titleAt(20), "Your battery is at 20%");
}

TEST_F(MacRulesTest, ABatteryFirstSeenLowIsToldWithItsOwnPercent) {
    snapshot.battery = BatterySnapshot{.percent = 7, .minutesToEmpty = 65};
    EXPECT_EQ(evaluate(), std::vector{(SystemAlert{.kind = AlertKind::macBattery,
                                                   .key = "macBattery|10",
                                                   .title = "Your battery is at 7%",
                                                   .body = "Plug in your Mac soon. About 1 h 5 m "
                                                           "left."})});
}

TEST_F(MacRulesTest, TheTimeLeftReadsInMinutesBelowAnHour) {
    snapshot.battery = BatterySnapshot{.percent = 20, .minutesToEmpty = 59};
    EXPECT_EQ(evaluate().at(0).body, "Plug in your Mac soon. About 59 min left.");
}

TEST_F(MacRulesTest, PluggingInArmsTheLevelsAgain) {
    EXPECT_NE(titleAt(15), "");
    EXPECT_EQ(titleAt(15, pluggedIn), "");
    EXPECT_EQ(titleAt(15), "Your battery is at 15%");
}

TEST_F(MacRulesTest, ALevelThatWasSilentIsToldWhenItsKindIsTurnedOn) {
    rules.enabled.erase(AlertKind::macBattery);
    EXPECT_EQ(titleAt(18), "");
    rules.enabled.insert(AlertKind::macBattery);
    EXPECT_EQ(titleAt(17), "Your battery is at 17%");
}

TEST_F(MacRulesTest, AFullBatteryIsToldOnceAChargeAndHoveringDoesNotRepeatIt) {
    EXPECT_EQ(titleAt(99, pluggedIn), "");
    EXPECT_EQ(titleAt(100, pluggedIn), "Your Mac is fully charged");
    EXPECT_EQ(titleAt(99, pluggedIn), "");
    EXPECT_EQ(titleAt(100, pluggedIn), "");
    EXPECT_EQ(titleAt(90, pluggedIn), "");
    EXPECT_EQ(titleAt(100, pluggedIn), "");
    EXPECT_EQ(titleAt(89, pluggedIn), "");
    EXPECT_EQ(titleAt(100, pluggedIn), "Your Mac is fully charged");
}

TEST_F(MacRulesTest, AnHourOnBatteryArmsFullyChargedAgainAtAnyCharge) {
    for (const std::int64_t percent : {95, 25, 15}) {
        EXPECT_EQ(titleAt(100, pluggedIn), "Your Mac is fully charged");
        titleAt(percent);
    }
}

TEST_F(MacRulesTest, FullyChargedAsksOnlyForThePlugAndThePercent) {
    snapshot.battery = BatterySnapshot{.percent = 100, .onExternalPower = true};
    EXPECT_EQ(evaluate().at(0).body, "You can unplug it to help the battery last longer.");
}

TEST_F(MacRulesTest, AClockSetBackBlocksACooldownOfNothing) {
    EXPECT_NE(titleAt(100, pluggedIn), "");
    titleAt(50);
    now -= 1h;
    EXPECT_EQ(titleAt(100, pluggedIn), "");
    now += 1h;
    EXPECT_NE(titleAt(100, pluggedIn), "");
}

TEST_F(MacRulesTest, WithoutABatteryReadingTheMarksStay) {
    EXPECT_NE(titleAt(20), "");
    snapshot.battery.reset();
    evaluateAfter(60s);
    EXPECT_EQ(titleAt(20), "");
}

TEST_F(MacRulesTest, AMachineThatThrottlesForAMinuteIsTold) {
    snapshot.apps = {system(), app("Hearthside")};
    context.thermalState = ThermalState::serious;
    EXPECT_TRUE(evaluate().empty());
    EXPECT_TRUE(evaluateAfter(59s).empty());
    context.thermalState = ThermalState::critical; // no break between the two
    EXPECT_EQ(evaluateAfter(1s),
              std::vector{(SystemAlert{.kind = AlertKind::throttling,
                                       .key = "throttling",
                                       .title = "Your Mac is slowing down to cool off",
                                       .body = "macOS is limiting speed because it's hot. "
                                               "Hearthside is the busiest app.",
                                       .appName = "Hearthside",
                                       .bundlePath = "/Applications/Hearthside.app"})});
}

TEST_F(MacRulesTest, AFairThermalStateIsNoThrottling) {
    context.thermalState = ThermalState::fair;
    evaluate();
    EXPECT_TRUE(evaluateAfter(1h).empty());
}

TEST_F(MacRulesTest, ThrottlingStaysActiveUntilTenMinutesOfClear) {
    context.thermalState = ThermalState::critical;
    evaluate();
    ASSERT_EQ(evaluateAfter(60s).size(), 1u);
    context.thermalState = ThermalState::fair;
    evaluateAfter(1s);
    evaluateAfter(599s);
    EXPECT_TRUE(rules.memory.active.contains("throttling"));
    evaluateAfter(1s);
    EXPECT_FALSE(rules.memory.active.contains("throttling"));
}

TEST_F(MacRulesTest, TwoWeeksUpAndShortOfMemoryAskForARestartOnceADay) {
    snapshot.memory = MemorySnapshot{.pressure = MemoryPressure::warning};
    context.uptime = 14 * 86'400.0 - 1;
    // memory pressure has a rule of its own, which is not looked at here
    rules.enabled = {AlertKind::restart};
    EXPECT_TRUE(evaluate().empty());
    context.uptime = 14 * 86'400.0;
    EXPECT_EQ(evaluate(), std::vector{(SystemAlert{
                              .kind = AlertKind::restart,
                              .key = "restart",
                              .title = "Time for a restart",
                              .body = "Your Mac has been on for 14 days and is short on memory. A "
                                      "restart clears it."})});
    EXPECT_TRUE(evaluateAfter(24h - 1s).empty());
    context.uptime = 15.9 * 86'400;
    const auto alerts = evaluateAfter(1s);
    ASSERT_EQ(alerts.size(), 1u);
    EXPECT_TRUE(alerts[0].body.starts_with("Your Mac has been on for 15 days"));
}

TEST_F(MacRulesTest, FourGibibytesOfSwapAreShortOfMemoryToo) {
    context.uptime = 20 * 86'400.0;
    snapshot.memory = MemorySnapshot{.swapUsed = 4'294'967'295, .pressure = MemoryPressure::normal};
    EXPECT_TRUE(evaluate().empty());
    snapshot.memory->swapUsed = 4'294'967'296;
    EXPECT_EQ(evaluate().size(), 1u);
}

TEST_F(MacRulesTest, WithoutAnUptimeOrAMemoryReadingNobodyIsAskedToRestart) {
    rules.enabled = {AlertKind::restart};
    snapshot.memory = MemorySnapshot{.pressure = MemoryPressure::critical};
    EXPECT_TRUE(evaluate().empty());
    context.uptime = std::numeric_limits<double>::infinity();
    EXPECT_TRUE(evaluate().empty());
    context.uptime = 20 * 86'400.0;
    snapshot.memory.reset();
    EXPECT_TRUE(evaluate().empty());
}

TEST_F(MacRulesTest, ABusyGPUIsToldWithItsTopUser) {
    AppUsage light = app("Inkwell");
    light.gpu = 0.2;
    AppUsage heavy = app("Hearthside");
    heavy.gpu = 0.6;
    AppUsage same = app("Lantern");
    same.gpu = 0.6;
    AppUsage drawing = system();
    drawing.gpu = 0.9;
    snapshot.apps = {drawing, light, heavy, same};
    snapshot.gpu = GPUSnapshot{.device = 0.9};
    evaluate();
    EXPECT_TRUE(evaluateAfter(299s).empty());
    const auto alerts = evaluateAfter(1s);
    ASSERT_EQ(alerts.size(), 1u);
    EXPECT_EQ(alerts[0].title, "Hearthside is keeping the GPU busy");
    EXPECT_EQ(alerts[0].body, "Above 90% for 5 minutes.");
    EXPECT_EQ(alerts[0].bundlePath, "/Applications/Hearthside.app");
}

TEST_F(MacRulesTest, WithoutAUserTheGPUIsBusyByItself) {
    AppUsage idle = app("Hearthside");
    idle.gpu = 0;
    snapshot.apps = {idle, app("Inkwell")};
    snapshot.gpu = GPUSnapshot{.device = 1};
    evaluate();
    const auto alerts = evaluateAfter(5min);
    ASSERT_EQ(alerts.size(), 1u);
    EXPECT_EQ(alerts[0].title, "The GPU is busy");
    EXPECT_EQ(alerts[0].appName, std::nullopt);
}

TEST_F(MacRulesTest, AGPUJustBelowTheThresholdIsNotBusy) {
    snapshot.gpu = GPUSnapshot{.device = 0.8999};
    evaluate();
    EXPECT_TRUE(evaluateAfter(1h).empty());
}

TEST_F(MacRulesTest, APassWithoutAGPUReadingKeepsItsTime) {
    snapshot.gpu = GPUSnapshot{.device = 0.95};
    evaluate();
    snapshot.gpu.reset();
    EXPECT_TRUE(evaluateAfter(299s).empty());
    snapshot.gpu = GPUSnapshot{.device = 0.95};
    EXPECT_EQ(evaluateAfter(1s).size(), 1u);
}

TEST_F(MacRulesTest, HalfAMinuteOfMemoryPressureIsToldWithTheHeaviestApp) {
    snapshot.memory = MemorySnapshot{.pressure = MemoryPressure::warning};
    snapshot.memoryHeavyApps = {system(), app("Hearthside")};
    snapshot.memoryHeavyApps[1].memory = 3ull << 30;
    evaluate();
    EXPECT_TRUE(evaluateAfter(29s).empty());
    const auto alerts = evaluateAfter(1s);
    ASSERT_EQ(alerts.size(), 1u);
    EXPECT_EQ(alerts[0].title, "Your Mac is low on memory");
    EXPECT_EQ(alerts[0].body,
              "Hearthside is using the most (3.0 GB). Quitting apps will speed things up.");
    EXPECT_EQ(alerts[0].appName, "Hearthside");
}

TEST_F(MacRulesTest, MemoryPressureWithoutAnAppIsToldInGeneral) {
    snapshot.memory = MemorySnapshot{.pressure = MemoryPressure::critical};
    evaluate();
    const auto alerts = evaluateAfter(30s);
    ASSERT_EQ(alerts.size(), 1u);
    EXPECT_EQ(alerts[0].body, "Quitting apps you're not using will speed things up.");
}

TEST_F(MacRulesTest, AnUnknownPressureIsNone) {
    for (const MemoryPressure pressure : {MemoryPressure::normal, MemoryPressure::unknown}) {
        snapshot.memory = MemorySnapshot{.pressure = pressure};
        evaluate();
        EXPECT_TRUE(evaluateAfter(1h).empty());
    }
}

TEST_F(MacRulesTest, ADiskWithLessThanATenthFreeIsToldAtOnce) {
    snapshot.diskCapacity = 500'000'000'000;
    snapshot.diskAvailable = 50'000'000'000;
    EXPECT_TRUE(evaluate().empty());
    snapshot.diskAvailable = 49'999'999'999;
    EXPECT_EQ(
        evaluate(),
        std::vector{(SystemAlert{.kind = AlertKind::diskFull,
                                 .key = "diskFull",
                                 .title = "Your disk is almost full",
                                 .body = "Only 50.0 GB left. Your Mac slows down when it runs "
                                         "out of space."})});
}

TEST_F(MacRulesTest, ADiskWithLessThanNothingFreeHasNothingFree) {
    snapshot.diskCapacity = 500'000'000'000;
    snapshot.diskAvailable = -1;
    EXPECT_TRUE(evaluate().at(0).body.starts_with("Only 0.0 GB left."));
}

TEST_F(MacRulesTest, ADiskOfUnknownSizeIsNotJudged) {
    snapshot.diskAvailable = 0;
    EXPECT_TRUE(evaluate().empty());
    snapshot.diskCapacity = 0;
    EXPECT_TRUE(evaluate().empty());
    snapshot.diskCapacity = 1;
    snapshot.diskAvailable.reset();
    EXPECT_TRUE(evaluate().empty());
}

TEST_F(MacRulesTest, ACPUAboveNinetyFiveDegreesForAMinuteIsHot) {
    snapshot.apps = {app("Hearthside")};
    snapshot.cpuTemperature = 95;
    evaluate();
    EXPECT_TRUE(evaluateAfter(1h).empty());
    snapshot.cpuTemperature = 96.5;
    evaluateAfter(1s);
    EXPECT_TRUE(evaluateAfter(59s).empty());
    const auto alerts = evaluateAfter(1s);
    ASSERT_EQ(alerts.size(), 1u);
    EXPECT_EQ(alerts[0].title, "Your Mac is running hot");
    EXPECT_EQ(alerts[0].body, "The CPU is at 97°C. Hearthside is the busiest app.");
}

TEST_F(MacRulesTest, HeatReadsInTheUsersUnitAndWithoutAnAppItStandsAlone) {
    context.fahrenheit = true;
    snapshot.cpuTemperature = 96;
    evaluate();
    EXPECT_EQ(evaluateAfter(60s).at(0).body, "The CPU is at 205°F.");
}

TEST_F(MacRulesTest, ATemperatureRoundsHalvesAwayFromZero) {
    EXPECT_EQ(AlertRules::temperatureText(96.5, false), "97°C");
    EXPECT_EQ(AlertRules::temperatureText(-0.5, false), "-1°C");
    EXPECT_EQ(AlertRules::temperatureText(-0.4, false), "0°C");
    EXPECT_EQ(AlertRules::temperatureText(96, true), "205°F");
}

TEST_F(MacRulesTest, EverythingAtOnceComesInAFixedOrder) {
    AppUsage busy = app("Hearthside");
    busy.cpu = 2;
    snapshot.apps = {busy};
    snapshot.battery = BatterySnapshot{.percent = 5};
    snapshot.memory = MemorySnapshot{.total = 16ull << 30, .pressure = MemoryPressure::critical};
    snapshot.gpu = GPUSnapshot{.device = 1};
    snapshot.cpuTemperature = 100;
    context.thermalState = ThermalState::critical;
    evaluate();
    snapshot.battery->percent = 50;
    evaluateAfter(1s);
    snapshot.battery->percent = 5;
    snapshot.diskAvailable = 1;
    snapshot.diskCapacity = 1000;
    context.uptime = 20 * 86'400.0;
    std::vector<std::string> keys;
    for (const SystemAlert& alert : evaluateAfter(9min)) keys.push_back(alert.key);
    EXPECT_EQ(keys, (std::vector<std::string>{"appCPU|/Applications/Hearthside.app",
                                              "macBattery|10", "throttling", "restart", "gpuBusy",
                                              "memoryPressure", "diskFull", "hotMac"}));
}

TEST_F(MacRulesTest, WhatIsTurnedOffIsNeverTold) {
    rules.enabled.clear();
    snapshot.battery = BatterySnapshot{.percent = 5};
    snapshot.memory = MemorySnapshot{.pressure = MemoryPressure::critical};
    snapshot.gpu = GPUSnapshot{.device = 1};
    snapshot.cpuTemperature = 100;
    snapshot.diskAvailable = 1;
    snapshot.diskCapacity = 1000;
    context = {.thermalState = ThermalState::critical, .uptime = 20 * 86'400.0};
    evaluate();
    EXPECT_TRUE(evaluateAfter(1h).empty());
    EXPECT_EQ(rules.memory, AlertMemory{});
}

} // namespace
} // namespace tavero
