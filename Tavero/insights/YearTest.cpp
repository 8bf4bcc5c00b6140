#include "insights/History.h"

#include "monitor/Monitor.h"
#include "platform/sim/SimMachine.h"
#include "time/VirtualTime.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

// A year on a simulated Mac with nothing open: awake for four hours a day, on its charger, with an
// app that works in the first half hour and one that writes all the time. What the report tells
// must be what the simulator knows.

namespace tavero {
namespace {

using namespace std::chrono_literals;

constexpr auto day = 24h;
constexpr auto awake = 4h - 1s;             // not into the fifth one
constexpr double dayLength = 86'400;        // seconds
constexpr double morningLength = 30 * 60.0; // of each day's work
constexpr double morningCPU = 0.6;          // cores
constexpr double writtenPerSecond = 40e3;   // bytes
constexpr int cpuCount = 2;

Scenario workingYear() {
    Scenario scenario{.name = "a year of work"};
    scenario.cpus.assign(cpuCount, {.user = 0.02, .system = 0.01});
    scenario.memory = {.internal = 4e9, .wired = 2e9, .external = 4e9};
    scenario.processes = {
        {.pid = 100,
         .path = "/Applications/Inkwell.app/Contents/MacOS/Inkwell",
         .cpu = Curve::pulses(morningCPU, dayLength, morningLength),
         .memory = 600e6},
        {.pid = 101,
         .path = "/Applications/Ledger.app/Contents/MacOS/Ledger",
         .core = 1,
         .cpu = 0.05,
         .memory = 300e6,
         .disk = {.written = writtenPerSecond}},
    };
    return scenario;
}

class YearTest : public testing::Test {
  protected:
    void live(int days) {
        for (int passed = 0; passed < days; ++passed) {
            time.advance(awake);
            time.setWallClock(time.now() + (day - awake)); // it sleeps
        }
    }

    // At the moment of falling asleep, so that the last day is as long as the others.
    InsightsReport reportOfTheMonth() {
        time.advance(awake);
        std::optional<InsightsReport> report;
        history.report(30, [&](auto answer) { report = std::move(answer); });
        time.advance(0s);
        time.setWallClock(time.now() + (day - awake));
        EXPECT_TRUE(report);
        return report.value_or(InsightsReport{});
    }

    // In memory where that can be: a disk takes its time to write each minute for good.
    QTemporaryDir folder{(QDir("/dev/shm").exists() ? QString("/dev/shm") : QDir::tempPath()) +
                         "/tavero-year-XXXXXX"};
    std::filesystem::path file = folder.filePath("history.sqlite").toStdString();
    VirtualTime time{std::chrono::sys_days(std::chrono::year(2027) / 3 / 1)};
    Settings settings{folder.filePath("settings.ini")};
    SimMachine machine{workingYear(), [this] { return time.now(); }};
    History history{file, time.worker(), time, settings};
    Monitor monitor{
        machine.machine(),
        time.worker(),
        time,
        settings,
        {.recordHistory = [this](const LiveSnapshot& snapshot, std::optional<double> appSeconds) {
            history.record(snapshot, appSeconds);
        }}};
};

void expectTheTruth(const InsightsReport& report) {
    constexpr double days = 30;
    constexpr double awakeSeconds = 4 * 3600;
    EXPECT_NEAR(report.hoursAwake, days * 4, 0.1);
    const double load = 0.03 + (0.05 + morningCPU * morningLength / awakeSeconds) / cpuCount;
    EXPECT_NEAR(*report.averageCPU, load, load * 0.01);
    EXPECT_NEAR(report.diskWritten, days * awakeSeconds * writtenPerSecond,
                days * awakeSeconds * writtenPerSecond * 0.01);

    ASSERT_EQ(report.apps.size(), 2u);
    EXPECT_EQ(report.apps[0].name, "Inkwell");
    // A little more than a month of it counts: hours are UTC hours, and one before the period.
    EXPECT_NEAR(report.apps[0].cpuSeconds, days * morningLength * morningCPU,
                morningLength * morningCPU);
    EXPECT_NEAR(report.apps[0].averageMemory, 600e6, 6e6);
    EXPECT_EQ(report.apps[1].name, "Ledger");
    EXPECT_NEAR(report.apps[1].diskWritten, days * awakeSeconds * writtenPerSecond,
                awakeSeconds * writtenPerSecond);

    ASSERT_EQ(report.dailyCPU.size(), 30u);
    for (const DayValue& value : report.dailyCPU) EXPECT_NEAR(value.value, load, load * 0.02);
    for (std::size_t hour = 0; hour < 24; ++hour)
        EXPECT_EQ(report.cpuByHour[hour].has_value(), hour < 4) << hour;
    EXPECT_NEAR(*report.cpuByHour[0], 0.03 + (0.05 + morningCPU / 2) / cpuCount, 0.01);
    EXPECT_NEAR(*report.cpuByHour[3], 0.03 + 0.05 / cpuCount, 0.01);
}

TEST_F(YearTest, ThroughAYearItStaysBoundedAndItsLastMonthIsToldAsItWas) {
    monitor.start();
    live(34);
    expectTheTruth(reportOfTheMonth());
    const auto size = std::filesystem::file_size(file);
    live(329);
    const InsightsReport report = reportOfTheMonth();
    expectTheTruth(report);
    EXPECT_LT(report.daysOfData, 31);
    EXPECT_LE(std::filesystem::file_size(file), size * 105 / 100);
}

} // namespace
} // namespace tavero
