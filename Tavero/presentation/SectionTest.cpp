#include "presentation/Section.h"

#include <gtest/gtest.h>

#include <limits>

namespace tavero {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

std::string value(Section section, const std::optional<LiveSnapshot>& snapshot,
                  const std::optional<BluetoothSummary>& bluetooth = {}) {
    return sidebarValue(section, snapshot, bluetooth, {});
}

TEST(Section, TheOrderIsThatOfTheSidebar) {
    std::string names;
    for (const Section section : allSections) names += std::string(rawValue(section)) + " ";
    EXPECT_EQ(names, "overview cpu memory gpu power disk network sound bluetooth insights ");
}

TEST(Section, IsFoundByTheNameThatSettingsHold) {
    for (const Section section : allSections) EXPECT_EQ(sectionNamed(rawValue(section)), section);
    EXPECT_FALSE(sectionNamed("temperature"));
    EXPECT_FALSE(sectionNamed("CPU"));
    EXPECT_FALSE(sectionNamed(""));
}

TEST(Section, APageAboutAMetricLooksLikeIt) {
    EXPECT_EQ(metricOf(Section::disk), Metric::disk);
    EXPECT_EQ(title(Section::disk), "Disk");
    EXPECT_EQ(symbol(Section::disk), "internaldrive");
    EXPECT_EQ(color(Section::disk), color(Metric::disk));
}

TEST(Section, TheOtherPagesHaveLooksOfTheirOwn) {
    for (const Section section :
         {Section::overview, Section::sound, Section::bluetooth, Section::insights})
        EXPECT_FALSE(metricOf(section));
    EXPECT_EQ(title(Section::overview), "Overview");
    EXPECT_EQ(symbol(Section::sound), "speaker.wave.2.fill");
    EXPECT_EQ(color(Section::bluetooth), (AdaptiveColor{{0x48484A}, {0x636366}}));
    EXPECT_EQ(symbol(Section::insights), "lightbulb.fill");
}

TEST(SidebarValue, WithoutASnapshotIsEmpty) {
    for (const Section section : allSections) EXPECT_EQ(value(section, std::nullopt), "");
}

TEST(SidebarValue, WithoutDataIsThePlaceholderOnlyWhereAPercentSignFollows) {
    LiveSnapshot snapshot;
    EXPECT_EQ(value(Section::memory, snapshot), "");
    EXPECT_EQ(value(Section::disk, snapshot), "");
    EXPECT_EQ(value(Section::power, snapshot), "");
    EXPECT_EQ(value(Section::sound, snapshot), "");
    EXPECT_EQ(value(Section::overview, snapshot), "");
    EXPECT_EQ(value(Section::insights, snapshot), "");
    EXPECT_EQ(value(Section::cpu, snapshot), "–%");
    EXPECT_EQ(value(Section::gpu, snapshot), "–%");
    snapshot.sound.emplace();
    EXPECT_EQ(value(Section::sound, snapshot), "–%");
    EXPECT_EQ(value(Section::network, snapshot), "0 KB/s");
}

TEST(SidebarValue, TellsTheShortFigureOfEachPage) {
    LiveSnapshot snapshot;
    snapshot.cpu = {.user = 0.3, .system = 0.17};
    snapshot.memory = {.app = 5ull << 30, .wired = 1ull << 29};
    snapshot.gpu = {.device = 0.126};
    snapshot.systemWatts = 12.5;
    snapshot.diskAvailable = 2'000'000'000'000;
    snapshot.networkInPerSecond = 4096;
    snapshot.sound = {.volume = 0.456};
    EXPECT_EQ(value(Section::cpu, snapshot), "47%");
    EXPECT_EQ(value(Section::memory, snapshot), "5.5 GB");
    EXPECT_EQ(value(Section::gpu, snapshot), "13%");
    EXPECT_EQ(value(Section::power, snapshot), "12 W");
    EXPECT_EQ(value(Section::disk, snapshot), "2.0 TB");
    EXPECT_EQ(value(Section::network, snapshot), "4 KB/s");
    EXPECT_EQ(value(Section::sound, snapshot), "46%");
    snapshot.battery = {.percent = 80};
    EXPECT_EQ(value(Section::power, snapshot), "80%");
    snapshot.sound->isMuted = true;
    EXPECT_EQ(value(Section::sound, snapshot), "Muted");
    snapshot.diskAvailable = -1;
    EXPECT_EQ(value(Section::disk, snapshot), "0.0 GB");
}

TEST(SidebarValue, WhatIsNoNumberCountsAsAbsent) {
    LiveSnapshot snapshot;
    snapshot.cpu = {.user = nan};
    snapshot.systemWatts = nan;
    snapshot.sound = {.volume = nan};
    EXPECT_EQ(value(Section::cpu, snapshot), "–%");
    EXPECT_EQ(value(Section::power, snapshot), "");
    EXPECT_EQ(value(Section::sound, snapshot), "–%");
}

TEST(SidebarValue, BluetoothNeedsNoSnapshot) {
    EXPECT_EQ(value(Section::bluetooth, LiveSnapshot{}), "");
    EXPECT_EQ(value(Section::bluetooth, std::nullopt, BluetoothSummary{false, 2}), "Off");
    EXPECT_EQ(value(Section::bluetooth, std::nullopt, BluetoothSummary{true, 2}), "2");
    EXPECT_EQ(value(Section::bluetooth, std::nullopt, BluetoothSummary{true, 0}), "0");
}

} // namespace
} // namespace tavero
