#include "MonitorEngine.h"

#include <gtest/gtest.h>

#include <chrono>
#include <limits>
#include <string>
#include <vector>

namespace tavero {
namespace {

using namespace std::chrono_literals;
using Detail = MonitorEngine::Detail;

ProcessSample process(std::int32_t pid, std::string app, double cpu, std::uint64_t memory = 1) {
    return {.pid = pid,
            .name = app,
            .path = "/opt/" + app,
            .cpu = cpu,
            .memory = memory,
            .hasUsage = true,
            .app = {AppIdentity::Kind::tool, app}};
}

// An engine over readers that give settable values and count how often they are asked.
class MonitorEngineTest : public testing::Test {
  protected:
    DiskSnapshot disk{.bytesRead = 1000, .bytesWritten = 500};
    std::optional<NetworkSnapshot> network = NetworkSnapshot{.bytesIn = 70, .bytesOut = 30};
    std::vector<VolumeInfo> volumes{{.name = "System", .path = "/"}};
    std::optional<TemperatureSnapshot> temperatures =
        TemperatureSnapshot{{{"tdie", 60}, {"battery", 30}}};
    std::optional<WiFiLink> wifi = WiFiLink{.rssi = -50};
    std::vector<ProcessSample> processes;
    std::unordered_map<std::int32_t, double> gpuShares;
    std::unordered_map<std::int32_t, NetworkBytes> networkUsage;
    SMCSnapshot smc{.fanRPM = {1200}, .systemWatts = 9.0};
    std::optional<BatterySnapshot> battery = BatterySnapshot{.percent = 50};
    std::vector<std::string> asked;
    std::vector<bool> freeSpaceAsked;

    Date now{1'800'000'000s};
    MonitorEngine engine{all()};

    Readers all() {
        const auto note = [this](const char* name) { asked.emplace_back(name); };
        Readers readers;
        readers.cpu = [=] {
            note("cpu");
            return CPUSnapshot{.user = 0.5};
        };
        readers.memory = [=] {
            note("memory");
            return MemorySnapshot{.total = 8};
        };
        readers.disk = [=, this](bool includeFreeSpace) {
            note("disk");
            freeSpaceAsked.push_back(includeFreeSpace);
            DiskSnapshot snapshot = disk;
            if (includeFreeSpace) {
                snapshot.capacity = 100;
                snapshot.available = 40;
                snapshot.purgeable = 5;
                snapshot.name = "Disk";
            }
            return snapshot;
        };
        readers.volumes = [=, this] {
            note("volumes");
            return volumes;
        };
        readers.network = [=, this] {
            note("network");
            return network;
        };
        readers.sensors = [=, this] {
            note("sensors");
            return temperatures;
        };
        readers.wifi = [=, this] {
            note("wifi");
            return wifi;
        };
        readers.processes = [=, this](bool) -> std::span<const ProcessSample> {
            note("processes");
            return processes;
        };
        readers.displayName = [](const AppIdentity& identity) { return identity.id; };
        readers.appGPU = [=, this] {
            note("appGPU");
            return gpuShares;
        };
        readers.networkUsage = [=, this] {
            note("networkUsage");
            return networkUsage;
        };
        readers.smc = [=, this] {
            note("smc");
            return smc;
        };
        readers.gpu = [=] {
            note("gpu");
            return GPUSnapshot{.device = 0.3};
        };
        readers.battery = [=, this] {
            note("battery");
            return battery;
        };
        readers.sound = [=] {
            note("sound");
            return SoundSnapshot{.volume = 0.5};
        };
        readers.connection = [=] {
            note("connection");
            return ConnectionKind::wired;
        };
        return readers;
    }

    LiveSnapshot pass(Detail detail, std::int64_t topApps = 20) {
        return engine.sample(detail, topApps, false, now);
    }
    LiveSnapshot passAfter(std::chrono::nanoseconds time, Detail detail) {
        now += time;
        return pass(detail);
    }
};

using Names = std::vector<std::string>;

TEST_F(MonitorEngineTest, AFullPassReadsEverythingInItsOrder) {
    pass(Detail::full);
    EXPECT_EQ(asked, (Names{"disk", "volumes", "network", "sensors", "wifi", "processes", "appGPU",
                            "networkUsage", "smc", "cpu", "memory", "gpu", "battery", "sound",
                            "connection"}));
}

TEST_F(MonitorEngineTest, ALightPassReadsOnlyWhatIsCheap) {
    pass(Detail::light);
    EXPECT_EQ(asked, (Names{"disk", "network", "cpu", "memory", "connection"}));
    EXPECT_EQ(freeSpaceAsked, (std::vector<bool>{false}));
}

TEST_F(MonitorEngineTest, TheFirstPassHasTotalsButNoRates) {
    const LiveSnapshot first = pass(Detail::full);
    EXPECT_EQ(first.date, now);
    EXPECT_EQ(first.diskReadTotal, 1000u);
    EXPECT_EQ(first.diskWrittenTotal, 500u);
    EXPECT_EQ(first.networkInTotal, 70u);
    EXPECT_EQ(first.networkOutTotal, 30u);
    EXPECT_EQ(first.diskReadPerSecond, 0);
    EXPECT_EQ(first.diskWritePerSecond, 0);
    EXPECT_EQ(first.networkInPerSecond, 0);
    EXPECT_EQ(first.networkOutPerSecond, 0);
}

TEST_F(MonitorEngineTest, RatesAreDifferencesBetweenPassesOfAnyDepth) {
    pass(Detail::full);
    disk = {.bytesRead = 3000, .bytesWritten = 600};
    network = NetworkSnapshot{.bytesIn = 170, .bytesOut = 80};
    const LiveSnapshot light = passAfter(2s, Detail::light);
    EXPECT_DOUBLE_EQ(light.diskReadPerSecond, 1000);
    EXPECT_DOUBLE_EQ(light.diskWritePerSecond, 50);
    EXPECT_DOUBLE_EQ(light.networkInPerSecond, 50);
    EXPECT_DOUBLE_EQ(light.networkOutPerSecond, 25);
    disk.bytesRead += 500;
    EXPECT_DOUBLE_EQ(passAfter(500ms, Detail::light).diskReadPerSecond, 1000);
}

TEST_F(MonitorEngineTest, ACounterThatStepsBackGivesAHugeRateForOnePass) {
    pass(Detail::full);
    disk.bytesRead = 999;
    EXPECT_DOUBLE_EQ(passAfter(1s, Detail::light).diskReadPerSecond,
                     static_cast<double>(std::numeric_limits<std::uint64_t>::max()));
    EXPECT_EQ(passAfter(1s, Detail::light).diskReadPerSecond, 0);
}

TEST_F(MonitorEngineTest, AClockThatStepsBackGivesNoRatesAndANewBase) {
    pass(Detail::full);
    disk.bytesRead = 2000;
    network->bytesIn = 270;
    EXPECT_EQ(passAfter(-1h, Detail::light).diskReadPerSecond, 0);
    disk.bytesRead = 2500;
    network->bytesIn = 280;
    const LiveSnapshot next = passAfter(1s, Detail::light);
    EXPECT_DOUBLE_EQ(next.diskReadPerSecond, 500);
    EXPECT_DOUBLE_EQ(next.networkInPerSecond, 10);
}

TEST_F(MonitorEngineTest, AFailedNetworkReadGivesZerosAndKeepsTheBase) {
    pass(Detail::full);
    network.reset();
    const LiveSnapshot failed = passAfter(1s, Detail::light);
    EXPECT_EQ(failed.networkInPerSecond, 0);
    EXPECT_EQ(failed.networkInTotal, 0u);
    network = NetworkSnapshot{.bytesIn = 270, .bytesOut = 30};
    EXPECT_DOUBLE_EQ(passAfter(1s, Detail::light).networkInPerSecond, 100); // over 2 s
}

TEST_F(MonitorEngineTest, SensorsAndWiFiAreReadEveryFiveSecondsAtMost) {
    pass(Detail::full);
    temperatures = TemperatureSnapshot{{{"tdie", 90}}};
    wifi->rssi = -70;
    const LiveSnapshot cached = passAfter(1s, Detail::full);
    EXPECT_EQ(cached.cpuTemperature, 60);
    EXPECT_EQ(cached.wifi->rssi, -50);
    EXPECT_EQ(std::count(asked.begin(), asked.end(), "sensors"), 1);
    EXPECT_EQ(std::count(asked.begin(), asked.end(), "wifi"), 1);
    // The cache's age counts from the first read.
    const LiveSnapshot fresh = passAfter(4s, Detail::full);
    EXPECT_EQ(fresh.cpuTemperature, 90);
    EXPECT_EQ(fresh.wifi->rssi, -70);
}

TEST_F(MonitorEngineTest, AFailedSensorReadIsRememberedToo) {
    pass(Detail::full);
    temperatures.reset();
    wifi.reset();
    const LiveSnapshot failed = passAfter(5s, Detail::full);
    EXPECT_FALSE(failed.cpuTemperature);
    EXPECT_FALSE(failed.wifi);
    passAfter(1s, Detail::full);
    EXPECT_EQ(std::count(asked.begin(), asked.end(), "sensors"), 2);
}

TEST_F(MonitorEngineTest, FreeSpaceAndVolumesAreReadOnceAMinuteAndOnFullPassesOnly) {
    EXPECT_FALSE(pass(Detail::light).diskAvailable);
    const LiveSnapshot first = passAfter(1s, Detail::full);
    EXPECT_EQ(first.diskAvailable, 40);
    EXPECT_EQ(first.diskCapacity, 100);
    EXPECT_EQ(first.diskPurgeable, 5);
    EXPECT_EQ(first.diskName, "Disk");
    EXPECT_EQ(first.volumes, volumes);
    const std::vector<VolumeInfo> before = volumes;
    volumes.clear();
    EXPECT_EQ(passAfter(59s, Detail::full).volumes, before);
    EXPECT_EQ(passAfter(1s, Detail::light).volumes, before);
    EXPECT_TRUE(passAfter(0s, Detail::full).volumes.empty());
    EXPECT_EQ(freeSpaceAsked, (std::vector<bool>{false, true, false, false, true}));
}

TEST_F(MonitorEngineTest, ALightPassServesCachesAndLeavesTheRestAbsent) {
    processes = {process(1, "editor", 0.9)};
    pass(Detail::full);
    const LiveSnapshot light = passAfter(5s, Detail::light);
    EXPECT_TRUE(light.apps.empty());
    EXPECT_TRUE(light.networkApps.empty());
    EXPECT_TRUE(light.memoryHeavyApps.empty());
    EXPECT_EQ(light.appCount, 0);
    EXPECT_EQ(light.processCount, 0);
    EXPECT_FALSE(light.systemActivity);
    EXPECT_FALSE(light.gpu);
    EXPECT_FALSE(light.battery);
    EXPECT_FALSE(light.sound);
    EXPECT_FALSE(light.systemWatts);
    EXPECT_TRUE(light.fanRPM.empty());
    EXPECT_TRUE(light.cpu);
    EXPECT_TRUE(light.memory);
    EXPECT_EQ(light.cpuTemperature, 60);
    EXPECT_TRUE(light.wifi);
    EXPECT_FALSE(light.volumes.empty());
    EXPECT_EQ(light.connection, ConnectionKind::wired);
}

TEST_F(MonitorEngineTest, TheTopAppsAreTheFirstInCpuOrderAndTheHeavyOnesTheLargestThree) {
    processes = {process(1, "a", 0.1, 10), process(2, "b", 0.4, 5), process(3, "c", 0.3, 40),
                 process(4, "d", 0.2, 30), process(5, "e", 0.05, 20)};
    const LiveSnapshot snapshot = pass(Detail::full, 2);
    ASSERT_EQ(snapshot.apps.size(), 2u);
    EXPECT_EQ(snapshot.apps[0].name, "b");
    EXPECT_EQ(snapshot.apps[1].name, "c");
    EXPECT_EQ(snapshot.appCount, 5);
    EXPECT_EQ(snapshot.processCount, 5);
    ASSERT_EQ(snapshot.memoryHeavyApps.size(), 3u);
    EXPECT_EQ(snapshot.memoryHeavyApps[0].name, "c");
    EXPECT_EQ(snapshot.memoryHeavyApps[1].name, "d");
    EXPECT_EQ(snapshot.memoryHeavyApps[2].name, "e");
    EXPECT_TRUE(passAfter(1s, Detail::full).apps.size() == 5);
    EXPECT_TRUE(pass(Detail::full, 0).apps.empty());
}

TEST_F(MonitorEngineTest, EqualMemoryKeepsTheCpuOrderAmongTheHeavyApps) {
    processes = {process(1, "a", 0.1, 10), process(2, "b", 0.4, 10), process(3, "c", 0.3, 10),
                 process(4, "d", 0.2, 10)};
    const LiveSnapshot snapshot = pass(Detail::full);
    EXPECT_EQ(snapshot.memoryHeavyApps[0].name, "b");
    EXPECT_EQ(snapshot.memoryHeavyApps[1].name, "c");
    EXPECT_EQ(snapshot.memoryHeavyApps[2].name, "d");
}

TEST_F(MonitorEngineTest, ADisplayNameIsAskedForOnceInARun) {
    int asks = 0;
    Readers readers = all();
    readers.displayName = [&](const AppIdentity& identity) {
        ++asks;
        return identity.id + "!";
    };
    MonitorEngine own(std::move(readers));
    processes = {process(1, "a", 0.1)};
    own.sample(Detail::full, 20, false, now);
    EXPECT_EQ(own.sample(Detail::full, 20, false, now + 1s).apps[0].name, "a!");
    EXPECT_EQ(asks, 1);
}

TEST_F(MonitorEngineTest, TheFirstNetworkUsageAddsToTotalsButGivesNoRates) {
    processes = {process(1, "browser", 0.1), process(2, "mail", 0)};
    networkUsage = {{1, {.received = 1000, .sent = 100}}, {99, {.received = 5, .sent = 5}}};
    const LiveSnapshot first = pass(Detail::full);
    ASSERT_EQ(first.networkApps.size(), 1u); // pid 99 belongs to nobody known
    EXPECT_EQ(first.networkApps[0].name, "browser");
    EXPECT_EQ(first.networkApps[0].networkInTotal, 1000u);
    EXPECT_EQ(first.networkApps[0].networkInRate, 0);

    const LiveSnapshot second = passAfter(2s, Detail::full);
    EXPECT_EQ(second.networkApps[0].networkInTotal, 2000u);
    EXPECT_DOUBLE_EQ(second.networkApps[0].networkInRate, 500);
    EXPECT_DOUBLE_EQ(second.networkApps[0].networkOutRate, 50);
    EXPECT_DOUBLE_EQ(second.apps[0].networkInRate, 500);
}

TEST_F(MonitorEngineTest, NetworkRatesNeverCountLessThanHalfASecond) {
    processes = {process(1, "browser", 0.1)};
    networkUsage = {{1, {.received = 1000, .sent = 0}}};
    pass(Detail::full);
    EXPECT_DOUBLE_EQ(passAfter(100ms, Detail::full).networkApps[0].networkInRate, 2000);
    EXPECT_DOUBLE_EQ(passAfter(-1h, Detail::full).networkApps[0].networkInRate, 2000);
}

TEST_F(MonitorEngineTest, AnAppThatQuitsKeepsItsNetworkTotal) {
    processes = {process(1, "browser", 0.1)};
    networkUsage = {{1, {.received = 1000, .sent = 0}}};
    pass(Detail::full);
    processes = {};
    networkUsage = {};
    EXPECT_TRUE(passAfter(1s, Detail::full).networkApps.empty());
    processes = {process(7, "browser", 0.1)};
    EXPECT_EQ(passAfter(1s, Detail::full).networkApps[0].networkInTotal, 1000u);
}

TEST_F(MonitorEngineTest, NetworkTotalsNeverWrap) {
    processes = {process(1, "browser", 0.1)};
    networkUsage = {{1, {.received = std::numeric_limits<std::uint64_t>::max(), .sent = 1}}};
    pass(Detail::full);
    EXPECT_EQ(passAfter(1s, Detail::full).networkApps[0].networkInTotal,
              std::numeric_limits<std::uint64_t>::max());
}

TEST_F(MonitorEngineTest, AGroupWithoutRatesAndWithZeroTotalsIsNotANetworkApp) {
    processes = {process(1, "browser", 0.1)};
    networkUsage = {{1, {}}};
    EXPECT_TRUE(pass(Detail::full).networkApps.empty());
}

TEST_F(MonitorEngineTest, GpuSharesAreSummedAndAbsentWithoutAReading) {
    processes = {process(1, "game", 0.4), process(2, "game", 0.1), process(3, "mail", 0)};
    gpuShares = {{1, 0.5}, {2, 0.25}};
    const LiveSnapshot snapshot = pass(Detail::full);
    EXPECT_DOUBLE_EQ(*snapshot.apps[0].gpu, 0.75);
    EXPECT_FALSE(snapshot.apps[1].gpu);
}

TEST_F(MonitorEngineTest, ABatteryWithoutItsOwnTemperatureTakesTheLastSensors) {
    EXPECT_EQ(pass(Detail::full).battery->temperatureCelsius, 30);
    battery->temperatureCelsius = 25;
    EXPECT_EQ(passAfter(1s, Detail::full).battery->temperatureCelsius, 25);
}

TEST_F(MonitorEngineTest, TheSystemsPowerFillsInTheTimeLeft) {
    battery->remainingWattHours = 45;
    const LiveSnapshot snapshot = pass(Detail::full);
    EXPECT_EQ(snapshot.systemWatts, 9.0);
    EXPECT_EQ(snapshot.fanRPM, std::vector<double>{1200});
    EXPECT_EQ(snapshot.battery->minutesToEmpty, 300);
}

TEST_F(MonitorEngineTest, AMachineWithoutAnyReaderGivesAnEmptySnapshot) {
    MonitorEngine bare{Readers{}};
    for (const Detail detail : {Detail::full, Detail::light, Detail::full}) {
        now += 1s;
        EXPECT_EQ(bare.sample(detail, 20, true, now), LiveSnapshot{.date = now});
    }
}

} // namespace
} // namespace tavero
