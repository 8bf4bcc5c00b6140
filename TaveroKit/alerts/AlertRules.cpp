#include "alerts/AlertRules.h"

#include "records/Fixed.h"

#include <algorithm>
#include <cmath>

namespace tavero {

namespace {

using namespace std::chrono_literals;

constexpr auto clearTime = 10min; // how long a condition must be gone before it can be told again
constexpr auto memoryTime = 24h;

} // namespace

// Takes the active mark from a key whose condition has been gone for long enough.
void AlertRules::note(const std::string& key, bool holds, Date now) {
    if (!memory.active.contains(key)) return;
    if (holds) {
        clearSince_.erase(key);
        return;
    }
    const Date start = clearSince_.try_emplace(key, now).first->second;
    if (now - start < clearTime) return;
    memory.active.erase(key);
    clearSince_.erase(key);
}

// Whether a lasting condition is to be told now; if so, it counts as told.
bool AlertRules::passes(const std::string& key, const Gate& gate, bool holds, Date now) {
    note(key, holds, now);
    if (!holds) {
        since_.erase(key);
        return false;
    }
    const Date start = since_.try_emplace(key, now).first->second;
    if (now - start < gate.hold || !mayFire(key, gate, now)) return false;
    fire(key, now);
    memory.active.insert(key);
    return true;
}

bool AlertRules::mayFire(const std::string& key, const Gate& gate, Date now) const {
    return enabled.contains(gate.kind) && !memory.active.contains(key) &&
           hasCooledDown(key, gate.cooldown, now);
}

// A cooldown of 0 still stops a key that fired in the future, before the clock was set back.
bool AlertRules::hasCooledDown(const std::string& key, std::chrono::seconds cooldown,
                               Date now) const {
    const auto fired = memory.lastFired.find(key);
    return fired == memory.lastFired.end() || now - fired->second >= cooldown;
}

void AlertRules::fire(const std::string& key, Date now) { memory.lastFired[key] = now; }

void AlertRules::prune(Date now) {
    std::erase_if(memory.lastFired,
                  [&](const auto& fired) { return now - fired.second >= memoryTime; });
}

std::vector<SystemAlert> AlertRules::evaluate(const LiveSnapshot& snapshot, const Context& context,
                                              Date now) {
    Alerts alerts;
    evaluateApps(snapshot, context, now, alerts);
    evaluateBattery(snapshot, now, alerts);
    evaluateThrottling(snapshot, context, now, alerts);
    evaluateRestart(snapshot, context, now, alerts);
    evaluateGPU(snapshot, now, alerts);
    evaluateMemory(snapshot, now, alerts);
    evaluateDisk(snapshot, now, alerts);
    evaluateHeat(snapshot, context, now, alerts);
    return alerts;
}

std::string AlertRules::temperatureText(double celsius, bool fahrenheit) {
    const double degrees = fahrenheit ? celsius * 9 / 5 + 32 : celsius;
    return fixedDigits(std::round(degrees), 0) + (fahrenheit ? "°F" : "°C");
}

} // namespace tavero
