#include "presentation/PageInsight.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace tavero {
namespace {

constexpr std::uint64_t gibibyte = 1ull << 30;
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

AppUsage app(std::string name, AppIdentity::Kind kind = AppIdentity::Kind::app) {
    return {.identity = {kind, name}, .name = name};
}

class PageInsightTest : public testing::Test {
  protected:
    LiveSnapshot snapshot;
    Surroundings surroundings;

    // The two sentences with a bar between them.
    std::string verdict(Metric metric, const Format& format = {}) {
        const PageInsight found = insight(metric, snapshot, format, surroundings).value();
        return found.headline + " | " + found.detail;
    }
    AppUsage& add(std::string name, AppIdentity::Kind kind = AppIdentity::Kind::app) {
        return snapshot.apps.emplace_back(app(std::move(name), kind));
    }
};

class CPUInsight : public PageInsightTest {
  protected:
    void setLoad(double user, double idle, std::size_t cores) {
        snapshot.cpu =
            CPUSnapshot{.user = user, .idle = idle, .perCore = std::vector<double>(cores, user)};
    }
};

TEST_F(CPUInsight, OneAppIsNamedOnlyIfItMakesUpAGoodPartOfTheLoad) {
    setLoad(0.2, 0.8, 8);
    add("Editor").cpu = 0.5; // less than 0.2 * 8 * 0.4
    EXPECT_EQ(verdict(Metric::cpu), "Your Mac is mostly idle. | 80% of the CPU is free.");
    snapshot.apps[0].cpu = 0.65;
    EXPECT_EQ(verdict(Metric::cpu), "Editor is busy. | It is using most of the CPU right now.");
}

TEST_F(CPUInsight, ABusyAppIsNamedAlsoOnAnIdleMachine) {
    setLoad(0.01, 0.99, 16);
    add("Editor").cpu = 0.5;
    EXPECT_EQ(verdict(Metric::cpu), "Editor is busy. | It is using most of the CPU right now.");
    snapshot.apps[0].cpu = 0.49;
    EXPECT_EQ(verdict(Metric::cpu), "Your Mac is mostly idle. | 99% of the CPU is free.");
}

TEST_F(CPUInsight, ANoteTellsWhatTheBusyAppDoes) {
    setLoad(0.5, 0.5, 4);
    add("Editor").cpu = 1.5;
    snapshot.apps[0].note = "exporting a film";
    EXPECT_EQ(verdict(Metric::cpu), "Editor is busy. | It's exporting a film right now. It drops "
                                    "back when it finishes.");
}

TEST_F(CPUInsight, AHotCpuIsToldInTheUsersUnitBeforeTheBusiestApp) {
    setLoad(0.5, 0.5, 8);
    add("Editor").cpu = 0.3;
    snapshot.cpuTemperature = 90;
    EXPECT_EQ(verdict(Metric::cpu),
              "The CPU is hot. | 90°C right now. macOS may slow it down to cool off.");
    EXPECT_EQ(verdict(Metric::cpu, {.fahrenheit = true}),
              "The CPU is hot. | 194°F right now. macOS may slow it down to cool off.");
    snapshot.cpuTemperature = 89.9;
    EXPECT_EQ(verdict(Metric::cpu), "Normal load. | Editor is the busiest app.");
    snapshot.cpuTemperature = infinity;
    EXPECT_EQ(verdict(Metric::cpu), "Normal load. | Editor is the busiest app.");
    snapshot.apps.clear();
    EXPECT_EQ(verdict(Metric::cpu), "Normal load. | ");
}

TEST_F(CPUInsight, IdleEndsAtAQuarter) {
    setLoad(0.25, 0.75, 8);
    EXPECT_EQ(verdict(Metric::cpu), "Normal load. | ");
    setLoad(0.2499, 0.7501, 8);
    EXPECT_EQ(verdict(Metric::cpu), "Your Mac is mostly idle. | 75% of the CPU is free.");
}

TEST_F(CPUInsight, WithoutFiguresTheMachineIsIdleAndTheShareADash) {
    EXPECT_EQ(verdict(Metric::cpu), "Your Mac is mostly idle. | –% of the CPU is free.");
    setLoad(nan, nan, 0);
    EXPECT_EQ(verdict(Metric::cpu), "Your Mac is mostly idle. | –% of the CPU is free.");
    add("Editor").cpu = nan;
    EXPECT_EQ(verdict(Metric::cpu), "Your Mac is mostly idle. | –% of the CPU is free.");
}

TEST_F(CPUInsight, TheSystemIsNeverNamedAndATieGoesToTheFirst) {
    setLoad(0.9, 0.1, 1);
    add("macOS", AppIdentity::Kind::system).cpu = 9;
    add("Editor").cpu = 0.6;
    add("Mail").cpu = 0.6;
    EXPECT_EQ(verdict(Metric::cpu), "Editor is busy. | It is using most of the CPU right now.");
}

TEST_F(CPUInsight, AnotherSystemIsCalledByItsName) {
    surroundings.systemName = "Linux";
    EXPECT_EQ(verdict(Metric::cpu), "Your computer is mostly idle. | –% of the CPU is free.");
    setLoad(0.5, 0.5, 8);
    snapshot.cpuTemperature = 95;
    EXPECT_EQ(verdict(Metric::cpu),
              "The CPU is hot. | 95°C right now. Linux may slow it down to cool off.");
}

class MemoryInsight : public PageInsightTest {
  protected:
    void setMemory(MemoryPressure pressure) {
        snapshot.memory = MemorySnapshot{.total = 16 * gibibyte,
                                         .app = 6 * gibibyte,
                                         .cached = 4 * gibibyte,
                                         .pressure = pressure};
    }
};

TEST_F(MemoryInsight, PressureUnknownReadsAsPlentyOfRoom) {
    setMemory(MemoryPressure::unknown);
    EXPECT_EQ(verdict(Metric::memory), "Plenty of room. | 10.0 GB is available for apps.");
    setMemory(MemoryPressure::normal);
    EXPECT_EQ(verdict(Metric::memory), "Plenty of room. | 10.0 GB is available for apps.");
}

TEST_F(MemoryInsight, WithoutFiguresItIsStillReading) {
    EXPECT_EQ(verdict(Metric::memory), "Reading memory… | ");
}

TEST_F(MemoryInsight, UnderPressureTheLargestAppIsNamed) {
    for (const MemoryPressure pressure : {MemoryPressure::warning, MemoryPressure::critical}) {
        setMemory(pressure);
        snapshot.apps.clear();
        EXPECT_EQ(verdict(Metric::memory), "Your Mac is short on memory. | Quitting apps you're "
                                           "not using will help.");
        add("macOS", AppIdentity::Kind::system).memory = 9 * gibibyte;
        add("Editor").memory = gibibyte;
        add("Browser").memory = 7 * gibibyte;
        EXPECT_EQ(verdict(Metric::memory),
                  "Your Mac is short on memory. | Browser is using the most (7.0 GB). Quitting "
                  "apps you're not using will help.");
    }
}

TEST_F(MemoryInsight, AnAppThatGrowsComesFirst) {
    AppUsage& browser = add("Browser");
    browser.note = "growing for 6 min";
    browser.memoryChange = static_cast<std::int64_t>(gibibyte * 3 / 2);
    EXPECT_EQ(verdict(Metric::memory), "Memory is rising. | Browser grew 1.5 GB recently. "
                                       "Restarting it usually frees the memory.");
    browser.note = "still growing";
    EXPECT_EQ(verdict(Metric::memory), "Reading memory… | ");
}

TEST_F(MemoryInsight, OnlyTheFirstGrowerIsLookedAtAndTheLargestAppsComeFirst) {
    snapshot.memoryHeavyApps = {app("macOS", AppIdentity::Kind::system), app("Editor")};
    for (AppUsage& row : snapshot.memoryHeavyApps) row.note = "growing";
    AppUsage& browser = add("Browser");
    browser.note = "growing";
    browser.memoryChange = 1 << 30;
    for (const std::optional<std::int64_t> none :
         {std::optional<std::int64_t>(), std::optional<std::int64_t>(0),
          std::optional(std::numeric_limits<std::int64_t>::min())}) {
        snapshot.memoryHeavyApps[1].memoryChange = none;
        EXPECT_EQ(verdict(Metric::memory), "Reading memory… | ");
    }
    snapshot.memoryHeavyApps[1].memoryChange = 1;
    EXPECT_EQ(verdict(Metric::memory), "Memory is rising. | Editor grew 0 MB recently. Restarting "
                                       "it usually frees the memory.");
}

class GPUInsight : public PageInsightTest {
  protected:
    void setDevice(double device) { snapshot.gpu = GPUSnapshot{.device = device}; }
};

TEST_F(GPUInsight, MostlyIdleAlsoWithoutFigures) {
    const std::string idle =
        "The GPU is mostly idle. | macOS always uses a little to draw the screen.";
    EXPECT_EQ(verdict(Metric::gpu), idle);
    setDevice(nan);
    EXPECT_EQ(verdict(Metric::gpu), idle);
    setDevice(0.149);
    add("Game").gpu = 0.9;
    EXPECT_EQ(verdict(Metric::gpu), idle);
}

TEST_F(GPUInsight, FullyBusyNamesTheAppIfThereIsOne) {
    setDevice(0.9);
    add("Game").gpu = 0.02; // idling
    EXPECT_EQ(verdict(Metric::gpu),
              "The GPU is fully busy. | Games, video and 3D apps can do this.");
    snapshot.apps[0].gpu = 0.876;
    EXPECT_EQ(verdict(Metric::gpu), "The GPU is fully busy. | Game is using 88% of it.");
}

TEST_F(GPUInsight, AtWorkTellsNowAndTheLastMinute) {
    setDevice(0.15);
    EXPECT_EQ(verdict(Metric::gpu), "The GPU is working. | ");
    add("Game").gpu = 0.4;
    EXPECT_EQ(verdict(Metric::gpu), "Game is using the GPU most. | 40% right now, –% on average "
                                    "over the last minute.");
    snapshot.apps[0].gpuAverage = 0.25;
    EXPECT_EQ(verdict(Metric::gpu), "Game is using the GPU most. | 40% right now, 25% on average "
                                    "over the last minute.");
}

class PowerInsight : public PageInsightTest {
  protected:
    // Ten watts in all, an app that draws a fifth of them, and 20 minutes left.
    void SetUp() override {
        snapshot.battery = BatterySnapshot{.minutesToEmpty = 20, .watts = -10};
        add("Game").watts = 2;
    }
};

TEST_F(PowerInsight, QuittingIsWorthItFromFiveMinutes) {
    EXPECT_EQ(verdict(Metric::power),
              "Quitting Game would add about 5 m of battery. | Estimated from its share of your "
              "Mac's power use right now.");
    snapshot.battery->minutesToEmpty = 19; // a gain of 4.75 minutes
    EXPECT_EQ(verdict(Metric::power),
              "Game is using the most power. | About 2.0 W right now (estimated).");
    snapshot.battery->minutesToEmpty = 500;
    EXPECT_EQ(verdict(Metric::power),
              "Quitting Game would add about 2 h 5 m of battery. | Estimated from its share of "
              "your Mac's power use right now.");
    surroundings.systemName = "Linux";
    EXPECT_TRUE(verdict(Metric::power).ends_with("your computer's power use right now."));
}

TEST_F(PowerInsight, OnTheChargerNobodyIsToldToQuitAnApp) {
    snapshot.battery->onExternalPower = true;
    snapshot.battery->minutesToEmpty = 500;
    EXPECT_EQ(verdict(Metric::power),
              "Game is using the most power. | About 2.0 W right now (estimated).");
    snapshot.battery.reset();
    snapshot.systemWatts = 10;
    EXPECT_EQ(verdict(Metric::power),
              "Game is using the most power. | About 2.0 W right now (estimated).");
}

TEST_F(PowerInsight, NoGainIsToldWithoutSoundFigures) {
    const std::string most = "Game is using the most power. | About 2.0 W right now (estimated).";
    snapshot.battery->minutesToEmpty.reset();
    EXPECT_EQ(verdict(Metric::power), most);
    snapshot.battery->minutesToEmpty = 500;
    snapshot.battery->watts = -2; // not more than the app alone
    EXPECT_EQ(verdict(Metric::power), most);
    snapshot.battery->watts.reset();
    EXPECT_EQ(verdict(Metric::power), most);
    snapshot.battery->watts = -std::nextafter(2.0, 3.0);
    snapshot.battery->minutesToEmpty = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(verdict(Metric::power), most);
}

TEST_F(PowerInsight, LittlePowerIsLessThanHalfAWatt) {
    const std::string little = "Apps are using little power. | Nothing is drawing much right now.";
    snapshot.apps[0].watts = 0.49;
    EXPECT_EQ(verdict(Metric::power), little);
    snapshot.apps[0].watts = nan;
    EXPECT_EQ(verdict(Metric::power), little);
    snapshot.apps[0].watts.reset();
    EXPECT_EQ(verdict(Metric::power), little);
    snapshot.apps.clear();
    EXPECT_EQ(verdict(Metric::power), little);
}

class DiskInsight : public PageInsightTest {
  protected:
    void SetUp() override {
        snapshot.diskCapacity = 1'000'000'000'000;
        snapshot.diskAvailable = 500'000'000'000;
    }
};

TEST_F(DiskInsight, AlmostFullWinsOverAHeavyWriter) {
    snapshot.diskAvailable = 99'000'000'000;
    add("Backup").diskWriteRate = 9e6;
    EXPECT_EQ(verdict(Metric::disk), "Your disk is almost full. | 99.0 GB left. Your Mac slows "
                                     "down when it runs out of space.");
    snapshot.diskAvailable = 100'000'000'000;
    EXPECT_EQ(verdict(Metric::disk), "Backup is writing a lot. | 8.6 MB/s right now.");
}

TEST_F(DiskInsight, NothingLeftIsNeverLessThanNothing) {
    snapshot.diskAvailable = -1'000'000;
    EXPECT_EQ(verdict(Metric::disk), "Your disk is almost full. | 0.0 GB left. Your Mac slows "
                                     "down when it runs out of space.");
    snapshot.diskCapacity = 0; // does not divide
    EXPECT_TRUE(verdict(Metric::disk).starts_with("Your disk is almost full."));
    snapshot.diskAvailable = 5;
    EXPECT_EQ(verdict(Metric::disk), "The disk is quiet. | 0.0 GB free.");
}

TEST_F(DiskInsight, AHeavyWriterIsAnAppOfFiveMegabytesASecond) {
    add("macOS", AppIdentity::Kind::system).diskWriteRate = 1e9;
    add("Backup").diskWriteRate = 4'999'999;
    add("Broken").diskWriteRate = nan;
    EXPECT_EQ(verdict(Metric::disk), "The disk is quiet. | 500 GB free.");
    snapshot.apps[1].diskWriteRate = 5e6;
    EXPECT_EQ(verdict(Metric::disk), "Backup is writing a lot. | 4.8 MB/s right now.");
    EXPECT_EQ(verdict(Metric::disk, {.networkBits = true}),
              "Backup is writing a lot. | 40.0 Mb/s right now.");
}

TEST_F(DiskInsight, WithoutFiguresItIsQuiet) {
    snapshot.diskCapacity.reset();
    EXPECT_EQ(verdict(Metric::disk), "The disk is quiet. | 500 GB free.");
    snapshot.diskAvailable.reset();
    EXPECT_EQ(verdict(Metric::disk), "The disk is quiet. | ");
}

class NetworkInsight : public PageInsightTest {
  protected:
    AppUsage& addNetwork(std::string name, double rate, std::uint64_t total,
                         AppIdentity::Kind kind = AppIdentity::Kind::app) {
        AppUsage& row = snapshot.networkApps.emplace_back(app(std::move(name), kind));
        row.networkInRate = rate;
        row.networkInTotal = total;
        return row;
    }
};

TEST_F(NetworkInsight, AWeakSignalComesFirst) {
    snapshot.wifi = WiFiLink{.rssi = -76};
    snapshot.networkInPerSecond = 9e6;
    EXPECT_EQ(verdict(Metric::network), "The Wi-Fi signal is weak. | -76 dBm. Moving closer to the "
                                        "router usually speeds things up.");
}

TEST_F(NetworkInsight, ADownloadNamesWhoeverLoadsTheMostAlsoTheSystem) {
    snapshot.networkInPerSecond = 5e6;
    snapshot.networkOutPerSecond = 9e6;
    EXPECT_EQ(verdict(Metric::network), "Downloading at 4.8 MB/s | Something is pulling in a lot "
                                        "of data right now.");
    addNetwork("Browser", 1e6, 0);
    addNetwork("macOS", 2e6, 0, AppIdentity::Kind::system);
    addNetwork("Broken", nan, 0);
    EXPECT_EQ(verdict(Metric::network), "Downloading at 4.8 MB/s | Mostly macOS");
}

TEST_F(NetworkInsight, AnUploadIsNotableEarlier) {
    snapshot.networkInPerSecond = 4'999'999;
    snapshot.networkOutPerSecond = 2e6;
    EXPECT_EQ(verdict(Metric::network),
              "Uploading at 1.9 MB/s | Backups and cloud sync often do this.");
    addNetwork("Cloud", 0, 0).networkOutRate = 1e6;
    addNetwork("Browser", 9e5, 0);
    EXPECT_EQ(verdict(Metric::network), "Uploading at 1.9 MB/s | Mostly Cloud");
    snapshot.networkOutPerSecond = infinity;
    EXPECT_EQ(verdict(Metric::network), "The network is quiet. | ");
}

TEST_F(NetworkInsight, TheMostDataIsToldAboveAHundredMegabytes) {
    addNetwork("Browser", 5, 100'000'000);
    EXPECT_EQ(verdict(Metric::network), "The network is quiet. | ");
    addNetwork("Cloud", 0, 60'000'000).networkOutTotal = 60'000'000;
    EXPECT_EQ(verdict(Metric::network),
              "Cloud has used the most data. | 114 MB since Tavero started.");
    snapshot.networkApps[0].networkInTotal = std::numeric_limits<std::uint64_t>::max();
    snapshot.networkApps[0].networkOutTotal = 5; // does not wrap
    EXPECT_TRUE(verdict(Metric::network).starts_with("Browser has used the most data."));
}

TEST_F(NetworkInsight, AQuietNetworkTellsTheSignal) {
    const auto word = [&](std::int64_t rssi) {
        snapshot.wifi = WiFiLink{.rssi = rssi};
        return verdict(Metric::network);
    };
    EXPECT_EQ(word(-55), "The network is quiet. | Strong Wi-Fi signal.");
    EXPECT_EQ(word(-56), "The network is quiet. | Good Wi-Fi signal.");
    EXPECT_EQ(word(-66), "The network is quiet. | Good Wi-Fi signal.");
    EXPECT_EQ(word(-67), "The network is quiet. | Fair Wi-Fi signal.");
    EXPECT_EQ(word(-75), "The network is quiet. | Fair Wi-Fi signal.");
    snapshot.wifi.reset();
    EXPECT_EQ(verdict(Metric::network), "The network is quiet. | ");
}

TEST_F(PageInsightTest, TheTemperatureHasNoVerdict) {
    EXPECT_FALSE(insight(Metric::temperature, snapshot, {}, {}));
}

} // namespace
} // namespace tavero
