#include "hardware/EnergyModelReader.h"

#include <initializer_list>
#include <utility>
#include <vector>

namespace tavero {

namespace {

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\n\v\f\r";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == text.npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

// Joules in one of a unit; 0 for one that nobody knows.
double scale(std::string_view unit) {
    if (unit == "mJ") return 1e-3;
    if (unit == "uJ" || unit == "\u00B5J") return 1e-6; // the micro sign
    if (unit == "nJ") return 1e-9;
    return 0;
}

std::optional<double> sum(const ComponentPower& power, std::initializer_list<const char*> names) {
    std::optional<double> sum;
    for (const char* name : names)
        if (const auto found = power.watts.find(name); found != power.watts.end())
            sum = sum.value_or(0) + found->second;
    return sum;
}

} // namespace

std::optional<double> ComponentPower::cpu() const { return sum(*this, {"CPU Energy"}); }

std::optional<double> ComponentPower::gpu() const { return sum(*this, {"GPU", "GPU Energy"}); }

std::optional<double> ComponentPower::neuralEngine() const { return sum(*this, {"ANE"}); }

std::optional<double> ComponentPower::memory() const { return sum(*this, {"DRAM"}); }

std::optional<ComponentPower> EnergyModelReader::sample(EnergySource& source, Date now) {
    const std::optional<std::vector<EnergyChannel>> channels = source.channels();
    if (!channels) return std::nullopt;
    Joules joules;
    for (const EnergyChannel& channel : *channels)
        if (channel.name)
            joules[*channel.name] +=
                scale(trimmed(channel.unit)) * static_cast<double>(channel.value);

    const std::optional<Reading> previous =
        std::exchange(previous_, Reading{.joules = std::move(joules), .at = now});
    const double elapsed = previous ? secondsBetween(previous->at, now) : 0;
    if (!(elapsed > 0)) return std::nullopt;
    ComponentPower power;
    for (const auto& [name, used] : previous_->joules) {
        const auto before = previous->joules.find(name);
        if (before != previous->joules.end() && used > before->second)
            power.watts.emplace(name, (used - before->second) / elapsed);
    }
    return power;
}

} // namespace tavero
