#include "menubar/MenuBarText.h"

#include "menubar/test/Samples.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace tavero {
namespace {

std::string value(Metric metric, const LiveSnapshot& snapshot, const Format& format = {}) {
    return menuBarValue(metric, snapshot, format);
}

TEST(MenuBarText, EveryMetricReadsInItsOwnForm) {
    const LiveSnapshot snapshot = laptopSnapshot();
    EXPECT_EQ(value(Metric::cpu, snapshot), "47%");
    EXPECT_EQ(value(Metric::memory, snapshot), "7.6 GB");
    EXPECT_EQ(value(Metric::gpu, snapshot), "8%");
    EXPECT_EQ(value(Metric::power, snapshot), "76%");
    EXPECT_EQ(value(Metric::disk, snapshot), "312 GB");
    EXPECT_EQ(value(Metric::temperature, snapshot), "54°C");
    EXPECT_EQ(value(Metric::network, snapshot), "↓ 2.4M");
}

TEST(MenuBarText, WithoutDataItReadsAsAPlaceholderAndTheNetworkAsNothing) {
    const LiveSnapshot nothing;
    EXPECT_EQ(value(Metric::cpu, nothing), "–%");
    EXPECT_EQ(value(Metric::memory, nothing), "–");
    EXPECT_EQ(value(Metric::gpu, nothing), "–%");
    EXPECT_EQ(value(Metric::power, nothing), "–");
    EXPECT_EQ(value(Metric::disk, nothing), "–");
    EXPECT_EQ(value(Metric::temperature, nothing), "–");
    EXPECT_EQ(value(Metric::temperature, nothing, {.fahrenheit = true}), "–");
    EXPECT_EQ(value(Metric::network, nothing), "↓ 0K");
}

TEST(MenuBarText, WhatIsNoNumberCountsAsAbsent) {
    LiveSnapshot snapshot;
    snapshot.cpu = CPUSnapshot{.user = std::nan("")};
    snapshot.systemWatts = std::numeric_limits<double>::infinity();
    snapshot.cpuTemperature = std::nan("");
    EXPECT_EQ(value(Metric::cpu, snapshot), "–%");
    EXPECT_EQ(value(Metric::power, snapshot), "–");
    EXPECT_EQ(value(Metric::temperature, snapshot), "–");
}

TEST(MenuBarText, ADesktopWithoutABatteryShowsPowerInWatts) {
    LiveSnapshot desktop;
    desktop.systemWatts = 41.6;
    EXPECT_EQ(value(Metric::power, desktop), "42 W");
    EXPECT_EQ(smallName(Metric::power, desktop), "POWER");
    EXPECT_EQ(smallName(Metric::power, laptopSnapshot()), "BATT");
}

TEST(MenuBarText, ADiskThatIsFullerThanFullHasNothingLeft) {
    LiveSnapshot snapshot;
    snapshot.diskAvailable = -5'000'000'000;
    EXPECT_EQ(value(Metric::disk, snapshot), "0.0 GB");
    snapshot.diskAvailable = 1'234'000'000'000;
    EXPECT_EQ(value(Metric::disk, snapshot), "1.2 TB");
}

TEST(MenuBarText, UnitsFollowTheSettings) {
    EXPECT_EQ(value(Metric::temperature, laptopSnapshot(), {.fahrenheit = true}), "128°F");
    EXPECT_EQ(value(Metric::network, laptopSnapshot(), {.networkBits = true}), "↓ 20.1M");
}

TEST(MenuBarText, TheNetworkHasARowForEachDirection) {
    EXPECT_EQ(networkRows(laptopSnapshot(), {}), (NetworkRows{"↑ 120K", "↓ 2.4M"}));
}

TEST(MenuBarText, EachMetricHasASmallName) {
    const std::pair<Metric, const char*> names[] = {
        {Metric::cpu, "CPU"},   {Metric::memory, "MEM"},       {Metric::gpu, "GPU"},
        {Metric::disk, "DISK"}, {Metric::temperature, "TEMP"}, {Metric::network, "NET"}};
    for (const auto& [metric, name] : names) EXPECT_EQ(smallName(metric, {}), name);
}

TEST(MenuBarText, AScreenReaderSaysTheTitleAndTheValue) {
    EXPECT_EQ(spokenText(Metric::memory, laptopSnapshot(), {}), "Memory 7.6 GB");
    EXPECT_EQ(spokenText(Metric::network, laptopSnapshot(), {}), "Network up 120K, down 2.4M");
    EXPECT_EQ(spokenText(Metric::cpu, {}, {}), "CPU –%");
}

TEST(MenuBarText, ASquareCellGetsFewerLetters) {
    const LiveSnapshot snapshot = laptopSnapshot();
    const auto brief = [&](Metric metric) { return shortMenuBarValue(metric, snapshot, {}); };
    EXPECT_EQ(brief(Metric::cpu), "47");
    EXPECT_EQ(brief(Metric::memory), "7.6");
    EXPECT_EQ(brief(Metric::disk), "312G");
    EXPECT_EQ(brief(Metric::temperature), "54°");
    EXPECT_EQ(shortMenuBarValue(Metric::disk, busySnapshot(), {}), "7.3T");
    EXPECT_EQ(shortMenuBarValue(Metric::power, busySnapshot(), {}), "214W");
    for (const Metric metric : {Metric::cpu, Metric::memory, Metric::gpu, Metric::power,
                                Metric::disk, Metric::temperature})
        EXPECT_EQ(shortMenuBarValue(metric, {}, {}), "–");
}

TEST(MenuBarText, OnlyDigitsBecomeEights) {
    EXPECT_EQ(digitsAsEights("↓ 120.5K"), "↓ 888.8K");
    EXPECT_EQ(digitsAsEights("–%"), "–%");
}

} // namespace
} // namespace tavero
