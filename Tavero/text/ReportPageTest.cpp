#include "text/ReportPage.h"

#include "text/TextDrawing.h"

#include <gtest/gtest.h>

#include <chrono>
#include <clocale>
#include <string>

namespace tavero {
namespace {

class ReportPageTest : public testing::Test {
  protected:
    void SetUp() override { ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr); }

    std::string page(const InsightsReport& report, TextStyle style = {}) {
        std::string text;
        for (const std::string& line : reportPage(insightsContent(report, {}), 7, style))
            text += line + "\n";
        return text;
    }
};

TEST_F(ReportPageTest, WithoutAReportItSaysThatItIsReading) {
    EXPECT_EQ(reportPage(std::nullopt, 30, {}), std::vector<std::string>{"Reading your history…"});
}

TEST_F(ReportPageTest, TheFiguresStandWithABarForEachDay) {
    InsightsReport report{.daysOfData = 9, .averageCPU = 0.12};
    for (const double value : {0.0, 0.1, 0.4, 0.2})
        report.dailyCPU.push_back({.day = {}, .value = value});
    const std::string text = page(report);
    EXPECT_NE(text.find("Insights: Last 7 days\nFrom data kept only on this Mac\n"),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("Average CPU       12 %        ·▂█▄\n"), std::string::npos) << text;
    EXPECT_EQ(text.find("warming up"), std::string::npos) << text;
    EXPECT_NE(text.find("Nothing yet."), std::string::npos) << text;
}

TEST_F(ReportPageTest, TheFirstWeekShowsHowFarItIs) {
    const std::string text = page({.daysOfData = 2.5});
    EXPECT_NE(text.find("Insights are warming up\n"), std::string::npos) << text;
    EXPECT_NE(text.find("██████████████████························  Day 3 of 7\n"),
              std::string::npos)
        << text;
}

TEST_F(ReportPageTest, FindingsAndAppsAreListed) {
    const InsightsReport report{
        .apps = {{.id = "a", .name = "Hearthside", .cpuSeconds = 7200, .averageMemory = 1e9}}};
    const std::string text = page(report);
    EXPECT_NE(text.find("Hearthside used 100% of all CPU time\n"), std::string::npos) << text;
    EXPECT_NE(text.find("Hearthside                                       2 h 0 m      954 MB"
                        "        0 MB\n"),
              std::string::npos)
        << text;
}

TEST_F(ReportPageTest, NoLineIsWiderThanTheTerminal) {
    InsightsReport report{.daysOfData = 1};
    report.apps = {{.id = "a", .name = std::string(300, 'n'), .cpuSeconds = 1e9}};
    report.deviceCharges = {{std::string(200, 'd'), 3}};
    for (int i = 0; i < 30; ++i) report.dailyCPU.push_back({.day = {}, .value = 1});
    for (const int columns : {24, 40, 80, 300})
        for (const std::string& line :
             reportPage(insightsContent(report, {}), 30, {.columns = columns}))
            EXPECT_LE(textWidth(line), std::min(columns, 100)) << line;
}

} // namespace
} // namespace tavero
