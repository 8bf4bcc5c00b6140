#include "insights/Finding.h"

#include "insights/DayText.h"
#include "insights/Words.h"
#include "presentation/NumberText.h"
#include "records/AppIdentity.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <span>

namespace tavero {

namespace {

using InsightsWords::wholeBytes;

bool isSystem(const AppTotal& app) { return app.id == AppIdentity::system.id; }

std::vector<AppTotal> named(const std::vector<AppTotal>& apps) {
    std::vector<AppTotal> result;
    std::copy_if(apps.begin(), apps.end(), std::back_inserter(result),
                 [](const AppTotal& app) { return !isSystem(app); });
    return result;
}

// The first of the apps that have the most of something.
const AppTotal& heaviest(std::span<const AppTotal> apps, double AppTotal::*amount) {
    return *std::max_element(
        apps.begin(), apps.end(),
        [&](const AppTotal& left, const AppTotal& right) { return left.*amount < right.*amount; });
}

// `apps` are those with a name, `total` is the CPU time of all.
std::optional<Finding> cpuFinding(std::span<const AppTotal> apps, double total) {
    if (!(total > 60.0)) return std::nullopt;
    const AppTotal& app = apps.front();
    const std::string share = fixed(std::round(app.cpuSeconds / total * 100), 0);
    return Finding{app.name + " used " + share + "% of all CPU time",
                   InsightsWords::duration(app.cpuSeconds) + " of CPU time in this period.",
                   Section::cpu};
}

std::optional<Finding> memoryFinding(std::span<const AppTotal> apps, const Format& format) {
    const AppTotal& app = heaviest(apps, &AppTotal::averageMemory);
    if (!(app.averageMemory > 500'000'000)) return std::nullopt;
    return Finding{app.name + " used the most memory",
                   "About " + format.bytes(wholeBytes(app.averageMemory)) + " on average.",
                   Section::memory};
}

std::optional<Finding> diskFinding(std::span<const AppTotal> apps, const Format& format) {
    const AppTotal& app = heaviest(apps, &AppTotal::diskWritten);
    if (!(app.diskWritten > 1'000'000'000)) return std::nullopt;
    return Finding{app.name + " wrote " + format.capacity(wholeBytes(app.diskWritten)).joined(),
                   "The most data written to your disk by one app.", Section::disk};
}

// One active day leaves nothing to compare.
std::optional<Finding> busiestDayFinding(const InsightsReport& report) {
    const auto active = std::count_if(report.dailyCPU.begin(), report.dailyCPU.end(),
                                      [](const DayValue& day) { return day.value > 0; });
    if (!report.busiestDay || active < 2) return std::nullopt;
    return Finding{"Your busiest day was " + fullDay(report.busiestDay->day),
                   "Average CPU of " + percent(report.busiestDay->value) + "% that day.",
                   Section::cpu};
}

std::optional<Finding> networkFinding(const InsightsReport& report, const Format& format) {
    const auto app =
        std::find_if_not(report.networkApps.begin(), report.networkApps.end(), isSystem);
    if (app == report.networkApps.end()) return std::nullopt;
    const auto amount = [&](double bytes) { return format.capacity(wholeBytes(bytes)).joined(); };
    const double total = app->networkIn + app->networkOut;
    if (!(total > 500'000'000)) return std::nullopt;
    return Finding{app->name + " used " + amount(total) + " of data",
                   amount(app->networkIn) + " downloaded, " + amount(app->networkOut) +
                       " uploaded in this period.",
                   Section::network};
}

std::optional<Finding> chargeFinding(const InsightsReport& report) {
    if (report.deviceCharges.empty()) return std::nullopt;
    const auto told = [](const DeviceCharges& device) {
        return device.name + " " + InsightsWords::times(device.charges);
    };
    const DeviceCharges& first = report.deviceCharges.front();
    Finding finding{first.name + " needed charging " + InsightsWords::times(first.charges),
                    "Counted from its battery level while connected.", Section::bluetooth};
    if (report.deviceCharges.size() > 1) {
        finding.detail = "Also charged: " + told(report.deviceCharges[1]);
        if (report.deviceCharges.size() > 2) finding.detail += ", " + told(report.deviceCharges[2]);
        finding.detail += ".";
    }
    return finding;
}

} // namespace

std::vector<Finding> Finding::make(const InsightsReport& report, const Format& format) {
    std::vector<Finding> findings;
    const auto add = [&](std::optional<Finding> finding) {
        if (finding) findings.push_back(std::move(*finding));
    };
    // The system can't be quit or replaced, so it is never what stood out; its time counts.
    if (const std::vector<AppTotal> apps = named(report.apps); !apps.empty()) {
        double total = 0;
        for (const AppTotal& app : report.apps) total += app.cpuSeconds;
        add(cpuFinding(apps, total));
        add(memoryFinding(apps, format));
        add(diskFinding(apps, format));
    }
    add(busiestDayFinding(report));
    add(networkFinding(report, format));
    add(chargeFinding(report));
    return findings;
}

} // namespace tavero
