#include "alerts/AlertMemory.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <chrono>

namespace tavero {

namespace {

using nlohmann::json;

constexpr Date epoch = std::chrono::sys_days(std::chrono::year(2001) / 1 / 1);
// A damaged number can't lead out of the range of a date: a century around the epoch is enough.
constexpr double farthest = 100 * 365.25 * 86'400;

std::optional<Date> date(const json& seconds) {
    if (!seconds.is_number()) return std::nullopt;
    const double since = std::clamp(seconds.get<double>(), -farthest, farthest);
    return epoch + std::chrono::duration_cast<Date::duration>(std::chrono::duration<double>(since));
}

} // namespace

std::string AlertMemory::encoded() const {
    json fired = json::object();
    for (const auto& [key, time] : lastFired) fired[key] = secondsBetween(epoch, time);
    // Names of apps may be any bytes.
    return json{{"lastFired", fired}, {"active", active}}.dump(-1, ' ', false,
                                                               json::error_handler_t::replace);
}

std::optional<AlertMemory> AlertMemory::decoded(std::string_view text) {
    const json top = json::parse(text, nullptr, /* allow_exceptions */ false);
    if (!top.is_object()) return std::nullopt;
    const auto fired = top.find("lastFired");
    const auto active = top.find("active");
    if (fired == top.end() || !fired->is_object()) return std::nullopt;
    if (active == top.end() || !active->is_array()) return std::nullopt;

    AlertMemory memory;
    for (const auto& [key, value] : fired->items()) {
        const std::optional<Date> time = date(value);
        if (!time) return std::nullopt;
        memory.lastFired[key] = *time;
    }
    for (const json& key : *active) {
        if (!key.is_string()) return std::nullopt;
        memory.active.insert(key.get<std::string>());
    }
    return memory;
}

} // namespace tavero
