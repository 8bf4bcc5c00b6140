#include "text/TextPage.h"

#include "text/TextDrawing.h"

#include <gtest/gtest.h>

#include <clocale>
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
