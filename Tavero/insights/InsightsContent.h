#pragma once

#include "history/InsightsReport.h"
#include "insights/Finding.h"
#include "presentation/Color.h"
#include "presentation/Format.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavero {

// A bar of a small chart.
struct InsightsBar {
    double height = 0;     // points
    bool isFilled = false; // drawn in full colour; faint otherwise

    bool operator==(const InsightsBar&) const = default;
};

// One of the four figures at the top, with a bar for each day below it.
struct SummaryCard {
    std::string title;
    std::string_view symbol;
    AdaptiveColor color;
    Measure figure;
    std::vector<DayValue> days;

    std::vector<InsightsBar> bars() const;
};

// A row of the table of the heaviest apps.
struct HeavyApp {
    std::string name;
    std::optional<std::string> bundlePath; // for its icon; a tool has none
    std::string cpuTime;
    std::string averageMemory;
    std::string written;
};

// The hours of the day, and two facts.
struct Rhythm {
    std::string subtitle;
    std::vector<InsightsBar> bars; // 24
    std::string awake;
    std::string busiestDay;
};

// All that the page of the report says, in its words and its order.
struct InsightsContent {
    // How far the first week has come, 1 to 7. Absent once there is a full one.
    std::optional<std::int64_t> warmingUpDay;
    std::vector<SummaryCard> cards;
    std::vector<Finding> findings;
    std::vector<HeavyApp> heaviestApps; // 6 at most
    Rhythm rhythm;
    std::string footer;
};

InsightsContent insightsContent(const InsightsReport& report, const Format& format);

// The texts around the content.
namespace InsightsTexts {

inline constexpr std::string_view title = "Insights";
inline constexpr std::string_view subtitle = "From data kept only on this Mac";
inline constexpr std::string_view period = "Period";
inline constexpr std::string_view lastWeek = "Last 7 days";
inline constexpr std::string_view lastMonth = "Last 30 days";
inline constexpr std::string_view waiting = "Reading your history…";
inline constexpr std::string_view warmingUpSymbol = "sparkles";
inline constexpr std::string_view warmingUpTitle = "Insights are warming up";
inline constexpr std::string_view warmingUpText =
    "Your first full report appears after 7 days of use. Here’s what Tavero has seen so far.";
inline constexpr std::string_view findings = "What stood out";
inline constexpr std::string_view noFindings =
    "Nothing yet. Findings appear as Tavero learns how you use your Mac.";
inline constexpr std::string_view heaviestApps = "Heaviest apps";
inline constexpr std::string_view appColumns[] = {"CPU time", "Avg memory", "Written"};
inline constexpr std::string_view toolSymbol = "terminal"; // for a row without a bundle
inline constexpr std::string_view rhythm = "Your Mac’s rhythm";
inline constexpr std::string_view hours[] = {"00", "06", "12", "18", "24"};
inline constexpr std::string_view awake = "Mac awake";
inline constexpr std::string_view busiestDay = "Busiest day";
inline constexpr std::string_view footerSymbol = "lock.fill";
inline constexpr std::string_view deleteButton = "Delete history…";
inline constexpr std::string_view deleteQuestion = "Delete all history?";
inline constexpr std::string_view deleteConsequence =
    "Insights start again from today. Live monitoring is not affected.";
inline constexpr std::string_view deleteConfirmation = "Delete History";

std::string warmingUpLabel(std::int64_t day); // "Day 2 of 7"
std::string openButton(Section section);      // "Open Disk"

} // namespace InsightsTexts

} // namespace tavero
