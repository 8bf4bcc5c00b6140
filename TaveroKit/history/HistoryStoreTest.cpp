#include "history/test/HistoryStoreTest.h"

#include <fstream>
#include <iterator>
#include <limits>

namespace tavero {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

// The file.

TEST_F(HistoryStoreTest, ANewFileHasItsThreeTables) {
    EXPECT_EQ(rows("SELECT sql FROM sqlite_schema WHERE type = 'table'"),
              (Rows{"CREATE TABLE minute (\n"
                    "    ts INTEGER PRIMARY KEY, cpu REAL, memory REAL, gpu REAL, watts REAL,"
                    " battery REAL,\n"
                    "    disk_read REAL, disk_write REAL, net_in REAL, net_out REAL)",
                    "CREATE TABLE app_hour (\n"
                    "    hour INTEGER, app TEXT, name TEXT, bundle_path TEXT,\n"
                    "    cpu_seconds REAL, memory_sum REAL, samples INTEGER, disk_written REAL,\n"
                    "    net_in REAL DEFAULT 0, net_out REAL DEFAULT 0,\n"
                    "    PRIMARY KEY (hour, app))",
                    "CREATE TABLE bluetooth_battery (\n"
                    "    ts INTEGER, device TEXT, percent INTEGER, PRIMARY KEY (ts, device))"}));
}

TEST_F(HistoryStoreTest, OpeningAFileAgainLeavesItUnchanged) {
    record(0, 0.5);
    store_.flush();
    const auto content = [&] {
        std::ifstream stream(file_, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(stream), {});
    };
    const std::string before = content();
    for (int i = 0; i < 2; ++i) {
        const HistoryStore again(file_);
        EXPECT_EQ(content(), before);
    }
}

TEST_F(HistoryStoreTest, TheFileHasSQLitesOwnSettings) {
    EXPECT_EQ(rows("PRAGMA journal_mode"), Rows{"delete"});
    EXPECT_EQ(rows("PRAGMA page_size"), Rows{"4096"});
    EXPECT_EQ(rows("PRAGMA user_version"), Rows{"0"});
}

TEST_F(HistoryStoreTest, AFileFromBeforeThereWereNetworkFiguresGainsThemWithZero) {
    const std::filesystem::path file = tree_.root() / "old.sqlite";
    SQLiteFile(file).run("CREATE TABLE app_hour (hour INTEGER, app TEXT, name TEXT,"
                         " bundle_path TEXT, cpu_seconds REAL, memory_sum REAL, samples INTEGER,"
                         " disk_written REAL, PRIMARY KEY (hour, app));"
                         "INSERT INTO app_hour VALUES"
                         " (1749988800, 'mail', 'Mail', NULL, 10, 20, 2, 30)");
    HistoryStore store(file);
    EXPECT_EQ(SQLiteFile(file).rows("SELECT app, cpu_seconds, net_in, net_out FROM app_hour"),
              Rows{"mail|10.0|0.0|0.0"});
    store.record({.date = at(60), .networkApps = {networkApp("mail", 1, 2)}}, 60);
    EXPECT_EQ(SQLiteFile(file).rows("SELECT app, cpu_seconds, net_in, net_out FROM app_hour"),
              Rows{"mail|10.0|60.0|120.0"});
}

TEST_F(HistoryStoreTest, WithoutAFileItKeepsTheHistoryInMemory) {
    HistoryStore store(std::nullopt);
    store.record({.date = at(0), .cpu = CPUSnapshot{.user = 0.5}}, std::nullopt);
    const Calendar utc([](std::int64_t) { return 0; });
    EXPECT_EQ(store.report(7, at(0), utc).averageCPU, 0.5);
}

// Minutes.

TEST_F(HistoryStoreTest, AMinuteIsTheMeanOfItsSamples) {
    const LiveSnapshot first{.date = at(120),
                             .cpu = CPUSnapshot{.user = 0.25, .system = 0.25},
                             .memory = MemorySnapshot{.app = 1, .wired = 2, .compressed = 4},
                             .gpu = GPUSnapshot{.device = 0.5},
                             .battery = BatterySnapshot{.percent = 80},
                             .systemWatts = 10,
                             .diskReadPerSecond = 1,
                             .diskWritePerSecond = 2,
                             .networkInPerSecond = 3,
                             .networkOutPerSecond = 4};
    LiveSnapshot second = first;
    second.date = at(179.9);
    second.cpu->user = 0.75;
    second.memory->app = 3;
    second.gpu->device = 1;
    second.battery->percent = 79;
    second.systemWatts = 20;
    second.diskReadPerSecond = 2;
    second.diskWritePerSecond = 4;
    second.networkInPerSecond = 6;
    second.networkOutPerSecond = 8;
    store_.record(first, std::nullopt);
    store_.record(second, std::nullopt);
    EXPECT_EQ(minutes("*"), Rows{});
    record(180, 0);
    EXPECT_EQ(minutes("cpu, memory, gpu, watts, battery, disk_read, disk_write, net_in, net_out"),
              Rows{"120|0.75|8.0|0.75|15.0|79.5|1.5|3.0|4.5|6.0"});
}

TEST_F(HistoryStoreTest, WhatNoSampleOfAMinuteCarriesIsNullExceptForRates) {
    store_.record({.date = at(0)}, std::nullopt);
    store_.flush();
    EXPECT_EQ(minutes("cpu, memory, gpu, watts, battery, disk_read, disk_write, net_in, net_out"),
              Rows{"0|NULL|NULL|NULL|NULL|NULL|0.0|0.0|0.0|0.0"});
}

TEST_F(HistoryStoreTest, SamplesWithoutAValueDoNotLowerItsMean) {
    record(0, 0.5);
    store_.record({.date = at(5)}, std::nullopt);
    store_.flush();
    EXPECT_EQ(minutes("cpu"), Rows{"0|0.5"});
}

TEST_F(HistoryStoreTest, APowerOfTheWholeSystemGoesBeforeTheBatterys) {
    store_.record({.date = at(0), .battery = BatterySnapshot{.watts = -30}, .systemWatts = 12},
                  std::nullopt);
    store_.flush();
    EXPECT_EQ(minutes("watts"), Rows{"0|12.0"});
}

TEST_F(HistoryStoreTest, APowerOfTheBatteryCountsByItsSizeWhicheverWayItFlows) {
    store_.record({.date = at(0), .battery = BatterySnapshot{.watts = -30}}, std::nullopt);
    store_.record({.date = at(1), .battery = BatterySnapshot{.watts = 10}}, std::nullopt);
    store_.record({.date = at(2), .battery = BatterySnapshot{}}, std::nullopt);
    store_.flush();
    EXPECT_EQ(minutes("watts"), Rows{"0|20.0"});
}

TEST_F(HistoryStoreTest, WhatIsNotANumberIsNoSample) {
    store_.record({.date = at(0),
                   .cpu = CPUSnapshot{.user = nan},
                   .systemWatts = infinity,
                   .diskReadPerSecond = -infinity,
                   .apps = {app("a", nan, 5)}},
                  60);
    store_.record({.date = at(1),
                   .cpu = CPUSnapshot{.user = 0.5},
                   .systemWatts = 3,
                   .diskReadPerSecond = 7,
                   .apps = {app("a", 1, 6)}},
                  infinity);
    store_.flush();
    EXPECT_EQ(minutes("cpu, watts, disk_read"), Rows{"0|0.5|3.0|7.0"});
    EXPECT_EQ(apps("cpu_seconds, memory_sum, samples"), Rows{"0|a|0.0|11.0|2"});
}

TEST_F(HistoryStoreTest, AMinuteWithoutAPassHasNoRow) {
    record(0, 0.5);
    record(600, 0.5);
    store_.flush();
    EXPECT_EQ(minutes("cpu"), (Rows{"0|0.5", "600|0.5"}));
}

TEST_F(HistoryStoreTest, AClockSetBackEndsTheMinuteToo) {
    record(600, 0.5);
    record(0, 0.25);
    EXPECT_EQ(minutes("cpu"), Rows{"600|0.5"});
    store_.flush();
    EXPECT_EQ(minutes("cpu"), (Rows{"0|0.25", "600|0.5"}));
}

TEST_F(HistoryStoreTest, AFlushInTheMiddleOfAMinuteLeavesOnlyTheSamplesAfterItInTheEnd) {
    record(0, 1);
    store_.flush();
    EXPECT_EQ(minutes("cpu"), Rows{"0|1.0"});
    record(30, 0.5);
    record(60, 0);
    EXPECT_EQ(minutes("cpu"), Rows{"0|0.5"});
}

TEST_F(HistoryStoreTest, AFlushWithNothingInMemoryWritesNothing) {
    store_.flush();
    record(0, 1);
    store_.flush();
    store_.flush();
    EXPECT_EQ(minutes("cpu"), Rows{"0|1.0"});
}

} // namespace
} // namespace tavero
