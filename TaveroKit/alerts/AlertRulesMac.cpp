#include "alerts/AlertRules.h"

#include "alerts/AlertWords.h"

#include <algorithm>
#include <cmath>

namespace tavero {

namespace {

using namespace std::chrono_literals;

constexpr double longUptime = 14 * 86'400;             // seconds
constexpr std::uint64_t muchSwap = 4'294'967'296;      // bytes
constexpr double longestUptime = 1'000'000 * 86'400.0; // beyond it, the figure is damaged
constexpr double busyGPU = 0.9;
constexpr double fullDisk = 0.1; // fraction that is free
constexpr double hot = 95;       // Celsius

bool isShort(MemoryPressure pressure) {
    return pressure == MemoryPressure::warning || pressure == MemoryPressure::critical;
}

std::string minutesText(std::int64_t minutes) {
    if (minutes < 60) return std::to_string(minutes) + " min";
    return std::to_string(minutes / 60) + " h " + std::to_string(minutes % 60) + " m";
}

std::string busiest(const AppUsage* app) {
    return app ? " " + app->name + " is the busiest app." : "";
}

const AppUsage* topGPUUser(const std::vector<AppUsage>& apps) {
    const AppUsage* top = nullptr;
    for (const AppUsage& app : apps) {
        if (app.identity.kind == AppIdentity::Kind::system) continue;
        if (app.gpu.value_or(0) > (top ? *top->gpu : 0)) top = &app;
    }
    return top;
}

SystemAlert alertOf(AlertKind kind, const AppUsage* app, std::string title, std::string body) {
    return {.kind = kind,
            .key = std::string(rawValue(kind)),
            .title = std::move(title),
            .body = std::move(body),
            .appName = nameOf(app),
            .bundlePath = bundleOf(app)};
}

SystemAlert alertOf(AlertKind kind, std::string title, std::string body) {
    return alertOf(kind, nullptr, std::move(title), std::move(body));
}

} // namespace

void AlertRules::evaluateBattery(const LiveSnapshot& snapshot, Date now, Alerts& alerts) {
    if (!snapshot.battery) return;
    if (snapshot.battery->onExternalPower)
        evaluatePluggedIn(*snapshot.battery, now, alerts);
    else
        evaluateUnplugged(*snapshot.battery, now, alerts);
}

void AlertRules::evaluatePluggedIn(const BatterySnapshot& battery, Date now, Alerts& alerts) {
    macBatteryAnnounced_.reset();
    // A battery that hovers just below 100 is told once.
    if (battery.percent < 90) chargedAnnounced_ = false;
    const std::string key(rawValue(AlertKind::charged));
    if (battery.percent < 100 || chargedAnnounced_ || !enabled.contains(AlertKind::charged) ||
        !hasCooledDown(key, 0s, now))
        return;
    fire(key, now);
    chargedAnnounced_ = true;
    alerts.push_back(alertOf(AlertKind::charged, "Your Mac is fully charged",
                             "You can unplug it to help the battery last longer."));
}

void AlertRules::evaluateUnplugged(const BatterySnapshot& battery, Date now, Alerts& alerts) {
    chargedAnnounced_ = false;
    if (battery.percent >= 31) macBatteryAnnounced_.reset();
    if (battery.percent > 20) return; // between 21 and 30 nothing changes, so that nothing flaps
    const std::int64_t level = battery.percent < 11 ? 10 : 20;
    if (macBatteryAnnounced_ && level >= *macBatteryAnnounced_) return;
    const std::string key =
        std::string(rawValue(AlertKind::macBattery)) + "|" + std::to_string(level);
    if (!enabled.contains(AlertKind::macBattery) || !hasCooledDown(key, 0s, now)) return;
    fire(key, now);
    macBatteryAnnounced_ = level;
    SystemAlert alert = alertOf(AlertKind::macBattery,
                                "Your battery is at " + std::to_string(battery.percent) + "%",
                                "Plug in your Mac soon.");
    alert.key = key;
    if (battery.minutesToEmpty)
        alert.body += " About " + minutesText(*battery.minutesToEmpty) + " left.";
    alerts.push_back(std::move(alert));
}

void AlertRules::evaluateThrottling(const LiveSnapshot& snapshot, const Context& context, Date now,
                                    Alerts& alerts) {
    const bool holds = context.thermalState == ThermalState::serious ||
                       context.thermalState == ThermalState::critical;
    if (!passes("throttling", {AlertKind::throttling, 1min}, holds, now)) return;
    const AppUsage* app = firstUserApp(snapshot.apps);
    alerts.push_back(alertOf(AlertKind::throttling, app, "Your Mac is slowing down to cool off",
                             "macOS is limiting speed because it's hot." + busiest(app)));
}

// Told at most once a day, as long as it is true.
void AlertRules::evaluateRestart(const LiveSnapshot& snapshot, const Context& context, Date now,
                                 Alerts& alerts) {
    if (!snapshot.memory || !context.uptime) return;
    if (!(*context.uptime >= longUptime && *context.uptime < longestUptime)) return;
    if (!isShort(snapshot.memory->pressure) && snapshot.memory->swapUsed < muchSwap) return;
    if (!enabled.contains(AlertKind::restart) || !hasCooledDown("restart", 24h, now)) return;
    fire("restart", now);
    const auto days = static_cast<std::int64_t>(*context.uptime / 86'400);
    alerts.push_back(alertOf(AlertKind::restart, "Time for a restart",
                             "Your Mac has been on for " + std::to_string(days) +
                                 " days and is short on memory. A restart clears it."));
}

void AlertRules::evaluateGPU(const LiveSnapshot& snapshot, Date now, Alerts& alerts) {
    if (!snapshot.gpu) return;
    const bool holds = snapshot.gpu->device >= busyGPU;
    if (!passes("gpuBusy", {AlertKind::gpuBusy, 5min}, holds, now)) return;
    const AppUsage* app = topGPUUser(snapshot.apps);
    alerts.push_back(alertOf(AlertKind::gpuBusy, app,
                             app ? app->name + " is keeping the GPU busy" : "The GPU is busy",
                             "Above 90% for 5 minutes."));
}

void AlertRules::evaluateMemory(const LiveSnapshot& snapshot, Date now, Alerts& alerts) {
    if (!snapshot.memory) return;
    const bool holds = isShort(snapshot.memory->pressure);
    if (!passes("memoryPressure", {AlertKind::memoryPressure, 30s}, holds, now)) return;
    const AppUsage* app = firstUserApp(snapshot.memoryHeavyApps);
    alerts.push_back(alertOf(AlertKind::memoryPressure, app, "Your Mac is low on memory",
                             app ? app->name + " is using the most (" + memoryText(app->memory) +
                                       "). Quitting apps will speed things up."
                                 : "Quitting apps you're not using will speed things up."));
}

void AlertRules::evaluateDisk(const LiveSnapshot& snapshot, Date now, Alerts& alerts) {
    if (!snapshot.diskAvailable || !snapshot.diskCapacity || *snapshot.diskCapacity < 1) return;
    const auto available = static_cast<double>(std::max<std::int64_t>(*snapshot.diskAvailable, 0));
    const bool holds = available / static_cast<double>(*snapshot.diskCapacity) < fullDisk;
    if (!passes("diskFull", {AlertKind::diskFull}, holds, now)) return;
    alerts.push_back(alertOf(AlertKind::diskFull, "Your disk is almost full",
                             "Only " + diskText(available) +
                                 " left. Your Mac slows down when it runs out of space."));
}

void AlertRules::evaluateHeat(const LiveSnapshot& snapshot, const Context& context, Date now,
                              Alerts& alerts) {
    if (!snapshot.cpuTemperature || !std::isfinite(*snapshot.cpuTemperature)) return;
    const bool holds = *snapshot.cpuTemperature > hot;
    if (!passes("hotMac", {AlertKind::hotMac, 1min}, holds, now)) return;
    const AppUsage* app = firstUserApp(snapshot.apps);
    alerts.push_back(alertOf(AlertKind::hotMac, app, "Your Mac is running hot",
                             "The CPU is at " +
                                 temperatureText(*snapshot.cpuTemperature, context.fahrenheit) +
                                 "." + busiest(app)));
}

} // namespace tavero
