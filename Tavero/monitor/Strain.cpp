#include "monitor/Strain.h"

#include "presentation/NumberText.h"

#include <algorithm>
#include <cmath>

namespace tavero {

namespace {

constexpr double busyCPU = 0.9; // fraction

std::optional<Strain> memoryStrain(const LiveSnapshot& snapshot) {
    if (!snapshot.memory) return std::nullopt;
    const MemorySnapshot& memory = *snapshot.memory;
    if (memory.pressure != MemoryPressure::warning && memory.pressure != MemoryPressure::critical)
        return std::nullopt;
    const double share = static_cast<double>(memory.used()) /
                         static_cast<double>(std::max<std::uint64_t>(memory.total, 1));
    const std::string value = fixed(std::round(share * 100), 0) + "%";
    return Strain{"Memory " + value, Metric::memory, value};
}

std::optional<Strain> heatStrain(const LiveSnapshot& snapshot, ThermalState thermal,
                                 const Format& format) {
    if (thermal != ThermalState::serious && thermal != ThermalState::critical) return std::nullopt;
    const std::optional<double> celsius = known(snapshot.cpuTemperature);
    return Strain{"Hot", Metric::temperature,
                  celsius ? format.temperature(celsius).joined("") : "Hot"};
}

std::optional<Strain> cpuStrain(const LiveSnapshot& snapshot) {
    const std::optional<double> load = snapshot.cpu ? known(snapshot.cpu->total()) : std::nullopt;
    if (!load || *load < busyCPU) return std::nullopt;
    const std::string value = percent(load) + "%";
    return Strain{"CPU " + value, Metric::cpu, value};
}

} // namespace

std::optional<Strain> detectStrain(const LiveSnapshot& snapshot, ThermalState thermal,
                                   const Format& format) {
    if (std::optional<Strain> strain = memoryStrain(snapshot)) return strain;
    if (std::optional<Strain> strain = heatStrain(snapshot, thermal, format)) return strain;
    return cpuStrain(snapshot);
}

bool strainShowsOnTaveroItem(std::string_view menuBarStyle, bool warnUnderStrain) {
    return menuBarStyle == "compact" && warnUnderStrain;
}

} // namespace tavero
