#include "presentation/MetricStats.h"

#include "presentation/Levels.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace tavero {
namespace {

using testing::ElementsAre;

constexpr std::uint64_t gibibyte = 1ull << 30;
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

const Format plain;
const Surroundings desk{.displays = 2, .openApps = 7, .uptime = "3 d 4 h"};

std::vector<std::string> lines(const std::vector<Stat>& list) {
    std::vector<std::string> texts;
    for (const Stat& stat : list) texts.push_back(stat.label + ": " + stat.value);
    return texts;
}

std::vector<std::string> page(Metric metric, const LiveSnapshot& snapshot) {
    return lines(stats(metric, snapshot, plain, desk));
}

AppUsage app(std::string name, AppIdentity::Kind kind = AppIdentity::Kind::app) {
    return {.identity = {kind, name}, .name = name};
}

AppUsage withMemory(AppUsage row, std::uint64_t memory) {
    row.memory = memory;
    return row;
}

TEST(MetricStats, WithoutDataTheFiguresAreThePlaceholder) {
    const LiveSnapshot nothing;
    const auto bare = [&](Metric metric) { return lines(stats(metric, nothing, plain, {})); };
    EXPECT_THAT(bare(Metric::cpu), ElementsAre("Load avg: –", "Temperature: –", "Fans: No fans",
                                               "Processes: –", "Uptime: –"));
    EXPECT_THAT(bare(Metric::memory),
                ElementsAre("Total: –", "Available: –", "Apps open: –", "Largest app: –"));
    EXPECT_THAT(bare(Metric::gpu),
                ElementsAre("Temperature: –", "Cores: –", "Displays: –", "Busiest app: None"));
    EXPECT_THAT(bare(Metric::power),
                ElementsAre("Time left: –", "Power draw: –", "Charger: –", "Cycle count: –"));
    EXPECT_THAT(bare(Metric::disk),
                ElementsAre("Read: 0 KB/s", "Write: 0 KB/s", "Busiest app: None"));
    EXPECT_THAT(bare(Metric::temperature), ElementsAre("CPU: –", "Fan: No fans"));
    EXPECT_THAT(bare(Metric::network), ElementsAre("Upload: 0 KB/s", "Connection: Connected"));
}

TEST(MetricStats, TheCPUPageTellsFansToTheLastTurn) {
    LiveSnapshot snapshot;
    snapshot.cpu = {.loadAverage = {3.456}};
    snapshot.cpuTemperature = 64.2;
    snapshot.fanRPM = {1200, 2349.5};
    snapshot.processCount = 1234;
    EXPECT_THAT(page(Metric::cpu, snapshot),
                ElementsAre("Load avg: 3.46", "Temperature: 64°C", "Fans: 2,350 rpm",
                            "Processes: 1,234", "Uptime: 3 d 4 h"));
    const Format german{.groupSeparator = "."};
    EXPECT_EQ(stats(Metric::cpu, snapshot, german, desk)[2].value, "2.350 rpm");
}

TEST(MetricStats, ATemperatureIsTintedByDegreesCelsiusWhateverTheUnit) {
    LiveSnapshot snapshot;
    const auto stat = [&](std::optional<double> celsius) {
        snapshot.cpuTemperature = celsius;
        return stats(Metric::cpu, snapshot, {.fahrenheit = true}, desk)[1];
    };
    EXPECT_EQ(stat(95).value, "203°F");
    EXPECT_EQ(stat(95).tint, Levels::danger);
    EXPECT_EQ(stat(94.9).tint, Levels::warning);
    EXPECT_EQ(stat(85).tint, Levels::warning);
    EXPECT_FALSE(stat(84.9).tint);
    EXPECT_FALSE(stat(std::nullopt).tint);
    EXPECT_EQ(stat(nan).value, "–");
    EXPECT_FALSE(stat(std::numeric_limits<double>::infinity()).tint);
}

TEST(MetricStats, TheTemperatureListHasNoTint) {
    LiveSnapshot snapshot;
    snapshot.cpuTemperature = 99;
    snapshot.fanRPM = {2350};
    const std::vector<Stat> list = stats(Metric::temperature, snapshot, plain, desk);
    EXPECT_THAT(lines(list), ElementsAre("CPU: 99°C", "Fan: 2.4k rpm"));
    EXPECT_FALSE(list[0].tint);
}

TEST(MetricStats, TheMemoryPageTellsWhatAppsCouldHave) {
    LiveSnapshot snapshot;
    snapshot.memory = {.total = 16 * gibibyte, .app = 6 * gibibyte, .cached = 4 * gibibyte};
    EXPECT_THAT(page(Metric::memory, snapshot), ElementsAre("Total: 16 GB", "Available: 10.0 GB",
                                                            "Apps open: 7", "Largest app: –"));
}

TEST(MetricStats, TheLargestAppIsSoughtInBothListsAndNeverTheSystem) {
    LiveSnapshot snapshot;
    snapshot.memoryHeavyApps = {withMemory(app("macOS", AppIdentity::Kind::system), 9 * gibibyte),
                                withMemory(app("Editor"), 2 * gibibyte)};
    snapshot.apps = {withMemory(app("Browser"), 2 * gibibyte),
                     withMemory(app("make", AppIdentity::Kind::tool), gibibyte)};
    const auto largest = [&] { return stats(Metric::memory, snapshot, plain, desk)[3]; };
    EXPECT_EQ(largest().value, "Editor · 2.0 GB");
    EXPECT_TRUE(largest().wide);
    snapshot.apps[1].memory = 3 * gibibyte;
    EXPECT_EQ(largest().value, "make · 3.0 GB");
}

TEST(MetricStats, TheBusiestGPUAppUsesMoreThanAHundredth) {
    LiveSnapshot snapshot;
    snapshot.gpu = {.cores = 10};
    snapshot.apps = {app("A"), app("B"), app("C"), app("macOS", AppIdentity::Kind::system)};
    snapshot.apps[3].gpu = 0.9;
    snapshot.apps[0].gpu = 0.01;
    EXPECT_THAT(page(Metric::gpu, snapshot),
                ElementsAre("Temperature: –", "Cores: 10", "Displays: 2", "Busiest app: None"));
    snapshot.apps[0].gpu = nan;
    snapshot.apps[1].gpu = 0.42;
    snapshot.apps[2].gpu = 0.42;
    const Stat busiest = stats(Metric::gpu, snapshot, plain, desk)[3];
    EXPECT_EQ(busiest.value, "B · 42%");
    EXPECT_TRUE(busiest.wide);
}

TEST(MetricStats, ThePowerPageFollowsTheBattery) {
    LiveSnapshot snapshot;
    snapshot.battery = {.isCharging = true, .onExternalPower = true, .cycleCount = 120};
    snapshot.systemWatts = 31.25;
    EXPECT_THAT(page(Metric::power, snapshot),
                ElementsAre("Full in: Estimating…", "Power draw: 31.2 W", "Charger: Connected",
                            "Cycle count: 120"));
    snapshot.battery->minutesToFull = 61;
    EXPECT_EQ(page(Metric::power, snapshot)[0], "Full in: 1 h 1 m");
    snapshot.battery->isCharging = false;
    EXPECT_EQ(page(Metric::power, snapshot)[0], "Time left: On power");
    snapshot.battery->onExternalPower = false;
    EXPECT_EQ(page(Metric::power, snapshot)[0], "Time left: Estimating…");
    EXPECT_EQ(page(Metric::power, snapshot)[2], "Charger: Not connected");
    snapshot.battery->minutesToEmpty = 12;
    EXPECT_EQ(page(Metric::power, snapshot)[0], "Time left: 12 m");
}

TEST(MetricStats, ThePowerPageWithoutABatteryStillTellsTheDraw) {
    LiveSnapshot snapshot;
    snapshot.systemWatts = 40;
    EXPECT_THAT(page(Metric::power, snapshot),
                ElementsAre("Time left: –", "Power draw: 40.0 W", "Charger: –", "Cycle count: –"));
}

TEST(MetricStats, TheBusiestDiskAppMovesMoreThanAKilobyte) {
    LiveSnapshot snapshot;
    snapshot.apps = {app("A"), app("B"), app("macOS", AppIdentity::Kind::system)};
    snapshot.apps[0].diskReadRate = 1024;
    snapshot.apps[2].diskReadRate = 1e9;
    EXPECT_EQ(page(Metric::disk, snapshot)[2], "Busiest app: None");
    snapshot.apps[1].diskReadRate = 2048;
    snapshot.apps[1].diskWriteRate = 1024;
    EXPECT_EQ(page(Metric::disk, snapshot)[2], "Busiest app: B · 3 KB/s");
    snapshot.apps[0].diskWriteRate = 2048;
    EXPECT_EQ(page(Metric::disk, snapshot)[2], "Busiest app: A · 3 KB/s");
    snapshot.apps[0].diskWriteRate = nan;
    EXPECT_EQ(page(Metric::disk, snapshot)[2], "Busiest app: B · 3 KB/s");
}

TEST(MetricStats, TheConnectionNamesTheWiFiStandardIfItIsKnown) {
    LiveSnapshot snapshot;
    const auto connection = [&] { return stats(Metric::network, snapshot, plain, desk)[1]; };
    snapshot.connection = ConnectionKind::wifi;
    EXPECT_EQ(connection().value, "Wi-Fi");
    EXPECT_EQ(connection().symbol(), "network");
    snapshot.wifi = WiFiLink{.standard = "Wi-Fi 6"};
    EXPECT_EQ(connection().value, "Wi-Fi 6");
    EXPECT_EQ(connection().symbol(), "wifi");
    snapshot.wifi->standard.reset();
    EXPECT_EQ(connection().value, "Wi-Fi");
    snapshot.connection = ConnectionKind::wired;
    EXPECT_EQ(connection().value, "Wired");
    snapshot.connection = ConnectionKind::cellular;
    EXPECT_EQ(connection().value, "Hotspot");
    snapshot.connection = ConnectionKind::offline;
    EXPECT_EQ(connection().value, "Offline");
}

TEST(OverviewStats, OnlyListsOfFiveOrMoreAreCut) {
    const LiveSnapshot nothing;
    const auto count = [&](Metric metric) {
        return overviewStats(metric, nothing, plain, desk).size();
    };
    EXPECT_EQ(count(Metric::memory), 4u);
    EXPECT_EQ(count(Metric::power), 4u);
    EXPECT_EQ(count(Metric::gpu), 4u);
    EXPECT_EQ(count(Metric::disk), 3u);
    EXPECT_EQ(count(Metric::temperature), 2u);
}

TEST(OverviewStats, TheCPUCardTellsUserAndSystem) {
    LiveSnapshot snapshot;
    const auto card = [&] { return overviewStats(Metric::cpu, snapshot, plain, desk); };
    EXPECT_THAT(lines(card()), ElementsAre("User: –%", "System: –%", "Load avg: –", "Temp: –"));
    snapshot.cpu = {.user = 0.25, .system = 0.1, .loadAverage = {1.5}};
    snapshot.cpuTemperature = 90;
    EXPECT_THAT(lines(card()),
                ElementsAre("User: 25%", "System: 10%", "Load avg: 1.50", "Temp: 90°C"));
    EXPECT_EQ(card()[3].tint, Levels::warning);
}

TEST(OverviewStats, TheNetworkCardTellsRatesAndTotals) {
    LiveSnapshot snapshot;
    snapshot.networkInPerSecond = 2048;
    snapshot.networkOutPerSecond = 1024;
    snapshot.networkInTotal = 1'500'000'000;
    snapshot.networkOutTotal = 250'000'000'000;
    EXPECT_THAT(lines(overviewStats(Metric::network, snapshot, plain, desk)),
                ElementsAre("Download: 2 KB/s", "Upload: 1 KB/s", "Downloaded: 1.5 GB",
                            "Uploaded: 250 GB"));
}

} // namespace
} // namespace tavero
