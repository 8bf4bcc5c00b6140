#include "presentation/MetricReading.h"

#include "presentation/NumberText.h"

#include <algorithm>
#include <cmath>

namespace tavero {

namespace {

constexpr double leastBatteryWatts = 0.1; // less is no reading of a machine that runs

Reading cpuReading(const LiveSnapshot& snapshot) {
    if (!snapshot.cpu) return {placeholder, "%", ""};
    const CPUSnapshot& cpu = *snapshot.cpu;
    return {percent(cpu.total()), "%",
            "Load " + fixed(cpu.loadAverage.one, 1) + " of " + std::to_string(cpu.perCore.size())};
}

std::string pressureNote(MemoryPressure pressure) {
    switch (pressure) {
    case MemoryPressure::normal:
        return "Normal";
    case MemoryPressure::warning:
        return "Pressure high";
    case MemoryPressure::critical:
        return "Pressure critical";
    case MemoryPressure::unknown:
        break;
    }
    return "";
}

Reading memoryReading(const LiveSnapshot& snapshot) {
    if (!snapshot.memory) return {placeholder, "GB", ""};
    const MemorySnapshot& memory = *snapshot.memory;
    return {gibibytes(memory.used()), "/ " + wholeGibibytes(memory.total) + " GB",
            pressureNote(memory.pressure)};
}

Reading gpuReading(const LiveSnapshot& snapshot, const Format& format) {
    if (!snapshot.gpu) return {placeholder, "%", ""};
    return {percent(snapshot.gpu->device), "%", format.bytes(snapshot.gpu->memoryInUse)};
}

Reading powerReading(const LiveSnapshot& snapshot, const Format& format) {
    if (!snapshot.battery) return {fixed(snapshot.systemWatts, 1), "W", ""};
    return {std::to_string(snapshot.battery->percent), "%",
            format.batteryStatus(*snapshot.battery)};
}

Reading diskReading(const LiveSnapshot& snapshot, const Format& format) {
    const std::optional<std::uint64_t> free = freeSpace(snapshot);
    const Measure space = free ? format.capacity(*free) : Measure{placeholder, "GB"};
    return {space.value, space.unit + " free",
            format.rate(snapshot.diskReadPerSecond + snapshot.diskWritePerSecond).joined()};
}

Reading temperatureReading(const LiveSnapshot& snapshot, const Format& format) {
    const Measure temperature = format.temperature(snapshot.cpuTemperature);
    return {temperature.value, temperature.unit, format.fans(snapshot.fanRPM)};
}

Reading networkReading(const LiveSnapshot& snapshot, const Format& format) {
    const Measure in = format.rate(snapshot.networkInPerSecond);
    return {in.value, in.unit, "↑ " + format.rate(snapshot.networkOutPerSecond).joined()};
}

} // namespace

Reading reading(Metric metric, const LiveSnapshot& snapshot, const Format& format) {
    switch (metric) {
    case Metric::cpu:
        return cpuReading(snapshot);
    case Metric::memory:
        return memoryReading(snapshot);
    case Metric::gpu:
        return gpuReading(snapshot, format);
    case Metric::power:
        return powerReading(snapshot, format);
    case Metric::disk:
        return diskReading(snapshot, format);
    case Metric::temperature:
        return temperatureReading(snapshot, format);
    case Metric::network:
        return networkReading(snapshot, format);
    }
    return {};
}

std::string graphLabel(double bytesPerSecond, const Format& format) {
    Measure rate = format.rate(bytesPerSecond);
    if (rate.value.ends_with(".0")) rate.value.resize(rate.value.size() - 2);
    return rate.joined();
}

std::optional<double> powerDraw(const LiveSnapshot& snapshot) {
    const std::optional<BatterySnapshot>& battery = snapshot.battery;
    std::optional<double> own = battery ? known(battery->watts) : std::nullopt;
    if (own) own = std::abs(*own);
    if (own && !battery->onExternalPower && *own > leastBatteryWatts) return own;
    const std::optional<double> system = known(snapshot.systemWatts);
    return system ? system : own;
}

std::optional<std::uint64_t> freeSpace(const LiveSnapshot& snapshot) {
    if (!snapshot.diskAvailable) return std::nullopt;
    return static_cast<std::uint64_t>(std::max<std::int64_t>(*snapshot.diskAvailable, 0));
}

} // namespace tavero
