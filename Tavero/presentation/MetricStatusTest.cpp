#include "presentation/MetricStatus.h"

#include <gtest/gtest.h>

#include <limits>

namespace tavero {
namespace {

TEST(MetricStatus, WithoutDataCPUAndGPUAreNormalAndTheOthersSilent) {
    const LiveSnapshot nothing;
    EXPECT_EQ(status(Metric::cpu, nothing), (Status{"Normal", Tone::good}));
    EXPECT_EQ(status(Metric::gpu, nothing), (Status{"Normal", Tone::good}));
    for (const Metric metric :
         {Metric::memory, Metric::power, Metric::disk, Metric::temperature, Metric::network})
        EXPECT_FALSE(status(metric, nothing)) << title(metric);
}

TEST(MetricStatus, BusyBeginsAboveTheThreshold) {
    LiveSnapshot snapshot;
    snapshot.cpu = {.user = 0.85};
    snapshot.gpu = {.device = 0.85};
    EXPECT_EQ(status(Metric::cpu, snapshot), (Status{"Normal", Tone::good}));
    EXPECT_EQ(status(Metric::gpu, snapshot), (Status{"Normal", Tone::good}));
    snapshot.cpu = {.user = 0.8, .system = 0.06};
    snapshot.gpu = {.device = 0.86};
    EXPECT_EQ(status(Metric::cpu, snapshot), (Status{"Busy", Tone::warning}));
    EXPECT_EQ(status(Metric::gpu, snapshot), (Status{"Busy", Tone::warning}));
    snapshot.cpu = {.user = std::numeric_limits<double>::infinity()};
    EXPECT_EQ(status(Metric::cpu, snapshot), (Status{"Normal", Tone::good}));
}

TEST(MetricStatus, MemoryTellsThePressure) {
    LiveSnapshot snapshot;
    snapshot.memory.emplace();
    EXPECT_FALSE(status(Metric::memory, snapshot));
    snapshot.memory->pressure = MemoryPressure::normal;
    EXPECT_EQ(status(Metric::memory, snapshot), (Status{"Normal", Tone::good}));
    snapshot.memory->pressure = MemoryPressure::warning;
    EXPECT_EQ(status(Metric::memory, snapshot), (Status{"Pressure high", Tone::warning}));
    snapshot.memory->pressure = MemoryPressure::critical;
    EXPECT_EQ(status(Metric::memory, snapshot), (Status{"Pressure critical", Tone::warning}));
}

TEST(MetricStatus, PowerTellsTheSource) {
    LiveSnapshot snapshot;
    snapshot.battery = {.isCharging = true, .onExternalPower = true};
    EXPECT_EQ(status(Metric::power, snapshot), (Status{"Charging", Tone::good}));
    snapshot.battery->isCharging = false;
    EXPECT_EQ(status(Metric::power, snapshot), (Status{"Plugged in", Tone::neutral}));
    snapshot.battery->onExternalPower = false;
    EXPECT_EQ(status(Metric::power, snapshot), (Status{"On battery", Tone::neutral}));
}

TEST(MetricStatus, DiskTellsTheShareInUse) {
    LiveSnapshot snapshot;
    snapshot.diskCapacity = 1000;
    EXPECT_FALSE(status(Metric::disk, snapshot));
    snapshot.diskAvailable = 250;
    EXPECT_EQ(status(Metric::disk, snapshot), (Status{"75% used", Tone::neutral}));
    snapshot.diskAvailable = -250;
    EXPECT_EQ(status(Metric::disk, snapshot), (Status{"100% used", Tone::neutral}));
    snapshot.diskAvailable = 1500;
    EXPECT_EQ(status(Metric::disk, snapshot), (Status{"-50% used", Tone::neutral}));
}

TEST(MetricStatus, ADiskOfNoCapacityHasNoStatus) {
    LiveSnapshot snapshot;
    snapshot.diskAvailable = 250;
    EXPECT_FALSE(status(Metric::disk, snapshot));
    snapshot.diskCapacity = 0;
    EXPECT_FALSE(status(Metric::disk, snapshot));
    snapshot.diskCapacity = -1000;
    EXPECT_FALSE(status(Metric::disk, snapshot));
}

TEST(MetricStatus, NetworkTellsTheConnection) {
    LiveSnapshot snapshot;
    const auto on = [&](ConnectionKind kind) {
        snapshot.connection = kind;
        return status(Metric::network, snapshot);
    };
    EXPECT_EQ(on(ConnectionKind::wifi), (Status{"Wi-Fi", Tone::neutral}));
    EXPECT_EQ(on(ConnectionKind::wired), (Status{"Wired", Tone::neutral}));
    EXPECT_EQ(on(ConnectionKind::cellular), (Status{"Hotspot", Tone::neutral}));
    EXPECT_EQ(on(ConnectionKind::offline), (Status{"Offline", Tone::warning}));
    EXPECT_FALSE(on(ConnectionKind::other));
    snapshot.wifi.emplace();
    EXPECT_EQ(on(ConnectionKind::other), (Status{"Wi-Fi", Tone::neutral}));
    EXPECT_EQ(on(ConnectionKind::offline), (Status{"Offline", Tone::warning}));
}

} // namespace
} // namespace tavero
