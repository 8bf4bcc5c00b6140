#include "monitor/AppLogs.h"

#include <gtest/gtest.h>

#include <limits>

namespace tavero {
namespace {

using namespace std::chrono_literals;

constexpr Date start{1'700'000'000s};
constexpr std::uint64_t installed = 16'000'000'000;
constexpr std::uint64_t megabyte = 1'000'000;

AppUsage app(std::string name, double cpu = 0, std::uint64_t memory = 0) {
    return {.identity = {AppIdentity::Kind::app, name}, .name = name, .cpu = cpu, .memory = memory};
}

LiveSnapshot at(Date date, std::vector<AppUsage> apps) {
    LiveSnapshot snapshot;
    snapshot.date = date;
    snapshot.apps = std::move(apps);
    return snapshot;
}

// The row with its averages, at the date of the last pass.
AppUsage withAverages(const AppLogs& logs, AppUsage row, Date now = start) {
    return logs.withAverages(std::move(row), installed, now);
}

// One app's memory, entry by entry; then the row as it is now.
AppUsage grown(std::initializer_list<std::pair<std::chrono::seconds, std::uint64_t>> entries,
               AppUsage row, std::chrono::seconds now) {
    AppLogs logs;
    for (const auto& [second, memory] : entries)
        logs.recordMemory(at(start + second, {app("Editor", 0, memory)}));
    return withAverages(logs, std::move(row), start + now);
}

TEST(AppLogs, TheFirstAverageIsTheMeanOfOneValue) {
    AppLogs logs;
    EXPECT_FALSE(withAverages(logs, app("Editor")).cpuAverage);
    logs.recordCPU(at(start, {app("Editor", 0.5)}));
    EXPECT_EQ(withAverages(logs, app("Editor")).cpuAverage, 0.5);
    EXPECT_FALSE(withAverages(logs, app("Mail")).cpuAverage);
}

TEST(AppLogs, TheAverageIsThatOfTheLastMinute) {
    AppLogs logs;
    logs.recordCPU(at(start, {app("Editor", 3)}));
    logs.recordCPU(at(start + 30s, {app("Editor", 1)}));
    logs.recordCPU(at(start + 60s, {app("Editor", 2)})); // the first is exactly a minute old
    EXPECT_EQ(withAverages(logs, app("Editor")).cpuAverage, 2);
    logs.recordCPU(at(start + 61s, {app("Editor", 3)}));
    EXPECT_EQ(withAverages(logs, app("Editor")).cpuAverage, 2);
    logs.recordCPU(at(start + 91s, {app("Editor", 4)}));
    EXPECT_EQ(withAverages(logs, app("Editor")).cpuAverage, 3);
}

TEST(AppLogs, GPUHasItsMeanAndItsPeak) {
    AppLogs logs;
    AppUsage row = app("Game");
    for (const double gpu : {0.2, 0.9, 0.4}) {
        row.gpu = gpu;
        logs.recordCPU(at(start, {row}));
    }
    const AppUsage shown = withAverages(logs, row);
    EXPECT_DOUBLE_EQ(*shown.gpuAverage, 0.5);
    EXPECT_EQ(shown.gpuPeak, 0.9);
}

TEST(AppLogs, TheGPULogIsTrimmedOnlyWhenItGrows) {
    AppLogs logs;
    AppUsage row = app("Game", 1);
    row.gpu = 0.8;
    logs.recordCPU(at(start, {row}));
    row.gpu.reset();
    logs.recordCPU(at(start + 90s, {row}));
    EXPECT_EQ(withAverages(logs, row).gpuAverage, 0.8);
    row.gpu = 0.2;
    logs.recordCPU(at(start + 91s, {row}));
    EXPECT_EQ(withAverages(logs, row).gpuAverage, 0.2);
}

TEST(AppLogs, WithoutAGPULogTheRowsFiguresStay) {
    AppLogs logs;
    logs.recordCPU(at(start, {app("Editor", 1)}));
    AppUsage row = app("Editor");
    row.gpuAverage = 0.3;
    row.gpuPeak = 0.4;
    const AppUsage shown = withAverages(logs, row);
    EXPECT_EQ(shown.gpuAverage, 0.3);
    EXPECT_EQ(shown.gpuPeak, 0.4);
}

TEST(AppLogs, ARowThatIsNotInThePassLosesItsLogAtOnce) {
    AppLogs logs;
    logs.recordCPU(at(start, {app("Editor", 1), app("Mail", 1)}));
    logs.recordCPU(at(start + 1s, {app("Mail", 1)}));
    EXPECT_FALSE(withAverages(logs, app("Editor")).cpuAverage);
    logs.recordCPU(at(start + 2s, {app("Editor", 3)}));
    EXPECT_EQ(withAverages(logs, app("Editor")).cpuAverage, 3);
}

TEST(AppLogs, ChildrenHaveAveragesAndASharesButNoGrowth) {
    AppUsage parent = app("Browser", 2, 4'000'000'000);
    parent.children = {app("Renderer", 1.5, 1'600'000'000)};
    parent.children[0].gpu = 0.25;
    AppLogs logs;
    logs.recordCPU(at(start, {parent}));
    logs.recordMemory(at(start, {parent}));
    const AppUsage shown = withAverages(logs, parent, start + 600s);
    EXPECT_EQ(shown.memoryShare, 0.25);
    EXPECT_EQ(shown.memoryChange, 0);
    const AppUsage& child = shown.children.at(0);
    EXPECT_EQ(child.cpuAverage, 1.5);
    EXPECT_EQ(child.gpuPeak, 0.25);
    EXPECT_EQ(child.memoryShare, 0.1);
    EXPECT_FALSE(child.memoryChange);
    EXPECT_FALSE(child.note);
}

TEST(AppLogs, AnUnknownInstalledMemoryDividesNothing) {
    EXPECT_EQ(AppLogs().withAverages(app("Editor", 0, 7), 0, start).memoryShare, 7);
}

TEST(AppLogs, MemoryChangesNeedFiveMinutesOfLogByTheClock) {
    const AppUsage row = app("Editor", 0, 300 * megabyte);
    EXPECT_FALSE(grown({{0s, 100 * megabyte}}, row, 299s).memoryChange);
    EXPECT_EQ(grown({{0s, 100 * megabyte}}, row, 300s).memoryChange, 200'000'000);
    EXPECT_EQ(grown({{0s, 400 * megabyte}}, row, 300s).memoryChange, -100'000'000);
}

TEST(AppLogs, AGrowthOfHalfAGigabyteIsNoted) {
    const AppUsage row = app("Editor", 0, 700 * megabyte);
    EXPECT_EQ(grown({{0s, 200 * megabyte}}, row, 359s).note, "growing for 5 min");
    EXPECT_FALSE(grown({{0s, 201 * megabyte}}, row, 359s).note);
}

TEST(AppLogs, GrowthIsCountedFromTheEarliestOfTheLowestEntries) {
    const AppUsage row = app("Editor", 0, 900 * megabyte);
    const auto shown = grown({{0s, 400 * megabyte},
                              {60s, 300 * megabyte},
                              {120s, 300 * megabyte},
                              {600s, 900 * megabyte}},
                             row, 660s);
    EXPECT_EQ(shown.note, "growing for 10 min");
    EXPECT_EQ(shown.memoryChange, 500'000'000);
}

TEST(AppLogs, GrowthSinceLessThanAMinuteReadsOne) {
    const AppUsage row = app("Editor", 0, 900 * megabyte);
    const auto shown = grown({{0s, 400 * megabyte}, {300s, 100 * megabyte}}, row, 310s);
    EXPECT_EQ(shown.note, "growing for 1 min");
}

TEST(AppLogs, ARowBelowItsPeakHasAChangeAndNoNote) {
    const AppUsage row = app("Editor", 0, 700 * megabyte);
    const auto shown = grown({{0s, 100 * megabyte}, {60s, 800 * megabyte}}, row, 400s);
    EXPECT_EQ(shown.memoryChange, 600'000'000);
    EXPECT_FALSE(shown.note);
}

TEST(AppLogs, ANoteFromTheEngineStays) {
    AppUsage row = app("Editor", 0, 900 * megabyte);
    row.note = "mostly helper";
    const auto shown = grown({{0s, 100 * megabyte}}, row, 400s);
    EXPECT_EQ(shown.note, "mostly helper");
    EXPECT_EQ(shown.memoryChange, 800'000'000);
}

TEST(AppLogs, MemoryIsLoggedOnceAMinute) {
    // Were the entry of 59 s kept, it would be the low.
    const AppUsage row = app("Editor", 0, 900 * megabyte);
    EXPECT_EQ(grown({{0s, 500 * megabyte}, {59s, 100 * megabyte}}, row, 300s).note, std::nullopt);
    EXPECT_EQ(grown({{0s, 500 * megabyte}, {60s, 100 * megabyte}}, row, 300s).note,
              "growing for 4 min");
}

TEST(AppLogs, MemoryIsKeptForAnHour) {
    const AppUsage row = app("Editor", 0, 500 * megabyte);
    EXPECT_EQ(grown({{0s, 100 * megabyte}, {3600s, 400 * megabyte}}, row, 3600s).memoryChange,
              400'000'000);
    EXPECT_EQ(grown({{0s, 100 * megabyte}, {3601s, 400 * megabyte}}, row, 3901s).memoryChange,
              100'000'000);
}

TEST(AppLogs, AnAppThatIsAwayKeepsItsMemoryLogForAnHour) {
    AppLogs logs;
    const AppUsage row = app("Editor", 0, 500 * megabyte);
    logs.recordMemory(at(start, {row}));
    logs.recordMemory(at(start + 3599s, {app("Mail")}));
    EXPECT_TRUE(withAverages(logs, row, start + 3599s).memoryChange);
    logs.recordMemory(at(start + 3600s, {app("Mail")}));
    EXPECT_FALSE(withAverages(logs, row, start + 3600s).memoryChange);
}

TEST(AppLogs, AClockSetBackStartsTheLogsAnew) {
    AppLogs logs;
    logs.recordCPU(at(start + 24h, {app("Editor", 4)}));
    logs.recordMemory(at(start + 24h, {app("Editor", 0, 100 * megabyte)}));
    logs.recordCPU(at(start, {app("Editor", 1)}));
    logs.recordMemory(at(start, {app("Editor", 0, 300 * megabyte)}));
    const AppUsage shown = withAverages(logs, app("Editor", 0, 400 * megabyte), start + 300s);
    EXPECT_EQ(shown.cpuAverage, 1);
    EXPECT_EQ(shown.memoryChange, 100'000'000);
}

TEST(AppLogs, HugeMemoryGivesTheLargestChange) {
    constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    EXPECT_EQ(grown({{0s, 0}}, app("Editor", 0, most), 300s).memoryChange,
              std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(grown({{0s, most}}, app("Editor", 0, 0), 300s).memoryChange,
              -std::numeric_limits<std::int64_t>::max());
}

TEST(AppLogs, AUsageThatIsNoNumberIsNotLogged) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    AppLogs logs;
    AppUsage row = app("Editor", nan);
    row.gpu = nan;
    logs.recordCPU(at(start, {row}));
    EXPECT_FALSE(withAverages(logs, row).cpuAverage);
    EXPECT_FALSE(withAverages(logs, row).gpuPeak);
    logs.recordCPU(at(start, {app("Editor", 2)}));
    EXPECT_EQ(withAverages(logs, row).cpuAverage, 2);
}

} // namespace
} // namespace tavero
