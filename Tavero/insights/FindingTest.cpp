#include "insights/Finding.h"

#include "records/AppIdentity.h"

#include <gtest/gtest.h>

#include <chrono>
#include <limits>

namespace tavero {
namespace {

using namespace std::chrono_literals;

// Thursday, 19 November 2026, midnight UTC; the tests run in UTC and in American English.
const Date thursday = std::chrono::sys_days(std::chrono::year(2026) / 11 / 19);

AppTotal app(const std::string& name, double cpuSeconds = 0) {
    return {.id = "/Applications/" + name + ".app", .name = name, .cpuSeconds = cpuSeconds};
}

AppTotal macOS(double cpuSeconds) {
    return {.id = AppIdentity::system.id, .name = "macOS", .cpuSeconds = cpuSeconds};
}

std::vector<Finding> findings(const InsightsReport& report) { return Finding::make(report, {}); }

TEST(Finding, AnEmptyReportHasNone) { EXPECT_TRUE(findings({}).empty()); }

TEST(Finding, TheBusiestAppIsToldWithItsShareOfTheTimeInTheReport) {
    const InsightsReport report{.apps = {app("Hearthside", 90), macOS(60), app("Inkwell", 50)}};
    EXPECT_EQ(findings(report),
              std::vector{(Finding{"Hearthside used 45% of all CPU time",
                                   "1 m of CPU time in this period.", Section::cpu})});
}

TEST(Finding, AMinuteOfCPUTimeInAllIsTooLittleToTell) {
    EXPECT_TRUE(findings({.apps = {app("Hearthside", 60)}}).empty());
    EXPECT_EQ(findings({.apps = {app("Hearthside", 60.1)}}).size(), 1u);
}

TEST(Finding, TheSystemIsPassedOverThoughItsTimeCounts) {
    const InsightsReport report{.apps = {macOS(150), app("Hearthside", 50)}};
    EXPECT_EQ(findings(report).at(0).title, "Hearthside used 25% of all CPU time");
}

TEST(Finding, WithTheSystemAloneNoAppIsNamedAndTheOtherRulesStillRun) {
    InsightsReport report{.apps = {macOS(150)}};
    report.apps[0].averageMemory = 5e9;
    report.apps[0].diskWritten = 5e9;
    report.deviceCharges = {{"Earbuds", 1}};
    EXPECT_EQ(findings(report),
              std::vector{(Finding{"Earbuds needed charging once",
                                   "Counted from its battery level while connected.",
                                   Section::bluetooth})});
}

TEST(Finding, TheMemoryLineCanNameAnotherAppThanTheCPULine) {
    InsightsReport report{.apps = {app("Hearthside", 90), app("Inkwell", 50)}};
    report.apps[1].averageMemory = 2.0 * (1u << 30);
    ASSERT_EQ(findings(report).size(), 2u);
    EXPECT_EQ(findings(report)[1], (Finding{"Inkwell used the most memory",
                                            "About 2.0 GB on average.", Section::memory}));
}

TEST(Finding, HalfAGigabyteOfMemoryIsTooLittleToTell) {
    InsightsReport report{.apps = {app("Hearthside")}};
    report.apps[0].averageMemory = 500'000'000;
    EXPECT_TRUE(findings(report).empty());
    report.apps[0].averageMemory = 500'000'001;
    EXPECT_EQ(findings(report).size(), 1u);
}

TEST(Finding, OfTwoAppsWithTheSameMemoryTheFirstIsNamed) {
    InsightsReport report{.apps = {app("Hearthside"), app("Inkwell")}};
    report.apps[0].averageMemory = report.apps[1].averageMemory = 6e8;
    EXPECT_EQ(findings(report).at(0).title, "Hearthside used the most memory");
}

TEST(Finding, TheAppThatWroteMostIsToldAboveAGigabyte) {
    InsightsReport report{.apps = {app("Hearthside"), app("Inkwell")}};
    report.apps[1].diskWritten = 1e9;
    EXPECT_TRUE(findings(report).empty());
    report.apps[1].diskWritten = 123.4e9;
    EXPECT_EQ(
        findings(report),
        std::vector{(Finding{"Inkwell wrote 123 GB",
                             "The most data written to your disk by one app.", Section::disk})});
}

TEST(Finding, TheBusiestDayIsToldByItsDate) {
    const DayValue busy{thursday, 0.425};
    const InsightsReport report{.dailyCPU = {{thursday - 24h, 0.1}, busy}, .busiestDay = busy};
    EXPECT_EQ(findings(report),
              std::vector{(Finding{"Your busiest day was Thursday, Nov 19",
                                   "Average CPU of 42% that day.", Section::cpu})});
}

TEST(Finding, OneActiveDayLeavesNothingToCompare) {
    const DayValue busy{thursday, 0.5};
    EXPECT_TRUE(findings({.dailyCPU = {{thursday - 24h, 0}, busy}, .busiestDay = busy}).empty());
}

TEST(Finding, TheFirstNamedAppOfTheNetworkIsTold) {
    AppTotal system = macOS(0);
    system.networkIn = 9e9;
    AppTotal browser = app("Hearthside");
    browser.networkIn = 1.5e9;
    browser.networkOut = 0.25e9;
    const InsightsReport report{.networkApps = {system, browser}};
    EXPECT_EQ(findings(report),
              std::vector{(Finding{"Hearthside used 1.8 GB of data",
                                   "1.5 GB downloaded, 0.2 GB uploaded in this period.",
                                   Section::network})});
}

TEST(Finding, HalfAGigabyteOfTrafficIsTooLittleToTell) {
    AppTotal browser = app("Hearthside");
    browser.networkIn = 500'000'000;
    EXPECT_TRUE(findings({.networkApps = {browser}}).empty());
}

TEST(Finding, ADeviceChargedOftenIsToldByNumber) {
    EXPECT_EQ(findings({.deviceCharges = {{"Earbuds", 3}}}).at(0).title,
              "Earbuds needed charging 3 times");
}

TEST(Finding, TheNextTwoDevicesStandInTheDetailAndAFourthIsLeftOut) {
    InsightsReport report{.deviceCharges = {{"Earbuds", 3}, {"Mouse", 2}}};
    EXPECT_EQ(findings(report).at(0).detail, "Also charged: Mouse twice.");
    report.deviceCharges.push_back({"Keyboard", 1});
    report.deviceCharges.push_back({"Pen", 1});
    EXPECT_EQ(findings(report).at(0).detail, "Also charged: Mouse twice, Keyboard once.");
}

TEST(Finding, FiguresThatNoMachineGivesAreStillTold) {
    InsightsReport report{.apps = {app("Hearthside", std::numeric_limits<double>::infinity())}};
    report.apps[0].averageMemory = 1e300;
    report.apps[0].diskWritten = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(findings(report).size(), 2u);
    EXPECT_EQ(findings(report)[0].title, "Hearthside used –% of all CPU time");
}

} // namespace
} // namespace tavero
