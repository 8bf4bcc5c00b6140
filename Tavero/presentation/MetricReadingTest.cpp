#include "presentation/MetricReading.h"

#include <gtest/gtest.h>

#include <limits>

namespace tavero {
namespace {

constexpr std::uint64_t gibibyte = 1ull << 30;
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

const Format plain;

Reading read(Metric metric, const LiveSnapshot& snapshot) {
    return reading(metric, snapshot, plain);
}

TEST(MetricReading, WithoutDataEveryMetricKeepsItsUnit) {
    const LiveSnapshot nothing;
    EXPECT_EQ(read(Metric::cpu, nothing), (Reading{"–", "%", ""}));
    EXPECT_EQ(read(Metric::memory, nothing), (Reading{"–", "GB", ""}));
    EXPECT_EQ(read(Metric::gpu, nothing), (Reading{"–", "%", ""}));
    EXPECT_EQ(read(Metric::power, nothing), (Reading{"–", "W", ""}));
    EXPECT_EQ(read(Metric::disk, nothing), (Reading{"–", "GB free", "0 KB/s"}));
    EXPECT_EQ(read(Metric::temperature, nothing), (Reading{"–", "°C", "No fans"}));
    EXPECT_EQ(read(Metric::network, nothing), (Reading{"0", "KB/s", "↑ 0 KB/s"}));
}

TEST(MetricReading, CPUTellsLoadAndThreads) {
    LiveSnapshot snapshot;
    snapshot.cpu = {.user = 0.3, .system = 0.17, .perCore = {0, 0, 0, 0}, .loadAverage = {2.34}};
    EXPECT_EQ(read(Metric::cpu, snapshot), (Reading{"47", "%", "Load 2.3 of 4"}));
}

TEST(MetricReading, MemoryTellsUsedOfInstalled) {
    LiveSnapshot snapshot;
    snapshot.memory = {.total = 16 * gibibyte + gibibyte / 2,
                       .app = 4 * gibibyte,
                       .wired = 2 * gibibyte,
                       .compressed = gibibyte / 2,
                       .cached = 5 * gibibyte,
                       .pressure = MemoryPressure::warning};
    EXPECT_EQ(read(Metric::memory, snapshot), (Reading{"6.5", "/ 17 GB", "Pressure high"}));
    snapshot.memory->pressure = MemoryPressure::critical;
    EXPECT_EQ(read(Metric::memory, snapshot).note, "Pressure critical");
    snapshot.memory->pressure = MemoryPressure::normal;
    EXPECT_EQ(read(Metric::memory, snapshot).note, "Normal");
    snapshot.memory->pressure = MemoryPressure::unknown;
    EXPECT_EQ(read(Metric::memory, snapshot).note, "");
}

TEST(MetricReading, GPUTellsItsMemory) {
    LiveSnapshot snapshot;
    snapshot.gpu = {.device = 0.126, .memoryInUse = 3 * gibibyte / 2};
    EXPECT_EQ(read(Metric::gpu, snapshot), (Reading{"13", "%", "1.5 GB"}));
}

TEST(MetricReading, PowerIsChargeWithABatteryAndWattsWithout) {
    LiveSnapshot snapshot;
    snapshot.systemWatts = 12.34;
    EXPECT_EQ(read(Metric::power, snapshot), (Reading{"12.3", "W", ""}));
    snapshot.battery = {.percent = 80, .onExternalPower = true};
    EXPECT_EQ(read(Metric::power, snapshot), (Reading{"80", "%", "Plugged in"}));
}

TEST(MetricReading, DiskTellsFreeSpaceAndTraffic) {
    LiveSnapshot snapshot;
    snapshot.diskAvailable = 412'600'000'000;
    snapshot.diskReadPerSecond = 1024 * 1024;
    snapshot.diskWritePerSecond = 512 * 1024;
    EXPECT_EQ(read(Metric::disk, snapshot), (Reading{"413", "GB free", "1.5 MB/s"}));
    snapshot.diskAvailable = -5;
    EXPECT_EQ(read(Metric::disk, snapshot).value, "0.0");
}

TEST(MetricReading, AnUnknownFreeSpaceKeepsTheTraffic) {
    LiveSnapshot snapshot;
    snapshot.diskReadPerSecond = 2048;
    EXPECT_EQ(read(Metric::disk, snapshot), (Reading{"–", "GB free", "2 KB/s"}));
}

TEST(MetricReading, TemperatureHasTheShortFormOfTheFans) {
    LiveSnapshot snapshot;
    snapshot.cpuTemperature = 64.2;
    snapshot.fanRPM = {1200, 2350};
    EXPECT_EQ(read(Metric::temperature, snapshot), (Reading{"64", "°C", "2.4k rpm"}));
}

TEST(MetricReading, NetworkTellsUploadBelow) {
    LiveSnapshot snapshot;
    snapshot.networkInPerSecond = 2.5 * 1024 * 1024;
    snapshot.networkOutPerSecond = 30 * 1024;
    EXPECT_EQ(read(Metric::network, snapshot), (Reading{"2.5", "MB/s", "↑ 30 KB/s"}));
    EXPECT_EQ(reading(Metric::network, snapshot, {.networkBits = true}),
              (Reading{"21.0", "Mb/s", "↑ 246 Kb/s"}));
}

TEST(MetricReading, WhatIsNoNumberReadsAsThePlaceholder) {
    LiveSnapshot snapshot;
    snapshot.cpu = {.user = nan, .loadAverage = {nan}};
    snapshot.systemWatts = nan;
    snapshot.diskReadPerSecond = nan;
    EXPECT_EQ(read(Metric::cpu, snapshot), (Reading{"–", "%", "Load – of 0"}));
    EXPECT_EQ(read(Metric::power, snapshot).value, "–");
    EXPECT_EQ(read(Metric::disk, snapshot).note, "– KB/s");
}

TEST(GraphLabel, DropsADecimalOfZero) {
    constexpr double mebibyte = 1024 * 1024;
    EXPECT_EQ(graphLabel(2 * mebibyte, plain), "2 MB/s");
    EXPECT_EQ(graphLabel(1.5 * mebibyte, plain), "1.5 MB/s");
    EXPECT_EQ(graphLabel(10000 * mebibyte, plain), "10000 MB/s");
    EXPECT_EQ(graphLabel(830 * 1024, plain), "830 KB/s");
    EXPECT_EQ(graphLabel(250'000, {.networkBits = true}), "2 Mb/s");
}

TEST(PowerDraw, OnBatteryTheBatterysOwnFigureWins) {
    LiveSnapshot snapshot;
    snapshot.systemWatts = 20;
    snapshot.battery = {.watts = -8.5};
    EXPECT_EQ(powerDraw(snapshot), 8.5);
}

TEST(PowerDraw, OnTheChargerTheMachinesTotalWins) {
    LiveSnapshot snapshot;
    snapshot.battery = {.onExternalPower = true, .watts = 30};
    EXPECT_EQ(powerDraw(snapshot), 30);
    snapshot.systemWatts = 20;
    EXPECT_EQ(powerDraw(snapshot), 20);
}

TEST(PowerDraw, ABatteryThatHardlyFlowsGivesWayToTheTotal) {
    LiveSnapshot snapshot;
    snapshot.battery = {.watts = -0.1};
    EXPECT_EQ(powerDraw(snapshot), 0.1);
    snapshot.systemWatts = 20;
    EXPECT_EQ(powerDraw(snapshot), 20);
}

TEST(PowerDraw, IsAbsentIfNothingIsKnown) {
    LiveSnapshot snapshot;
    EXPECT_FALSE(powerDraw(snapshot));
    snapshot.battery.emplace();
    EXPECT_FALSE(powerDraw(snapshot));
    snapshot.battery->watts = nan;
    snapshot.systemWatts = std::numeric_limits<double>::infinity();
    EXPECT_FALSE(powerDraw(snapshot));
}

TEST(FreeSpace, IsNeverNegative) {
    LiveSnapshot snapshot;
    EXPECT_FALSE(freeSpace(snapshot));
    snapshot.diskAvailable = std::numeric_limits<std::int64_t>::min();
    EXPECT_EQ(freeSpace(snapshot), 0u);
    snapshot.diskAvailable = 7;
    EXPECT_EQ(freeSpace(snapshot), 7u);
}

} // namespace
} // namespace tavero
