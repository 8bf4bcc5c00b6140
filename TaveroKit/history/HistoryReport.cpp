#include "history/HistoryReport.h"

#include "history/ChargeCount.h"
#include "history/WholeSeconds.h"

#include <algorithm>
#include <cassert>
#include <chrono>
#include <cmath>
#include <map>
#include <string>
#include <utility>

namespace tavero {

namespace {

constexpr std::int64_t day = 86400; // seconds, as the next
constexpr std::int64_t hour = 3600;

// Days of 24 hours on purpose: across a change of the clocks the older days are shifted by it.
struct Period {
    std::int64_t days;
    std::int64_t now;    // seconds since 1970, as all that follow
    std::int64_t start;  // midnight of the first day
    std::int64_t offset; // of local time now, taken for the whole period

    std::string range() const {
        return "ts >= " + std::to_string(start) + " AND ts <= " + std::to_string(now);
    }
};

Period makePeriod(std::int64_t days, Date now, const Calendar& calendar) {
    return {.days = days,
            .now = wholeSeconds(now),
            .start = wholeSeconds(calendar.startOfDay(now)) - (days - 1) * day,
            .offset = calendar.secondsFromGMT(now)};
}

// The first column of the last row that has one.
std::optional<double> scalar(Database& database, const std::string& text) {
    Statement statement(database, text);
    std::optional<double> last;
    while (statement.next())
        if (const std::optional<double> value = statement.number(0)) last = value;
    return last;
}

double daysOfData(Database& database, const Period& period) {
    const std::optional<double> first = scalar(database, "SELECT MIN(ts) FROM minute");
    return first ? (static_cast<double>(period.now) - *first) / static_cast<double>(day) : 0;
}

std::vector<AppTotal> appTotals(Database& database, const Period& period,
                                const std::string& groups) {
    // Rows of UTC hours: the one across the period's start counts in full.
    Statement statement(database, "SELECT app, MAX(name), MAX(bundle_path), SUM(cpu_seconds), "
                                  "SUM(memory_sum) / MAX(SUM(samples), 1), SUM(disk_written),\n"
                                  "       SUM(net_in), SUM(net_out)\n"
                                  "FROM app_hour WHERE hour >= " +
                                      std::to_string(period.start - hour) + " GROUP BY app " +
                                      groups);
    std::vector<AppTotal> totals;
    while (statement.next())
        totals.push_back({.id = statement.text(0).value_or(""),
                          .name = statement.text(1).value_or(""),
                          .bundlePath = statement.text(2),
                          .cpuSeconds = statement.number(3).value_or(0),
                          .averageMemory = statement.number(4).value_or(0),
                          .diskWritten = statement.number(5).value_or(0),
                          .networkIn = statement.number(6).value_or(0),
                          .networkOut = statement.number(7).value_or(0)});
    return totals;
}

// An hour whose minutes all lack the load reads 0; one without minutes stays absent.
std::array<std::optional<double>, 24> cpuByHour(Database& database, const Period& period) {
    std::array<std::optional<double>, 24> hours;
    Statement statement(database, "SELECT ((ts + " + std::to_string(period.offset) +
                                      ") / 3600) % 24, AVG(cpu) FROM minute WHERE " +
                                      period.range() + " GROUP BY 1");
    while (statement.next()) {
        const std::int64_t index = statement.integer(0);
        if (index < 0 || index >= 24) continue; // a clock before 1970
        hours[static_cast<std::size_t>(index)] = statement.number(1).value_or(0);
    }
    return hours;
}

std::vector<DeviceCharges> deviceCharges(Database& database, const Period& period) {
    Statement statement(database, "SELECT device, percent FROM bluetooth_battery WHERE " +
                                      period.range() + " ORDER BY ts");
    std::map<std::string, std::vector<std::int64_t>> levels;
    while (statement.next()) levels[statement.text(0).value_or("")].push_back(statement.integer(1));

    std::vector<DeviceCharges> devices; // by name, and so they stay among equals
    for (const auto& [name, percentages] : levels)
        if (const std::int64_t charges = chargeCount(percentages); charges > 0)
            devices.push_back({.name = name, .charges = charges});
    std::stable_sort(
        devices.begin(), devices.end(),
        [](const DeviceCharges& a, const DeviceCharges& b) { return a.charges > b.charges; });
    return devices;
}

// A day without data reads 0.
std::vector<DayValue> daily(Database& database, const Period& period,
                            const std::string& expression) {
    std::vector<DayValue> days;
    days.reserve(static_cast<std::size_t>(std::max<std::int64_t>(period.days, 0)));
    for (std::int64_t i = 0; i < period.days; ++i)
        days.push_back({.day = Date(std::chrono::seconds(period.start + i * day))});

    Statement statement(database, "SELECT ts, " + expression + " FROM minute WHERE " +
                                      period.range() + " GROUP BY (ts - " +
                                      std::to_string(period.start) + ") / 86400");
    while (statement.next()) {
        const std::int64_t index = (statement.integer(0) - period.start) / day;
        if (index < 0 || index >= period.days) continue; // the last hour of a day of 25
        days[static_cast<std::size_t>(index)].value = statement.number(1).value_or(0);
    }
    return days;
}

std::optional<DayValue> busiest(const std::vector<DayValue>& days) {
    std::optional<DayValue> busiest;
    for (const DayValue& entry : days)
        if (entry.value > (busiest ? busiest->value : 0)) busiest = entry;
    return busiest;
}

} // namespace

InsightsReport insightsReport(Database& database, std::int64_t days, Date now,
                              const Calendar& calendar) {
    assert(days >= 0);
    const Period period = makePeriod(days, now, calendar);
    const std::string fromRange = " FROM minute WHERE " + period.range();
    const auto figure = [&](const std::string& expression, const std::string& condition = "") {
        return scalar(database, "SELECT " + expression + fromRange + condition);
    };

    InsightsReport report;
    report.daysOfData = daysOfData(database, period);
    report.averageCPU = figure("AVG(cpu)");
    report.averageMemoryUsed = figure("AVG(memory)");
    report.energyWattHours = figure("SUM(watts) / 60.0", " AND watts IS NOT NULL");
    report.diskWritten = figure("SUM(disk_write) * 60.0").value_or(0);
    report.hoursAwake = figure("COUNT(*)").value_or(0) / 60;
    report.apps = appTotals(database, period, "ORDER BY SUM(cpu_seconds) DESC LIMIT 10");
    report.networkApps = appTotals(database, period,
                                   "HAVING SUM(net_in) + SUM(net_out) > 0\n"
                                   "ORDER BY SUM(net_in) + SUM(net_out) DESC LIMIT 10");
    report.cpuByHour = cpuByHour(database, period);
    report.deviceCharges = deviceCharges(database, period);
    report.dailyCPU = daily(database, period, "AVG(cpu)");
    report.dailyMemory = daily(database, period, "AVG(memory)");
    report.dailyEnergy = daily(database, period, "COALESCE(SUM(watts) / 60.0, 0)");
    report.dailyWritten = daily(database, period, "SUM(disk_write) * 60.0");
    report.busiestDay = busiest(report.dailyCPU);
    return report;
}

} // namespace tavero
