#include "presentation/MetricStatus.h"

#include "presentation/MetricReading.h"
#include "presentation/NumberText.h"

namespace tavero {

namespace {

constexpr double busyLoad = 0.85;

Status loadStatus(std::optional<double> load) {
    if (known(load) && *load > busyLoad) return {"Busy", Tone::warning};
    return {"Normal", Tone::good};
}

std::optional<Status> memoryStatus(const LiveSnapshot& snapshot) {
    if (!snapshot.memory) return std::nullopt;
    switch (snapshot.memory->pressure) {
    case MemoryPressure::normal:
        return Status{"Normal", Tone::good};
    case MemoryPressure::warning:
        return Status{"Pressure high", Tone::warning};
    case MemoryPressure::critical:
        return Status{"Pressure critical", Tone::warning};
    case MemoryPressure::unknown:
        break;
    }
    return std::nullopt;
}

std::optional<Status> powerStatus(const LiveSnapshot& snapshot) {
    if (!snapshot.battery) return std::nullopt;
    if (snapshot.battery->isCharging) return Status{"Charging", Tone::good};
    if (snapshot.battery->onExternalPower) return Status{"Plugged in", Tone::neutral};
    return Status{"On battery", Tone::neutral};
}

std::optional<Status> diskStatus(const LiveSnapshot& snapshot) {
    const std::optional<std::uint64_t> free = freeSpace(snapshot);
    const std::int64_t capacity = snapshot.diskCapacity.value_or(0);
    if (!free || capacity < 1) return std::nullopt;
    const double used = 1 - static_cast<double>(*free) / static_cast<double>(capacity);
    return Status{percent(used) + "% used", Tone::neutral};
}

std::optional<Status> networkStatus(const LiveSnapshot& snapshot) {
    switch (snapshot.connection) {
    case ConnectionKind::wifi:
    case ConnectionKind::wired:
    case ConnectionKind::cellular:
        return Status{std::string(title(snapshot.connection)), Tone::neutral};
    case ConnectionKind::offline:
        return Status{std::string(title(snapshot.connection)), Tone::warning};
    case ConnectionKind::other:
        break;
    }
    if (snapshot.wifi) return Status{std::string(title(ConnectionKind::wifi)), Tone::neutral};
    return std::nullopt;
}

} // namespace

ToneColors colors(Tone tone) {
    switch (tone) {
    case Tone::good:
        return {AdaptiveColor{{0x1F6B34}, {0x6FD08A}}, {{0xEEF6F0}, {0x1D3325}}};
    case Tone::warning:
        return {AdaptiveColor{{0x8A3D06}, {0xF5A55C}}, {{0xFDEBD9}, {0x4A2F17}}};
    case Tone::neutral:
        break;
    }
    return {std::nullopt, {{0xEEF1F5}, {0x3A3A3C}}};
}

std::optional<Status> status(Metric metric, const LiveSnapshot& snapshot) {
    switch (metric) {
    case Metric::cpu:
        return loadStatus(snapshot.cpu ? std::optional(snapshot.cpu->total()) : std::nullopt);
    case Metric::memory:
        return memoryStatus(snapshot);
    case Metric::gpu:
        return loadStatus(snapshot.gpu ? std::optional(snapshot.gpu->device) : std::nullopt);
    case Metric::power:
        return powerStatus(snapshot);
    case Metric::disk:
        return diskStatus(snapshot);
    case Metric::temperature:
        break;
    case Metric::network:
        return networkStatus(snapshot);
    }
    return std::nullopt;
}

} // namespace tavero
