#include "history/HistoryStore.h"

#include "history/test/SQLiteFile.h"
#include "history/test/TimeZone.h"
#include "platform/linux/TemporaryTree.h"

#include <gtest/gtest.h>

#include <chrono>
#include <numeric>

namespace tavero {
namespace {

// June 20, 2025, 12:00 UTC; its midnight; and a week's first midnight.
constexpr std::int64_t noon = 1'750'420'800;
constexpr std::int64_t midnight = noon - 43200;
constexpr std::int64_t weekStart = midnight - 6 * 86400;

Date date(std::int64_t seconds) { return Date(std::chrono::seconds(seconds)); }
Calendar utc() {
    return Calendar([](std::int64_t) { return 0; });
}

std::vector<double> values(const std::vector<DayValue>& days) {
    std::vector<double> values;
    for (const DayValue& day : days) values.push_back(day.value);
    return values;
}

class InsightsReportTest : public testing::Test {
  protected:
    InsightsReport report(std::int64_t days = 7) { return store_.report(days, date(noon), utc()); }

    // A minute with "column = value, …".
    void minute(std::int64_t ts, const std::string& columns, const std::string& figures) {
        run("INSERT INTO minute (ts, " + columns + ") VALUES (" + std::to_string(ts) + ", " +
            figures + ")");
    }
    void app(std::int64_t hour, const std::string& figures) {
        run("INSERT INTO app_hour (hour, app, name, bundle_path, cpu_seconds, memory_sum, samples,"
            " disk_written, net_in, net_out) VALUES (" +
            std::to_string(hour) + ", " + figures + ")");
    }
    void levels(const std::string& device, std::int64_t ts, const std::vector<int>& percentages) {
        for (const int percent : percentages)
            run("INSERT INTO bluetooth_battery VALUES (" + std::to_string(ts++) + ", '" + device +
                "', " + std::to_string(percent) + ")");
    }
    void run(const std::string& statement) { SQLiteFile(file_).run(statement); }

    TemporaryTree tree_;
    std::filesystem::path file_ = tree_.root() / "history.sqlite";
    HistoryStore store_{file_};
};

// The whole.

TEST_F(InsightsReportTest, AnEmptyHistoryGivesAnEmptyReport) {
    const InsightsReport empty = report();
    EXPECT_EQ(empty.daysOfData, 0);
    EXPECT_EQ(empty.averageCPU, std::nullopt);
    EXPECT_EQ(empty.averageMemoryUsed, std::nullopt);
    EXPECT_EQ(empty.energyWattHours, std::nullopt);
    EXPECT_EQ(empty.diskWritten, 0);
    EXPECT_EQ(empty.hoursAwake, 0);
    for (const auto& series :
         {empty.dailyCPU, empty.dailyMemory, empty.dailyEnergy, empty.dailyWritten})
        EXPECT_EQ(values(series), std::vector<double>(7, 0));
    EXPECT_EQ(empty.dailyCPU[0].day, date(weekStart));
    EXPECT_EQ(empty.dailyCPU[6].day, date(midnight));
    for (const auto& hour : empty.cpuByHour) EXPECT_EQ(hour, std::nullopt);
    EXPECT_EQ(empty.busiestDay, std::nullopt);
    EXPECT_TRUE(empty.apps.empty());
    EXPECT_TRUE(empty.networkApps.empty());
    EXPECT_TRUE(empty.deviceCharges.empty());
}

TEST_F(InsightsReportTest, TablesThatAreGoneGiveTheSameAsEmptyOnes) {
    const InsightsReport empty = report();
    run("DROP TABLE minute; DROP TABLE app_hour; DROP TABLE bluetooth_battery");
    EXPECT_EQ(report(), empty);
}

TEST_F(InsightsReportTest, WhatIsStillInMemoryCounts) {
    store_.record({.date = date(noon - 60), .cpu = CPUSnapshot{.user = 0.5}}, std::nullopt);
    store_.record({.date = date(noon - 30),
                   .cpu = CPUSnapshot{.user = 0.25},
                   .apps = {{.identity = {AppIdentity::Kind::tool, "git"}, .name = "git"}}},
                  5);
    const InsightsReport now = report();
    EXPECT_EQ(now.averageCPU, 0.375);
    EXPECT_EQ(now.hoursAwake, 1 / 60.0 + 0);
    EXPECT_EQ(now.apps.size(), 1u);
}

TEST_F(InsightsReportTest, APeriodOfNoDaysHasEmptySeries) {
    minute(noon - 60, "cpu", "0.5");
    const InsightsReport none = report(0);
    EXPECT_TRUE(none.dailyCPU.empty());
    EXPECT_TRUE(none.dailyWritten.empty());
    EXPECT_EQ(none.averageCPU, std::nullopt);
    EXPECT_EQ(none.busiestDay, std::nullopt);
}

// Figures.

TEST_F(InsightsReportTest, FiguresAreOfTheMinutesFromTheFirstMidnightUntilNow) {
    minute(weekStart - 60, "cpu, memory, watts, disk_write", "1, 1, 1, 1");
    minute(weekStart, "cpu, memory, watts, disk_write", "0.25, 100, 60, 10");
    minute(noon, "cpu, memory, watts, disk_write", "0.75, 300, 30, 20");
    minute(noon + 60, "cpu, memory, watts, disk_write", "1, 1, 1, 1");
    const InsightsReport week = report();
    EXPECT_EQ(week.averageCPU, 0.5);
    EXPECT_EQ(week.averageMemoryUsed, 200);
    EXPECT_EQ(week.energyWattHours, 1.5);
    EXPECT_EQ(week.diskWritten, 1800);
    EXPECT_EQ(week.hoursAwake, 2 / 60.0);
}

TEST_F(InsightsReportTest, DaysOfDataCountTheWholeHistoryAndNotThePeriod) {
    minute(noon - 25 * 86400, "cpu", "0.5");
    EXPECT_EQ(report(7).daysOfData, 25);
    EXPECT_EQ(report(7).dailyCPU.size(), 7u);
    minute(noon - 25 * 86400 - 43200, "cpu", "0.5");
    EXPECT_EQ(report(7).daysOfData, 25.5);
}

TEST_F(InsightsReportTest, AMinuteWithoutPowerAddsNoEnergy) {
    minute(weekStart, "watts", "NULL");
    minute(midnight, "watts", "60");
    minute(midnight + 60, "watts", "NULL");
    const InsightsReport week = report();
    EXPECT_EQ(week.energyWattHours, 1);
    EXPECT_EQ(values(week.dailyEnergy), (std::vector<double>{0, 0, 0, 0, 0, 0, 1}));
}

TEST_F(InsightsReportTest, WithoutAnyPowerThereIsNoEnergyButItsDaysRead0) {
    minute(midnight, "watts", "NULL");
    const InsightsReport week = report();
    EXPECT_EQ(week.energyWattHours, std::nullopt);
    EXPECT_EQ(values(week.dailyEnergy), std::vector<double>(7, 0));
}

TEST_F(InsightsReportTest, AnInfiniteFigureInTheFileReadsAsAbsent) {
    minute(midnight, "cpu, disk_write", "9e999, 9e999");
    const InsightsReport week = report();
    EXPECT_EQ(week.averageCPU, std::nullopt);
    EXPECT_EQ(week.diskWritten, 0);
    EXPECT_EQ(values(week.dailyCPU), std::vector<double>(7, 0));
}

// Days.

TEST_F(InsightsReportTest, OneBusyDayStandsAmongDaysOfSilence) {
    minute(weekStart + 2 * 86400, "cpu, memory, disk_write", "0.5, 100, 10");
    minute(weekStart + 3 * 86400 - 60, "cpu, memory, disk_write", "0.25, 300, 20");
    const InsightsReport week = report();
    EXPECT_EQ(values(week.dailyCPU), (std::vector<double>{0, 0, 0.375, 0, 0, 0, 0}));
    EXPECT_EQ(values(week.dailyMemory), (std::vector<double>{0, 0, 200, 0, 0, 0, 0}));
    EXPECT_EQ(values(week.dailyWritten), (std::vector<double>{0, 0, 1800, 0, 0, 0, 0}));
    EXPECT_EQ(week.busiestDay, (DayValue{.day = date(weekStart + 2 * 86400), .value = 0.375}));
}

TEST_F(InsightsReportTest, OfTwoEquallyBusyDaysTheEarlierIsTheBusiest) {
    minute(weekStart + 86400, "cpu", "0.25");
    minute(weekStart + 2 * 86400, "cpu", "0.5");
    minute(weekStart + 4 * 86400, "cpu", "0.5");
    EXPECT_EQ(report().busiestDay, (DayValue{.day = date(weekStart + 2 * 86400), .value = 0.5}));
}

TEST_F(InsightsReportTest, DaysWithoutALoadHaveNoBusiest) {
    minute(weekStart, "cpu", "0");
    EXPECT_EQ(report().busiestDay, std::nullopt);
}

TEST_F(InsightsReportTest, DaysBeginAtLocalMidnight) {
    const TimeZone zone(Zones::kolkata);
    const std::int64_t localMidnight = midnight - 19800;
    minute(localMidnight - 60, "cpu", "0.25");
    minute(localMidnight, "cpu", "0.5");
    const InsightsReport days = store_.report(2, date(noon), Calendar::current());
    EXPECT_EQ(days.dailyCPU,
              (std::vector<DayValue>{{.day = date(localMidnight - 86400), .value = 0.25},
                                     {.day = date(localMidnight), .value = 0.5}}));
}

TEST_F(InsightsReportTest, AcrossAChangeOfTheClocksOlderDaysKeep24HoursAndAreShifted) {
    const TimeZone zone(Zones::berlin);
    // March 31, 2025, 12:00 there; the clocks were set forward on the day before.
    const std::int64_t monday = 1'743'372'000;
    const InsightsReport days = store_.report(3, date(monday + 43200), Calendar::current());
    EXPECT_EQ(days.dailyCPU[2].day, date(monday));
    EXPECT_EQ(days.dailyCPU[1].day, date(monday - 86400)); // 23:00 on Saturday
    EXPECT_EQ(days.dailyCPU[0].day, date(monday - 2 * 86400));
}

TEST_F(InsightsReportTest, TheLast25thHourOfADayCountsInFiguresButInNoDay) {
    const TimeZone zone(Zones::sydney);
    // April 6, 2025, 23:30 there; the clocks were set back that morning.
    const std::int64_t sunday = 1'743'858'000;
    const std::int64_t now = sunday + 24 * 3600 + 1800;
    minute(sunday, "cpu", "0.25");
    minute(now, "cpu", "0.75");
    const InsightsReport days = store_.report(2, date(now), Calendar::current());
    EXPECT_EQ(days.averageCPU, 0.5);
    EXPECT_EQ(values(days.dailyCPU), (std::vector<double>{0, 0.25}));
}

// Hours.

TEST_F(InsightsReportTest, HoursAreMeansOverAllDays) {
    minute(weekStart + 9 * 3600, "cpu", "0.25");
    minute(weekStart + 86400 + 10 * 3600 - 60, "cpu", "0.75");
    minute(midnight, "cpu", "0.125");
    const auto hours = report().cpuByHour;
    EXPECT_EQ(hours[9], 0.5);
    EXPECT_EQ(hours[0], 0.125);
    EXPECT_EQ(std::count(hours.begin(), hours.end(), std::nullopt), 22);
}

TEST_F(InsightsReportTest, AnHourWhoseMinutesLackTheLoadReads0AndOneWithoutMinutesIsAbsent) {
    minute(midnight + 3 * 3600, "memory", "1");
    EXPECT_EQ(report().cpuByHour[3], 0);
    EXPECT_EQ(report().cpuByHour[4], std::nullopt);
}

TEST_F(InsightsReportTest, HoursAreLocalWithTheOffsetInForceNow) {
    minute(midnight, "cpu", "0.5");
    {
        const TimeZone zone(Zones::kolkata); // 05:30 there
        EXPECT_EQ(store_.report(7, date(noon), Calendar::current()).cpuByHour[5], 0.5);
    }
    const TimeZone zone(Zones::newYork); // 20:00 there, by summer time
    EXPECT_EQ(store_.report(7, date(noon), Calendar::current()).cpuByHour[20], 0.5);
    // In winter, of the same minute: 19:00 by the time in force then.
    EXPECT_EQ(store_.report(200, date(noon + 180 * 86400), Calendar::current()).cpuByHour[19], 0.5);
}

TEST_F(InsightsReportTest, AClockNear1970MakesNoHourOfItsOwn) {
    minute(0, "cpu", "0.5");
    const Calendar behind([](std::int64_t) { return -10800; });
    const InsightsReport days = store_.report(7, date(86400), behind);
    EXPECT_EQ(std::count(days.cpuByHour.begin(), days.cpuByHour.end(), std::nullopt), 24);
    EXPECT_EQ(days.averageCPU, 0.5);
}

// Apps.

TEST_F(InsightsReportTest, AnAppIsTheSumOfItsHoursAndItsMemoryTheMeanOfItsSamples) {
    app(midnight, "'mail', 'Mail', '/Mail.app', 10, 600, 2, 5, 1, 2");
    app(midnight + 3600, "'mail', 'Mail', '/Mail.app', 20, 900, 1, 7, 3, 4");
    const AppTotal mail{.id = "mail",
                        .name = "Mail",
                        .bundlePath = "/Mail.app",
                        .cpuSeconds = 30,
                        .averageMemory = 500,
                        .diskWritten = 12,
                        .networkIn = 4,
                        .networkOut = 6};
    EXPECT_EQ(report().apps, std::vector{mail});
    EXPECT_EQ(report().networkApps, std::vector{mail});
}

TEST_F(InsightsReportTest, AnAppWithNothingKnownIsStillARow) {
    app(midnight, "NULL, NULL, NULL, NULL, NULL, 0, NULL, NULL, NULL");
    EXPECT_EQ(report().apps, std::vector{AppTotal{}});
    EXPECT_TRUE(report().networkApps.empty());
}

TEST_F(InsightsReportTest, TheTenAppsWithTheMostCPUTimeAreTold) {
    for (int i = 0; i < 12; ++i)
        app(midnight, "'app" + std::to_string(i) + "', 'App', NULL, " + std::to_string(i) +
                          ", 0, 1, 0, 0, 0");
    const auto apps = report().apps;
    ASSERT_EQ(apps.size(), 10u);
    EXPECT_EQ(apps.front().id, "app11");
    EXPECT_EQ(apps.back().id, "app2");
}

TEST_F(InsightsReportTest, TheTenAppsWithTheMostTrafficAreToldInBothDirections) {
    for (int i = 0; i < 12; ++i)
        app(midnight, "'app" + std::to_string(i) + "', 'App', NULL, 0, 0, 1, 0, " +
                          std::to_string(i) + ", " + std::to_string(i % 2 * 100));
    const auto apps = report().networkApps;
    ASSERT_EQ(apps.size(), 10u);
    EXPECT_EQ(apps.front().id, "app11");
    EXPECT_EQ(apps[5].id, "app1");
    EXPECT_EQ(apps[6].id, "app10");
}

TEST_F(InsightsReportTest, AppsOfTheHourBeforeThePeriodCountInFull) {
    app(weekStart - 3600, "'in', 'In', NULL, 1, 0, 1, 0, 0, 0");
    app(weekStart - 7200, "'out', 'Out', NULL, 1, 0, 1, 0, 0, 0");
    app(noon + 3600, "'later', 'Later', NULL, 0.5, 0, 1, 0, 0, 0");
    const auto apps = report().apps;
    ASSERT_EQ(apps.size(), 2u);
    EXPECT_EQ(apps[0].id, "in");
    EXPECT_EQ(apps[1].id, "later");
}

TEST_F(InsightsReportTest, AnHourAcrossALocalMidnightOfAHalfHourZoneCountsInFull) {
    const TimeZone zone(Zones::kolkata);
    // The local day begins at 18:30 UTC.
    app(midnight - 6 * 3600, "'in', 'In', NULL, 1, 0, 1, 0, 0, 0");
    app(midnight - 7 * 3600, "'out', 'Out', NULL, 1, 0, 1, 0, 0, 0");
    const auto apps = store_.report(1, date(noon), Calendar::current()).apps;
    ASSERT_EQ(apps.size(), 1u);
    EXPECT_EQ(apps[0].id, "in");
}

// Devices.

TEST_F(InsightsReportTest, DevicesAreToldByTheirChargesAndThenByName) {
    levels("Pen", midnight, {20, 40});
    levels("Mouse", midnight, {20, 40, 30, 50, 20, 40});
    levels("Keyboard", midnight, {20, 40});
    levels("ear", midnight, {20, 40});
    EXPECT_EQ(report().deviceCharges,
              (std::vector<DeviceCharges>{{"Mouse", 3}, {"Keyboard", 1}, {"Pen", 1}, {"ear", 1}}));
}

TEST_F(InsightsReportTest, ADeviceThatWasNotChargedIsNotTold) {
    levels("Mouse", midnight, {100, 90, 80});
    EXPECT_TRUE(report().deviceCharges.empty());
}

TEST_F(InsightsReportTest, LevelsOutsideThePeriodDoNotCount) {
    levels("Mouse", weekStart - 10, {20, 40});
    levels("Pen", noon + 1, {20, 40});
    levels("Keyboard", weekStart - 1, {20, 40}); // its rise begins a second too early
    EXPECT_TRUE(report().deviceCharges.empty());
}

} // namespace
} // namespace tavero
