#include "alerts/AlertRules.h"

#include "alerts/AlertWords.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <unordered_set>

namespace tavero {

namespace {

using namespace std::chrono_literals;

constexpr std::int64_t busyPercent = 80; // of a core
constexpr double heavyOnBatteryCPU = 0.3;
constexpr double writtenInAnHour = 5'000'000'000; // bytes
constexpr auto writeTime = 1h;
// A machine that slept did not write all the time at the rate of the moment.
constexpr double longestGap = 120; // seconds
constexpr std::uint64_t leastMemoryLimit = 2'147'483'648;

std::string keyOf(AlertKind kind, const AppUsage& app) {
    return std::string(rawValue(kind)) + "|" + app.identity.id;
}

SystemAlert alertOf(AlertKind kind, const AppUsage& app, std::string title, std::string body) {
    return {.kind = kind,
            .key = keyOf(kind, app),
            .title = std::move(title),
            .body = std::move(body),
            .appName = app.name,
            .bundlePath = app.bundlePath};
}

// The kinds whose timers belong to an app that is listed.
bool isTimerOfAnApp(std::string_view key) {
    for (const AlertKind kind :
         {AlertKind::appCPU, AlertKind::heavyOnBattery, AlertKind::memoryGrowing})
        if (key.starts_with(rawValue(kind))) return true;
    return false;
}

bool isRecent(Date time, Date now) { return now - time <= writeTime; }

} // namespace

std::uint64_t AlertRules::appMemoryLimit(std::uint64_t total) {
    return std::max(static_cast<std::uint64_t>(static_cast<double>(total) * 0.2), leastMemoryLimit);
}

void AlertRules::evaluateApps(const LiveSnapshot& snapshot, const Context& context, Date now,
                              Alerts& alerts) {
    if (snapshot.apps.empty()) return; // a light pass tells nothing of apps
    const bool onBattery = snapshot.battery && !snapshot.battery->onExternalPower;
    const double elapsed =
        lastFullSample_ ? std::min(secondsBetween(*lastFullSample_, now), longestGap) : 0;
    lastFullSample_ = now;
    dropTimersOfUnlisted(snapshot);
    const std::uint64_t memoryLimit =
        appMemoryLimit(snapshot.memory ? snapshot.memory->total : context.physicalMemory);

    std::unordered_set<std::string_view> met; // the row among the busiest apps comes first and wins
    for (const std::vector<AppUsage>* rows : {&snapshot.apps, &snapshot.memoryHeavyApps})
        for (const AppUsage& app : *rows) {
            if (app.identity.kind == AppIdentity::Kind::system) continue;
            if (!met.insert(app.identity.id).second) continue;
            evaluateApp(app, onBattery, memoryLimit, now, alerts);
            if (elapsed > 0) evaluateWrites(app, elapsed, now, alerts);
        }
    dropOldWrites(now);
}

void AlertRules::evaluateApp(const AppUsage& app, bool onBattery, std::uint64_t memoryLimit,
                             Date now, Alerts& alerts) {
    const auto passesFor = [&](const Gate& gate, bool holds) {
        return passes(keyOf(gate.kind, app), gate, holds, now);
    };
    if (passesFor({AlertKind::appCPU, 5min}, app.cpu >= busyPercent / 100.0))
        alerts.push_back(alertOf(AlertKind::appCPU, app, app.name + " is working hard",
                                 "Above " + std::to_string(busyPercent) +
                                     "% CPU for 5 minutes. Quit it if you're not using it."));
    if (passesFor({AlertKind::heavyOnBattery, 10min}, onBattery && app.cpu >= heavyOnBatteryCPU))
        alerts.push_back(alertOf(AlertKind::heavyOnBattery, app,
                                 app.name + " is draining your battery",
                                 "Above 30% CPU for 10 minutes while on battery."));
    if (passesFor({AlertKind::memoryGrowing, 2min}, app.memory >= memoryLimit))
        alerts.push_back(
            alertOf(AlertKind::memoryGrowing, app,
                    app.name + " is using " + memoryText(app.memory) + " of memory",
                    "More than a fifth of this Mac’s memory. Quit it if things feel slow."));
}

// Writes add up over an hour, so no moment of them has to last.
void AlertRules::evaluateWrites(const AppUsage& app, double elapsed, Date now, Alerts& alerts) {
    std::vector<Write>& log = writeLog_[app.identity.id];
    std::erase_if(log, [&](const Write& write) { return !isRecent(write.time, now); });
    // A pass without writes leaves no trace in the sum.
    if (const double bytes = elapsed * app.diskWriteRate; std::isfinite(bytes) && bytes != 0)
        log.push_back({now, bytes});
    double total = 0;
    for (const Write& write : log) total += write.bytes;

    const bool holds = total >= writtenInAnHour;
    const std::string key = keyOf(AlertKind::diskWrites, app);
    note(key, holds, now);
    if (!holds || !mayFire(key, {AlertKind::diskWrites}, now)) return;
    fire(key, now);
    memory.active.insert(key);
    alerts.push_back(alertOf(AlertKind::diskWrites, app, app.name + " is writing a lot to disk",
                             diskText(total) + " in the last hour."));
}

// An app that is no longer listed has lost its time at once.
void AlertRules::dropTimersOfUnlisted(const LiveSnapshot& snapshot) {
    std::unordered_set<std::string_view> listed;
    for (const std::vector<AppUsage>* rows : {&snapshot.apps, &snapshot.memoryHeavyApps})
        for (const AppUsage& app : *rows) listed.insert(app.identity.id);
    std::erase_if(since_, [&](const auto& timer) {
        const std::string_view key = timer.first;
        return isTimerOfAnApp(key) && !listed.contains(key.substr(key.find('|') + 1));
    });
}

void AlertRules::dropOldWrites(Date now) {
    std::erase_if(writeLog_, [&](const auto& app) {
        return std::none_of(app.second.begin(), app.second.end(),
                            [&](const Write& write) { return isRecent(write.time, now); });
    });
}

} // namespace tavero
