#include "text/TextPage.h"

#include "presentation/test/RandomSnapshot.h"
#include "text/TextDrawing.h"

#include <gtest/gtest.h>

#include <clocale>
#include <random>
#include <string>

namespace tavero {
namespace {

using namespace std::chrono_literals;

class TextPageTest : public testing::Test {
  protected:
    void SetUp() override { ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr); }

    std::string page(const std::optional<LiveSnapshot>& shown, TextStyle style = {}) {
        std::string text;
        for (const std::string& line : textPage(shown, graphs, {}, {}, style)) text += line + "\n";
        return text;
    }

    Graphs graphs;
    LiveSnapshot snapshot{.date = Date(1'800'000'000s),
                          .cpu = CPUSnapshot{.user = 0.1,
                                             .system = 0.05,
                                             .idle = 0.85,
                                             .perCore = {0.25, 0.05},
                                             .loadAverage = {0.42, 0, 0}},
                          .memory = MemorySnapshot{.total = 16ull << 30,
                                                   .app = 4ull << 30,
                                                   .wired = 2ull << 30,
                                                   .compressed = 1ull << 30,
                                                   .cached = 5ull << 30,
                                                   .pressure = MemoryPressure::normal}};
};

TEST_F(TextPageTest, BeforeTheFirstPassItSaysThatItIsReading) {
    EXPECT_EQ(page(std::nullopt), "Reading your Mac…\n");
}

TEST_F(TextPageTest, CpuAndMemoryAreToldInWordsAndBars) {
    const std::string text = page(snapshot);
    EXPECT_NE(text.find("CPU           15 %          Normal  Load 0.4 of 2"), std::string::npos)
        << text;
    EXPECT_NE(text.find("  1 ███▎·········  25%"), std::string::npos) << text;
    EXPECT_NE(text.find("Memory        7.0 / 16 GB   Normal\n"), std::string::npos) << text;
    EXPECT_NE(text.find("█ Apps 4.0 GB  ▓ Wired 2.0 GB  ▒ Compressed 1.0 GB"), std::string::npos)
        << text;
    EXPECT_NE(text.find("· Free 4.0 GB"), std::string::npos) << text;
    EXPECT_EQ(text.find("Swap"), std::string::npos) << text;
    EXPECT_EQ(text.find("GPU"), std::string::npos) << text;
}

TEST_F(TextPageTest, APassThatFailedToReadKeepsItsPlaceWithADash) {
    const std::string text = page(LiveSnapshot{});
    EXPECT_NE(text.find("CPU           – %"), std::string::npos) << text;
    EXPECT_NE(text.find("Memory        – GB"), std::string::npos) << text;
}

TEST_F(TextPageTest, WhatTheMachineHasMoreOfAppearsBelow) {
    snapshot.gpu = GPUSnapshot{.device = 0.4};
    snapshot.cpuTemperature = 64.0;
    snapshot.networkInTotal = 5;
    const std::string text = page(snapshot);
    EXPECT_NE(text.find("GPU           40 %"), std::string::npos) << text;
    EXPECT_NE(text.find("Temperature   64 °C"), std::string::npos) << text;
    EXPECT_NE(text.find("Network       0 KB/s"), std::string::npos) << text;
}

TEST_F(TextPageTest, TheAppsThatUseTheMostAreListedWithTheirNotes) {
    snapshot.apps = {{.identity = {AppIdentity::Kind::app, "/Applications/Mail.app"},
                      .name = "Mail",
                      .bundlePath = "/Applications/Mail.app",
                      .cpu = 0.125,
                      .memory = 512ull << 20},
                     {.identity = {AppIdentity::Kind::tool, "cc1plus"},
                      .name = "cc1plus",
                      .cpu = 1.5,
                      .memory = 2ull << 30,
                      .note = "growing for 6 min"}};
    const std::string text = page(snapshot);
    EXPECT_NE(text.find("Using the most                     CPU      Memory\n"
                        "cc1plus                           150%      2.0 GB  growing for 6 min\n"
                        "Mail                               12%      512 MB\n"),
              std::string::npos)
        << text;
}

TEST_F(TextPageTest, EachMetricOpensWithItsVerdict) {
    const std::string text = page(snapshot);
    EXPECT_NE(text.find("Load 0.4 of 2\nYour Mac is mostly idle. 85% of the CPU is free.\n"),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("Normal\nPlenty of room. 9.0 GB is available for apps.\n"),
              std::string::npos)
        << text;
    const std::string narrow = page(snapshot, {.columns = 40});
    EXPECT_NE(narrow.find("\nYour Mac is mostly idle.\n85% of the CPU is free.\n"),
              std::string::npos)
        << narrow;
}

TEST_F(TextPageTest, FiguresOfTheCardAndOfThePageAreToldOnceIfTheyAreKnown) {
    snapshot.fanRPM = {2350};
    snapshot.processCount = 512;
    std::string text = page(snapshot);
    EXPECT_NE(text.find("User 10%  System 5%  Load avg 0.42  Fans 2,350 rpm  Processes 512\n"),
              std::string::npos)
        << text;
    EXPECT_EQ(text.find("Uptime"), std::string::npos) << text;
    snapshot.cpuTemperature = 64;
    text = page(snapshot);
    EXPECT_NE(text.find("Load avg 0.42  Temp 64°C  Fans"), std::string::npos) << text;
    snapshot.networkInTotal = 5'000'000'000;
    snapshot.connection = ConnectionKind::wired;
    text = page(snapshot, {.columns = 100});
    EXPECT_NE(text.find("Download 0 KB/s  Upload 0 KB/s  Downloaded 5.0 GB  Uploaded 0.0 GB  "
                        "Connection Wired\n"),
              std::string::npos)
        << text;
}

TEST_F(TextPageTest, APowerPageIsToldLikeTheOthers) {
    snapshot.battery = BatterySnapshot{.percent = 76, .minutesToEmpty = 312, .watts = -8.4};
    const std::string text = page(snapshot);
    EXPECT_NE(text.find("Power         76 %          On battery  5 h 12 m left\n"
                        "Apps are using little power. Nothing is drawing much right now.\n"
                        "Time left 5 h 12 m  Power draw 8.4 W  Charger Not connected\n"),
              std::string::npos)
        << text;
}

TEST_F(TextPageTest, TheAppsOfTheNetworkAreListed) {
    EXPECT_EQ(page(snapshot).find("Using the network"), std::string::npos);
    snapshot.networkApps = {
        {.name = "Browser", .networkInRate = 2e6, .networkInTotal = 5ull << 30}};
    const std::string text = page(snapshot);
    EXPECT_NE(text.find("Using the network                   Download        Upload       Total\n"
                        "Browser                             1.9 MB/s        0 KB/s      5.0 GB\n"),
              std::string::npos)
        << text;
}

TEST_F(TextPageTest, AnySnapshotGivesLinesThatFit) {
    std::mt19937_64 random(4);
    for (int round = 0; round < 300; ++round) {
        const LiveSnapshot any = randomSnapshot(random);
        graphs.feed(any);
        const int columns = 24 + round % 100;
        for (const std::string& line : textPage(any, graphs, {}, {}, {.columns = columns})) {
            EXPECT_LE(textWidth(line), columns) << line;
            EXPECT_EQ(line.find("nan"), std::string::npos) << line;
            EXPECT_EQ(line.find("inf"), std::string::npos) << line;
        }
        if (HasFailure()) FAIL() << "in round " << round;
    }
}

TEST_F(TextPageTest, NoLineIsWiderThanTheTerminal) {
    snapshot.cpu->perCore.assign(64, 1.0);
    snapshot.memory->swapTotal = ~0ull;
    snapshot.apps.assign(
        30, {.name = std::string(200, 'n'), .cpu = 1e9, .memory = ~0ull, .note = "note"});
    snapshot.memory->swapUsed = ~0ull;
    for (int i = 0; i < 70; ++i) {
        snapshot.date += 1s;
        graphs.feed(snapshot);
    }
    for (int columns = 0; columns <= 140; ++columns)
        for (const std::string& line : textPage(snapshot, graphs, {}, {}, {.columns = columns}))
            EXPECT_LE(textWidth(line), std::max(columns, 24)) << columns << ": " << line;
}

TEST_F(TextPageTest, ColourIsOnlyUsedWhereItIsWanted) {
    EXPECT_EQ(page(snapshot).find('\x1b'), std::string::npos);
    EXPECT_NE(page(snapshot, {.isColored = true}).find("\x1b[32mNormal\x1b[0m"), std::string::npos);
}

} // namespace
} // namespace tavero
