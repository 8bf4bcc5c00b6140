#include "insights/InsightsContent.h"

#include <gtest/gtest.h>

#include <chrono>

namespace tavero {
namespace {

const Date thursday = std::chrono::sys_days(std::chrono::year(2026) / 11 / 19);

InsightsContent content(const InsightsReport& report) { return insightsContent(report, {}); }

InsightsReport afterDays(double days) { return {.daysOfData = days}; }

TEST(InsightsContent, TheFirstWeekIsCountedInStartedDays) {
    EXPECT_EQ(content(afterDays(0)).warmingUpDay, 1);
    EXPECT_EQ(content(afterDays(0.2)).warmingUpDay, 1);
    EXPECT_EQ(content(afterDays(1.0)).warmingUpDay, 1);
    EXPECT_EQ(content(afterDays(6.01)).warmingUpDay, 7);
    EXPECT_EQ(content(afterDays(7.0)).warmingUpDay, std::nullopt);
    EXPECT_EQ(InsightsTexts::warmingUpLabel(7), "Day 7 of 7");
}

TEST(InsightsContent, AClockThatWasSetBackStillShowsTheFirstDay) {
    EXPECT_EQ(content(afterDays(-3)).warmingUpDay, 1);
}

TEST(InsightsContent, TheFourFiguresReadInTheirUnits) {
    InsightsReport report{.averageCPU = 0.125,
                          .averageMemoryUsed = 8.5 * (1u << 30),
                          .energyWattHours = 1234,
                          .diskWritten = 1.5e12};
    const auto cards = content(report).cards;
    ASSERT_EQ(cards.size(), 4u);
    EXPECT_EQ(cards[0].title, "Average CPU");
    EXPECT_EQ(cards[0].figure, (Measure{"12", "%"}));
    EXPECT_EQ(cards[1].title, "Average memory");
    EXPECT_EQ(cards[1].figure, (Measure{"8.5", "GB"}));
    EXPECT_EQ(cards[2].title, "Energy used");
    EXPECT_EQ(cards[2].figure, (Measure{"1.2", "kWh"}));
    EXPECT_EQ(cards[3].title, "Data written");
    EXPECT_EQ(cards[3].figure, (Measure{"1.5", "TB"}));
}

TEST(InsightsContent, FiguresWithoutDataReadAsThePlaceholder) {
    const auto cards = content({}).cards;
    EXPECT_EQ(cards[0].figure, (Measure{"–", "%"}));
    EXPECT_EQ(cards[1].figure, (Measure{"–", "GB"}));
    EXPECT_EQ(cards[2].figure, (Measure{"–", "Wh"}));
    EXPECT_EQ(cards[3].figure, (Measure{"0.0", "GB"}));
}

TEST(InsightsContent, BarsAreMeasuredByTheHighestAndADayWithoutDataIsAFaintStub) {
    const InsightsReport report{.dailyCPU = {{thursday, 0.4}, {thursday, 0}, {thursday, 0.1}}};
    EXPECT_EQ(content(report).cards[0].bars(),
              (std::vector<InsightsBar>{{30, true}, {2, false}, {7.5, true}}));
}

TEST(InsightsContent, AnIdleSeriesStaysLow) {
    const InsightsReport report{.dailyCPU = {{thursday, 0.00001}}};
    EXPECT_EQ(content(report).cards[0].bars(), (std::vector<InsightsBar>{{3, true}}));
}

TEST(InsightsContent, SixAppsAreListedTheSystemIncluded) {
    InsightsReport report;
    for (int i = 0; i < 8; ++i)
        report.apps.push_back({.id = "app", .name = "App " + std::to_string(i)});
    report.apps[0] = {.id = "macOS System",
                      .name = "macOS",
                      .cpuSeconds = 7200,
                      .averageMemory = 3.0 * (1u << 30),
                      .diskWritten = 512.0 * (1u << 20)};
    const auto rows = content(report).heaviestApps;
    ASSERT_EQ(rows.size(), 6u);
    EXPECT_EQ(rows[0].name, "macOS");
    EXPECT_EQ(rows[0].bundlePath, std::nullopt);
    EXPECT_EQ(rows[0].cpuTime, "2 h 0 m");
    EXPECT_EQ(rows[0].averageMemory, "3.0 GB");
    EXPECT_EQ(rows[0].written, "512 MB");
    EXPECT_EQ(rows[5].name, "App 5");
}

TEST(InsightsContent, TheRhythmNamesTheFirstOfTheBusiestHours) {
    InsightsReport report;
    report.cpuByHour[9] = 0.4;
    report.cpuByHour[14] = 0.4;
    report.cpuByHour[3] = 0;
    const Rhythm rhythm = content(report).rhythm;
    EXPECT_EQ(rhythm.subtitle, "Average CPU by hour. Busiest around 09:00.");
    ASSERT_EQ(rhythm.bars.size(), 24u);
    EXPECT_EQ(rhythm.bars[9], (InsightsBar{110, true}));
    EXPECT_EQ(rhythm.bars[3], (InsightsBar{3, true}));  // slept through, but awake
    EXPECT_EQ(rhythm.bars[4], (InsightsBar{3, false})); // no minute of it
}

TEST(InsightsContent, WithoutAnHourTheRhythmNamesNone) {
    EXPECT_EQ(content({}).rhythm.subtitle, "Average CPU by hour of the day.");
}

TEST(InsightsContent, TheHoursOfAnIdleMachineStayLow) {
    InsightsReport report;
    report.cpuByHour[0] = 0.005;
    EXPECT_EQ(content(report).rhythm.bars[0], (InsightsBar{55, true}));
}

TEST(InsightsContent, TheTimeAwakeReadsInHoursAndMinutes) {
    EXPECT_EQ(content({.hoursAwake = 2.5}).rhythm.awake, "2 h 30 m");
}

TEST(InsightsContent, OneActiveDayIsStillTheBusiestInTheFacts) {
    const DayValue busy{thursday, 0.5};
    const InsightsContent told = content({.dailyCPU = {busy}, .busiestDay = busy});
    EXPECT_TRUE(told.findings.empty());
    EXPECT_EQ(told.rhythm.busiestDay, "Thu, Nov 19");
    EXPECT_EQ(content({}).rhythm.busiestDay, "–");
}

TEST(InsightsContent, TheFooterTellsHowLongHistoryIsKept) {
    EXPECT_EQ(content({}).footer,
              "History stays on this Mac. Tavero keeps 30 days and deletes older "
              "data automatically.");
}

TEST(InsightsContent, AFindingLeadsToItsPage) {
    EXPECT_EQ(InsightsTexts::openButton(Section::disk), "Open Disk");
}

} // namespace
} // namespace tavero
