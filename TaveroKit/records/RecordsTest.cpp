#include "records/LiveSnapshot.h"
#include "records/TemperatureSnapshot.h"

#include <gtest/gtest.h>

#include <limits>

namespace tavero {
namespace {

TEST(MemorySnapshot, PagesBeyondTheTotalLeaveNothingFree) {
    const MemorySnapshot memory{
        .total = 100, .app = 60, .wired = 30, .compressed = 20, .cached = 15};
    EXPECT_EQ(memory.used(), 110u);
    EXPECT_EQ(memory.free(), 0u);
    EXPECT_EQ(memory.available(), 15u);
}

TEST(MemorySnapshot, FreeIsWhatIsNeitherUsedNorCached) {
    const MemorySnapshot memory{
        .total = 100, .app = 40, .wired = 10, .compressed = 5, .cached = 15};
    EXPECT_EQ(memory.free(), 30u);
    EXPECT_EQ(memory.available(), 45u);
}

TEST(MemorySnapshot, UsedAndCachedOfExactlyTheTotalLeaveNothingFree) {
    const MemorySnapshot memory{.total = 100, .app = 70, .cached = 30};
    EXPECT_EQ(memory.free(), 0u);
}

TEST(MemorySnapshot, SumsBeyond64BitsStayAtTheLargestValue) {
    constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    const MemorySnapshot memory{.total = most, .app = most, .wired = most, .cached = most};
    EXPECT_EQ(memory.used(), most);
    EXPECT_EQ(memory.free(), 0u);
    EXPECT_EQ(memory.available(), most);
}

TEST(CPUSnapshot, TotalIsUserAndSystem) {
    EXPECT_DOUBLE_EQ((CPUSnapshot{.user = 0.25, .system = 0.5}.total()), 0.75);
}

TEST(WiFiLink, SignalFractionIsClampedToItsScale) {
    EXPECT_DOUBLE_EQ(WiFiLink{.rssi = -90}.signalFraction(), 0);
    EXPECT_DOUBLE_EQ(WiFiLink{.rssi = -60}.signalFraction(), 0.5);
    EXPECT_DOUBLE_EQ(WiFiLink{.rssi = -30}.signalFraction(), 1);
    EXPECT_DOUBLE_EQ(WiFiLink{.rssi = -20}.signalFraction(), 1);
    EXPECT_DOUBLE_EQ(WiFiLink{.rssi = -120}.signalFraction(), 0);
}

TEST(WiFiLink, SignalIsWordedAtEachBoundary) {
    EXPECT_EQ(WiFiLink{.rssi = -55}.signal(), "Strong");
    EXPECT_EQ(WiFiLink{.rssi = -56}.signal(), "Good");
    EXPECT_EQ(WiFiLink{.rssi = -67}.signal(), "Good");
    EXPECT_EQ(WiFiLink{.rssi = -68}.signal(), "Fair");
    EXPECT_EQ(WiFiLink{.rssi = -75}.signal(), "Fair");
    EXPECT_EQ(WiFiLink{.rssi = -76}.signal(), "Weak");
}

TEST(ConnectionKind, EveryKindHasItsRawValueAndTitle) {
    using enum ConnectionKind;
    EXPECT_EQ(rawValue(wifi), "wifi");
    EXPECT_EQ(title(wifi), "Wi-Fi");
    EXPECT_EQ(rawValue(wired), "wired");
    EXPECT_EQ(title(wired), "Wired");
    EXPECT_EQ(rawValue(cellular), "cellular");
    EXPECT_EQ(title(cellular), "Hotspot");
    EXPECT_EQ(rawValue(other), "other");
    EXPECT_EQ(title(other), "Connected");
    EXPECT_EQ(rawValue(offline), "offline");
    EXPECT_EQ(title(offline), "Offline");
}

TEST(AppUsage, ANewRowStartsWithZeroRatesAbsentAveragesAndNoChildren) {
    const AppUsage row{.identity = {AppIdentity::Kind::app, "/Applications/Mail.app"},
                       .name = "Mail",
                       .bundlePath = "/Applications/Mail.app",
                       .cpu = 0.5,
                       .memory = 7,
                       .processCount = 2};
    EXPECT_EQ(row.id(), "/Applications/Mail.app");
    EXPECT_TRUE(row.children.empty());
    EXPECT_EQ(row.diskReadRate, 0);
    EXPECT_EQ(row.diskWriteRate, 0);
    EXPECT_EQ(row.networkInRate, 0);
    EXPECT_EQ(row.networkOutRate, 0);
    EXPECT_EQ(row.networkInTotal, 0u);
    EXPECT_EQ(row.networkOutTotal, 0u);
    EXPECT_EQ(row.threads, 0);
    EXPECT_FALSE(row.gpu || row.watts || row.flag || row.note || row.cpuAverage || row.gpuAverage ||
                 row.gpuPeak || row.memoryChange || row.memoryShare);
}

constexpr std::uint32_t code(const char (&text)[5]) {
    std::uint32_t value = 0;
    for (int i = 0; i < 4; ++i) value = value << 8 | static_cast<unsigned char>(text[i]);
    return value;
}

TEST(AudioOutput, TransportCodesFallIntoTheirCases) {
    using enum AudioOutput::Transport;
    EXPECT_EQ(audioTransport(code("bltn")), builtIn);
    EXPECT_EQ(audioTransport(code("blue")), bluetooth);
    EXPECT_EQ(audioTransport(code("blea")), bluetooth);
    EXPECT_EQ(audioTransport(code("usb ")), usb);
    EXPECT_EQ(audioTransport(code("1394")), usb);
    EXPECT_EQ(audioTransport(code("thun")), usb);
    EXPECT_EQ(audioTransport(code("hdmi")), display);
    EXPECT_EQ(audioTransport(code("dprt")), display);
    EXPECT_EQ(audioTransport(code("airp")), airPlay);
    EXPECT_EQ(audioTransport(code("virt")), virtualDevice);
    EXPECT_EQ(audioTransport(code("grup")), virtualDevice);
    EXPECT_EQ(audioTransport(code("fgrp")), virtualDevice);
    EXPECT_EQ(audioTransport(code("pci ")), other);
    EXPECT_EQ(audioTransport(0), other);
}

TEST(BatterySnapshot, TheSystemsDrawGivesTheTimeLeftWhenTheBatteryDoesNot) {
    BatterySnapshot battery{.watts = -0.1, .remainingWattHours = 50.0, .currentIsStale = true};
    battery.estimateTimeLeft(9.0);
    EXPECT_EQ(battery.minutesToEmpty, 333); // 333.3, truncated
    EXPECT_EQ(battery.watts, 9.0);
}

TEST(BatterySnapshot, ALiveCurrentKeepsItsWatts) {
    BatterySnapshot battery{.watts = -8.0, .remainingWattHours = 50.0};
    battery.estimateTimeLeft(10.0);
    EXPECT_EQ(battery.minutesToEmpty, 300);
    EXPECT_EQ(battery.watts, -8.0);
}

TEST(BatterySnapshot, TimeLeftIsNotEstimatedWithoutGrounds) {
    const BatterySnapshot onBattery{.remainingWattHours = 50.0};
    auto estimate = [](BatterySnapshot battery, std::optional<double> watts) {
        battery.estimateTimeLeft(watts);
        return battery.minutesToEmpty;
    };
    EXPECT_TRUE(estimate(onBattery, 1.1));
    EXPECT_FALSE(estimate(onBattery, 1.0));
    EXPECT_FALSE(estimate(onBattery, std::nullopt));
    EXPECT_FALSE(estimate(onBattery, std::numeric_limits<double>::quiet_NaN()));
    EXPECT_FALSE(estimate({}, 9.0));
    EXPECT_FALSE(estimate({.onExternalPower = true, .remainingWattHours = 50.0}, 9.0));
    EXPECT_FALSE(estimate({.remainingWattHours = 1e300}, 9.0));
    EXPECT_EQ(estimate({.minutesToEmpty = 5, .remainingWattHours = 50.0}, 9.0), 5);
}

TEST(TemperatureSnapshot, TheHottestMatchingSensorCounts) {
    const TemperatureSnapshot snapshot{{{"PMU tdie1", 50},
                                        {"PMU tdie2", 61},
                                        {"gas gauge BATTERY", 31},
                                        {"Battery 2", 33},
                                        {"PMU TDIE9", 90},
                                        {"NAND CH0 temp", 44}}};
    EXPECT_EQ(snapshot.cpu(), 61);
    EXPECT_EQ(snapshot.battery(), 33);
    EXPECT_EQ(snapshot.ssd(), 44);
    EXPECT_FALSE(TemperatureSnapshot{}.cpu());
}

} // namespace
} // namespace tavero
