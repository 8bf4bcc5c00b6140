#include "alerts/AlertRules.h"

#include <gtest/gtest.h>

#include <chrono>

namespace tavero {
namespace {

using namespace std::chrono_literals;

constexpr std::uint64_t gibibyte = 1ull << 30;

AppUsage app(const std::string& name) {
    const std::string path = "/Applications/" + name + ".app";
    return {.identity = {AppIdentity::Kind::app, path}, .name = name, .bundlePath = path};
}

// Rules that allow everything, over one app whose figures a test sets.
class AppRulesTest : public testing::Test {
  protected:
    AlertRules rules{[] {
        std::set<AlertKind> all;
        for (const AlertKindEntry& kind : allAlertKinds) all.insert(kind.kind);
        return all;
    }()};
    Date now = Date(1'800'000'000s);
    LiveSnapshot snapshot{.memory = MemorySnapshot{.total = 16 * gibibyte},
                          .apps = {app("Hearthside")}};

    AppUsage& busy() { return snapshot.apps.at(0); }

    std::vector<SystemAlert> evaluate() { return rules.evaluate(snapshot, {}, now); }

    // Evaluates every `step`, the first time after one step; what came in all that time.
    std::vector<SystemAlert> let(std::chrono::seconds time, std::chrono::seconds step = 5s) {
        std::vector<SystemAlert> all;
        for (auto passed = 0s; passed < time; passed += step) {
            now += step;
            for (SystemAlert& alert : evaluate()) all.push_back(std::move(alert));
        }
        return all;
    }
};

TEST_F(AppRulesTest, AnAppAtTheCPUThresholdCountsAndJustBelowDoesNot) {
    busy().cpu = 0.8;
    evaluate();
    ASSERT_EQ(let(300s).size(), 1u);
    rules = AlertRules(rules.enabled);
    busy().cpu = 0.7999;
    evaluate();
    EXPECT_TRUE(let(1200s).empty());
}

TEST_F(AppRulesTest, TheAlertComesAtTheFirstLookAtOrAfterFiveMinutes) {
    busy().cpu = 1;
    evaluate();
    EXPECT_TRUE(let(299s, 1s).empty());
    EXPECT_EQ(let(1s, 1s),
              std::vector{(SystemAlert{
                  .kind = AlertKind::appCPU,
                  .key = "appCPU|/Applications/Hearthside.app",
                  .title = "Hearthside is working hard",
                  .body = "Above 80% CPU for 5 minutes. Quit it if you're not using it.",
                  .appName = "Hearthside",
                  .bundlePath = "/Applications/Hearthside.app"})});
}

TEST_F(AppRulesTest, OneLookBelowTheThresholdStartsTheTimeAgain) {
    busy().cpu = 1;
    evaluate();
    let(295s);
    busy().cpu = 0.5;
    let(5s);
    busy().cpu = 1;
    EXPECT_TRUE(let(300s).empty()); // counted from the first look of the new breach
    EXPECT_EQ(let(5s).size(), 1u);
}

TEST_F(AppRulesTest, AnAlertIsNotRepeatedWhileItsConditionLasts) {
    busy().cpu = 1;
    EXPECT_EQ(let(24h, 60s).size(), 1u);
}

TEST_F(AppRulesTest, TenMinutesOfCalmFreeAnAlertAndLessDoesNot) {
    busy().cpu = 1;
    evaluate();
    ASSERT_EQ(let(300s).size(), 1u);
    let(3600s);
    busy().cpu = 0;
    let(5s); // the first calm look
    let(599s, 1s);
    busy().cpu = 1;
    EXPECT_TRUE(let(1h).empty());
    busy().cpu = 0;
    let(605s); // 600 s after the first calm look
    busy().cpu = 1;
    EXPECT_TRUE(let(300s).empty());
    EXPECT_EQ(let(5s).size(), 1u);
}

TEST_F(AppRulesTest, AFreedAlertWaitsForItsCooldown) {
    busy().cpu = 1;
    evaluate();
    ASSERT_EQ(let(300s).size(), 1u);
    const Date fired = now;
    busy().cpu = 0;
    let(605s);
    busy().cpu = 1;
    while (now < fired + 1h - 5s) EXPECT_TRUE(let(5s).empty());
    EXPECT_EQ(let(5s).size(), 1u);
}

TEST_F(AppRulesTest, OnBatteryALowerLoadCountsAfterTenMinutes) {
    snapshot.battery = BatterySnapshot{.percent = 50};
    busy().cpu = 0.3;
    evaluate();
    EXPECT_TRUE(let(595s).empty());
    const auto alerts = let(5s);
    ASSERT_EQ(alerts.size(), 1u);
    EXPECT_EQ(alerts[0].kind, AlertKind::heavyOnBattery);
    EXPECT_EQ(alerts[0].title, "Hearthside is draining your battery");
    EXPECT_EQ(alerts[0].body, "Above 30% CPU for 10 minutes while on battery.");
}

TEST_F(AppRulesTest, WithoutABatteryOrPluggedInNothingDrainsIt) {
    busy().cpu = 0.5;
    EXPECT_TRUE(let(1h).empty());
    snapshot.battery = BatterySnapshot{.percent = 50, .onExternalPower = true};
    EXPECT_TRUE(let(1h).empty());
    snapshot.battery->onExternalPower = false;
    busy().cpu = 0.2999;
    EXPECT_TRUE(let(1h).empty());
}

TEST_F(AppRulesTest, AFifthOfTheMemoryIsMuch) {
    const std::uint64_t limit = AlertRules::appMemoryLimit(16 * gibibyte);
    busy().memory = limit - 1;
    evaluate();
    EXPECT_TRUE(let(10min).empty());
    busy().memory = limit;
    let(5s);
    EXPECT_TRUE(let(115s).empty());
    const auto alerts = let(5s);
    ASSERT_EQ(alerts.size(), 1u);
    EXPECT_EQ(alerts[0].title, "Hearthside is using 3.2 GB of memory");
    EXPECT_EQ(alerts[0].body,
              "More than a fifth of this Mac’s memory. Quit it if things feel slow.");
}

TEST_F(AppRulesTest, TheMemoryLimitHasAFloorOfTwoGibibytes) {
    EXPECT_EQ(AlertRules::appMemoryLimit(0), 2 * gibibyte);
    EXPECT_EQ(AlertRules::appMemoryLimit(10 * gibibyte), 2 * gibibyte);
    EXPECT_EQ(AlertRules::appMemoryLimit(16 * gibibyte), 3'435'973'836u);
    EXPECT_GT(AlertRules::appMemoryLimit(~0ull), 3'000'000'000'000'000'000u);
}

TEST_F(AppRulesTest, WithoutAMemoryReadingTheInstalledMemoryCounts) {
    snapshot.memory.reset();
    busy().memory = 5 * gibibyte;
    rules.evaluate(snapshot, {.physicalMemory = 64 * gibibyte}, now);
    now += 10min;
    EXPECT_TRUE(rules.evaluate(snapshot, {.physicalMemory = 64 * gibibyte}, now).empty());
    rules.evaluate(snapshot, {.physicalMemory = 16 * gibibyte}, now);
    now += 2min;
    EXPECT_EQ(rules.evaluate(snapshot, {.physicalMemory = 16 * gibibyte}, now).size(), 1u);
}

TEST_F(AppRulesTest, FiveGigabytesWrittenInAnHourAreMuch) {
    busy().diskWriteRate = 100e6; // 500 MB every 5 s
    EXPECT_TRUE(evaluate().empty());
    EXPECT_TRUE(let(45s).empty());
    const auto alerts = let(5s);
    ASSERT_EQ(alerts.size(), 1u);
    EXPECT_EQ(alerts[0].key, "diskWrites|/Applications/Hearthside.app");
    EXPECT_EQ(alerts[0].title, "Hearthside is writing a lot to disk");
    EXPECT_EQ(alerts[0].body, "5.0 GB in the last hour.");
}

TEST_F(AppRulesTest, TheFirstLookCreditsNoWrites) {
    busy().diskWriteRate = 1e12;
    EXPECT_TRUE(evaluate().empty());
    busy().diskWriteRate = 0;
    EXPECT_TRUE(let(10s).empty());
}

TEST_F(AppRulesTest, ALongGapCreditsTwoMinutesOfWrites) {
    busy().diskWriteRate = 5e9 / 120 - 1000;
    evaluate();
    EXPECT_TRUE(let(10min, 10min).empty());
    rules = AlertRules(rules.enabled);
    busy().diskWriteRate = 5e9 / 120;
    evaluate();
    EXPECT_EQ(let(10min, 10min).size(), 1u);
}

TEST_F(AppRulesTest, WritesOfMoreThanAnHourAgoNoLongerCount) {
    evaluate();
    busy().diskWriteRate = 4e9 / 5;
    let(5s);
    busy().diskWriteRate = 0;
    let(1h);
    busy().diskWriteRate = 0.9e9 / 5;
    EXPECT_TRUE(let(5s).empty());
    busy().diskWriteRate = 3.2e9 / 5;
    EXPECT_TRUE(let(5s).empty()); // 4.1 GB in the last hour
    busy().diskWriteRate = 0.9e9 / 5;
    EXPECT_EQ(let(5s).size(), 1u);
}

TEST_F(AppRulesTest, AnAppThatLeavesTheListKeepsItsWritesAndLosesItsTime) {
    busy().cpu = 1;
    busy().diskWriteRate = 4e9 / 5;
    evaluate();
    let(5s);
    busy().diskWriteRate = 0;
    let(290s);
    const AppUsage left = busy();
    busy() = app("Inkwell");
    let(5s);
    busy() = left;
    EXPECT_TRUE(let(300s).empty());
    EXPECT_EQ(let(5s).size(), 1u); // its CPU time counts from its return
    busy().diskWriteRate = 1.1e9 / 5;
    const auto alerts = let(5s);
    ASSERT_EQ(alerts.size(), 1u);
    EXPECT_EQ(alerts[0].kind, AlertKind::diskWrites);
}

TEST_F(AppRulesTest, TheSystemRaisesNoAlert) {
    busy() = {.identity = AppIdentity::system, .name = "macOS", .cpu = 4};
    busy().memory = 12 * gibibyte;
    busy().diskWriteRate = 1e10;
    EXPECT_TRUE(let(1h).empty());
}

TEST_F(AppRulesTest, TheSystemsRowKeepsTheTimeOfAToolOfItsName) {
    AppUsage tool{.identity = {AppIdentity::Kind::tool, AppIdentity::system.id}, .name = "tool"};
    tool.cpu = 1;
    busy() = tool;
    evaluate();
    busy().identity = AppIdentity::system;
    let(295s);
    busy() = tool;
    EXPECT_EQ(let(5s).size(), 1u);
}

TEST_F(AppRulesTest, ARowOfTheMemoryListIsJudgedByItsOwnFigures) {
    AppUsage heavy = app("Inkwell");
    heavy.memory = 4 * gibibyte;
    heavy.cpu = 0.9;
    snapshot.memoryHeavyApps = {heavy};
    evaluate();
    const auto alerts = let(300s);
    ASSERT_EQ(alerts.size(), 2u);
    EXPECT_EQ(alerts[0].title, "Inkwell is using 4.0 GB of memory");
    EXPECT_EQ(alerts[1].title, "Inkwell is working hard");
}

TEST_F(AppRulesTest, AnAppInBothListsIsJudgedOnceByTheBusyOnes) {
    AppUsage same = busy();
    same.cpu = 1;
    snapshot.memoryHeavyApps = {same};
    evaluate();
    EXPECT_TRUE(let(1h).empty());
}

TEST_F(AppRulesTest, ALightPassLeavesEverythingAsItIs) {
    busy().cpu = 1;
    busy().diskWriteRate = 5e9 / 100;
    evaluate();
    LiveSnapshot light = snapshot;
    light.apps.clear();
    now += 100s;
    EXPECT_TRUE(rules.evaluate(light, {}, now).empty());
    now += 1s;
    EXPECT_EQ(evaluate().size(), 1u); // 101 s of writes, counted from the full pass
    now += 199s;
    EXPECT_EQ(evaluate().size(), 1u); // 300 s of CPU time
}

TEST_F(AppRulesTest, AKindThatIsTurnedOnTellsAtOnceWhatHasHeld) {
    rules.enabled.erase(AlertKind::appCPU);
    busy().cpu = 1;
    evaluate();
    EXPECT_TRUE(let(1h).empty());
    rules.enabled.insert(AlertKind::appCPU);
    EXPECT_EQ(let(5s).size(), 1u);
}

TEST_F(AppRulesTest, OneAppCanRaiseSeveralAlertsInAFixedOrder) {
    snapshot.battery = BatterySnapshot{.percent = 50};
    busy().cpu = 1;
    busy().memory = 8 * gibibyte;
    busy().diskWriteRate = 1e9;
    evaluate();
    const auto alerts = let(10min, 10min);
    ASSERT_EQ(alerts.size(), 4u);
    EXPECT_EQ(alerts[0].kind, AlertKind::appCPU);
    EXPECT_EQ(alerts[1].kind, AlertKind::heavyOnBattery);
    EXPECT_EQ(alerts[2].kind, AlertKind::memoryGrowing);
    EXPECT_EQ(alerts[3].kind, AlertKind::diskWrites);
}

TEST_F(AppRulesTest, WhatWasActiveBeforeARestartStaysSilentUntilItHasBeenClear) {
    rules.memory.active = {"appCPU|/Applications/Hearthside.app"};
    busy().cpu = 1;
    EXPECT_TRUE(let(2h, 60s).empty());
    busy().cpu = 0;
    let(11min, 60s);
    busy().cpu = 1;
    EXPECT_EQ(let(6min, 60s).size(), 1u);
}

TEST_F(AppRulesTest, FiguresThatAreNoNumbersRaiseNothing) {
    busy().cpu = std::numeric_limits<double>::quiet_NaN();
    busy().diskWriteRate = std::numeric_limits<double>::infinity();
    EXPECT_TRUE(let(1h).empty());
    busy().diskWriteRate = 1e9;
    EXPECT_EQ(let(5s).size(), 1u); // and spoil nothing
}

TEST_F(AppRulesTest, PruningForgetsWhatFiredADayAgo) {
    rules.memory.lastFired = {{"old", now - 24h}, {"new", now - 24h + 1s}, {"future", now + 24h}};
    rules.prune(now);
    EXPECT_FALSE(rules.memory.lastFired.contains("old"));
    EXPECT_TRUE(rules.memory.lastFired.contains("new"));
    EXPECT_TRUE(rules.memory.lastFired.contains("future"));
}

} // namespace
} // namespace tavero
