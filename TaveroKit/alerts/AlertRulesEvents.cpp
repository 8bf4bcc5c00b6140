#include "alerts/AlertRules.h"

#include <algorithm>
#include <utility>

namespace tavero {

namespace {

using namespace std::chrono_literals;

constexpr auto offlineHold = 15s;

std::string keyOf(AlertKind kind, const std::string& about) {
    return std::string(rawValue(kind)) + "|" + about;
}

} // namespace

std::vector<SystemAlert> AlertRules::evaluate(const BluetoothSnapshot& snapshot, Date now) {
    Alerts alerts;
    for (const BluetoothDevice& device : snapshot.connected) {
        // The lowest of all, a charging case included: it, too, can run out.
        const auto lowest = std::min_element(
            device.batteries.begin(), device.batteries.end(),
            [](const auto& left, const auto& right) { return left.percent < right.percent; });
        if (lowest == device.batteries.end()) continue;
        if (lowest->percent >= 31) bluetoothAnnounced_.erase(device.name);
        if (lowest->percent > bluetoothLevels.front()) continue; // up to 30 nothing changes
        const std::int64_t level =
            lowest->percent < 11 ? bluetoothLevels.back() : bluetoothLevels.front();
        const auto announced = bluetoothAnnounced_.find(device.name);
        if (announced != bluetoothAnnounced_.end() && level >= announced->second) continue;
        const std::string key =
            keyOf(AlertKind::bluetoothBattery, device.name + "|" + std::to_string(level));
        if (!enabled.contains(AlertKind::bluetoothBattery) || !hasCooledDown(key, 0s, now))
            continue;
        fire(key, now);
        bluetoothAnnounced_[device.name] = level;
        const std::string which = device.batteries.size() > 1 ? " (" + lowest->label + ")" : "";
        alerts.push_back(
            {.kind = AlertKind::bluetoothBattery,
             .key = key,
             .title = device.name + " is almost out of battery",
             .body = std::to_string(lowest->percent) + "% left" + which + ". Charge it soon."});
    }
    return alerts;
}

std::vector<SystemAlert> AlertRules::evaluateMicrophone(const std::vector<std::string>& apps,
                                                        Date now) {
    Alerts alerts;
    std::set<std::string> current(apps.begin(), apps.end());
    for (const std::string& name : current) {
        if (microphoneApps_.contains(name)) continue;
        const std::string key = keyOf(AlertKind::microphone, name);
        if (!enabled.contains(AlertKind::microphone) || !hasCooledDown(key, 10min, now)) continue;
        fire(key, now);
        alerts.push_back({.kind = AlertKind::microphone,
                          .key = key,
                          .title = name + " is using the microphone",
                          .body = "It started listening just now.",
                          .appName = name});
    }
    microphoneApps_ = std::move(current);
    return alerts;
}

std::vector<SystemAlert> AlertRules::evaluateCrashes(const std::vector<CrashReport>& crashes,
                                                     Date now) {
    Alerts alerts;
    for (const CrashReport& crash : crashes) {
        const std::string key = keyOf(AlertKind::appCrashed, crash.appName);
        if (!enabled.contains(AlertKind::appCrashed) || !hasCooledDown(key, 1h, now)) continue;
        fire(key, now);
        alerts.push_back({.kind = AlertKind::appCrashed,
                          .key = key,
                          .title = crash.appName + " quit unexpectedly",
                          .body = "macOS saved a crash report. Reopen it to carry on."});
    }
    return alerts;
}

std::vector<SystemAlert> AlertRules::evaluateOnline(bool online, Date now) {
    const std::string key(rawValue(AlertKind::offline));
    const auto told = [&](const char* title, const char* body) {
        return Alerts{{.kind = AlertKind::offline, .key = key, .title = title, .body = body}};
    };
    if (online) {
        since_.erase(key);
        // Whoever heard of the loss hears of the return, whatever is enabled by then.
        if (!std::exchange(offlineAnnounced_, false)) return {};
        return told("Back online", "Your internet connection is back.");
    }
    const Date start = since_.try_emplace(key, now).first->second;
    if (now - start < offlineHold || offlineAnnounced_ || !enabled.contains(AlertKind::offline) ||
        !hasCooledDown(key, 0s, now))
        return {};
    fire(key, now);
    offlineAnnounced_ = true;
    return told("You're offline", "Your Mac lost its internet connection.");
}

} // namespace tavero
