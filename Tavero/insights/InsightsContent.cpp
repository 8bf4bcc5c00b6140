#include "insights/InsightsContent.h"

#include "history/HistoryStore.h"
#include "insights/DayText.h"
#include "insights/Words.h"
#include "presentation/Metric.h"
#include "presentation/NumberText.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace tavero {

namespace {

using InsightsWords::wholeBytes;

constexpr double fullReportDays = 7;
constexpr std::size_t heaviestAppCount = 6;

InsightsBar bar(std::optional<double> value, double highest, double height, double atLeast) {
    const double share = known(value).value_or(0) / highest;
    return {.height = std::max(std::isfinite(share) ? share * height : 0.0, atLeast)};
}

std::optional<std::int64_t> warmingUpDay(double daysOfData) {
    if (!(daysOfData < fullReportDays)) return std::nullopt;
    return static_cast<std::int64_t>(std::clamp(std::ceil(daysOfData), 1.0, fullReportDays));
}

SummaryCard card(std::string title, Metric metric, Measure figure, std::vector<DayValue> days) {
    return {std::move(title), symbol(metric), color(metric), std::move(figure), std::move(days)};
}

std::vector<SummaryCard> summaryCards(const InsightsReport& report, const Format& format) {
    const std::string memory = known(report.averageMemoryUsed)
                                   ? gibibytes(wholeBytes(*report.averageMemoryUsed))
                                   : placeholder;
    return {card("Average CPU", Metric::cpu, {percent(report.averageCPU), "%"}, report.dailyCPU),
            card("Average memory", Metric::memory, {memory, "GB"}, report.dailyMemory),
            card("Energy used", Metric::power, InsightsWords::energy(report.energyWattHours),
                 report.dailyEnergy),
            card("Data written", Metric::disk, format.capacity(wholeBytes(report.diskWritten)),
                 report.dailyWritten)};
}

std::vector<HeavyApp> heaviestApps(const InsightsReport& report, const Format& format) {
    std::vector<HeavyApp> rows;
    for (const AppTotal& app : report.apps) {
        if (rows.size() == heaviestAppCount) break;
        rows.push_back({app.name, app.bundlePath, InsightsWords::duration(app.cpuSeconds),
                        format.bytes(wholeBytes(app.averageMemory)),
                        format.bytes(wholeBytes(app.diskWritten))});
    }
    return rows;
}

std::string rhythmSubtitle(const InsightsReport& report) {
    const auto& hours = report.cpuByHour;
    const auto busiest = std::max_element(hours.begin(), hours.end()); // absent is less than any
    if (busiest == hours.end() || !*busiest) return "Average CPU by hour of the day.";
    char hour[24];
    std::snprintf(hour, sizeof hour, "%02d", static_cast<int>(busiest - hours.begin()));
    return std::string("Average CPU by hour. Busiest around ") + hour + ":00.";
}

Rhythm rhythm(const InsightsReport& report) {
    Rhythm rhythm{.subtitle = rhythmSubtitle(report),
                  .awake = InsightsWords::duration(report.hoursAwake * 3600),
                  .busiestDay = report.busiestDay ? shortDay(report.busiestDay->day) : placeholder};
    double peak = 0.01; // an idle machine's bars stay low
    for (const std::optional<double>& hour : report.cpuByHour)
        peak = std::max(peak, known(hour).value_or(0));
    rhythm.bars.reserve(report.cpuByHour.size());
    for (const std::optional<double>& hour : report.cpuByHour) {
        rhythm.bars.push_back(bar(hour, peak, 110, 3));
        rhythm.bars.back().isFilled = hour.has_value();
    }
    return rhythm;
}

} // namespace

std::vector<InsightsBar> SummaryCard::bars() const {
    double highest = 0.0001;
    for (const DayValue& day : days) highest = std::max(highest, known(day.value).value_or(0));
    std::vector<InsightsBar> bars;
    bars.reserve(days.size());
    for (const DayValue& day : days) {
        bars.push_back(bar(day.value, highest, 30, 2));
        bars.back().isFilled = day.value > 0;
    }
    return bars;
}

InsightsContent insightsContent(const InsightsReport& report, const Format& format) {
    return {.warmingUpDay = warmingUpDay(report.daysOfData),
            .cards = summaryCards(report, format),
            .findings = Finding::make(report, format),
            .heaviestApps = heaviestApps(report, format),
            .rhythm = rhythm(report),
            .footer = "History stays on this Mac. Tavero keeps " +
                      std::to_string(HistoryStore::keepDays) +
                      " days and deletes older data automatically."};
}

std::string InsightsTexts::warmingUpLabel(std::int64_t day) {
    return "Day " + std::to_string(day) + " of 7";
}

std::string InsightsTexts::openButton(Section section) {
    return "Open " + std::string(tavero::title(section));
}

} // namespace tavero
