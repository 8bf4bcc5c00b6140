#include "presentation/Section.h"

#include "presentation/MetricReading.h"
#include "presentation/NumberText.h"

#include <algorithm>

namespace tavero {

namespace {

struct Row {
    std::string_view rawValue;
    std::string_view title;
    std::string_view symbol;
    AdaptiveColor color;
};

// A page that is about a metric looks like it; the others have looks of their own.
Row row(Section section) {
    if (const std::optional<Metric> metric = metricOf(section))
        return {rawValue(*metric), title(*metric), symbol(*metric), color(*metric)};
    switch (section) {
    case Section::sound:
        return {"sound", "Sound", "speaker.wave.2.fill", {{0xBE2BC0}, {0xF171F4}}};
    case Section::bluetooth:
        return {
            "bluetooth", "Bluetooth", "dot.radiowaves.left.and.right", {{0x48484A}, {0x636366}}};
    case Section::insights:
        return {"insights", "Insights", "lightbulb.fill", {{0xB8860B}, {0xF2B632}}};
    default:
        return {"overview", "Overview", "square.grid.2x2", {{0x8E8E93}, {0x98989D}}};
    }
}

std::string powerValue(const LiveSnapshot& snapshot) {
    if (snapshot.battery) return std::to_string(snapshot.battery->percent) + "%";
    const std::optional<double> watts = known(snapshot.systemWatts);
    return watts ? fixed(watts, 0) + " W" : "";
}

std::string diskValue(const LiveSnapshot& snapshot, const Format& format) {
    const std::optional<std::uint64_t> free = freeSpace(snapshot);
    return free ? format.capacity(*free).joined() : "";
}

std::string soundValue(const LiveSnapshot& snapshot) {
    if (!snapshot.sound) return "";
    return snapshot.sound->isMuted ? "Muted" : percent(snapshot.sound->volume) + "%";
}

std::string bluetoothValue(const std::optional<BluetoothSummary>& bluetooth) {
    if (!bluetooth) return "";
    return bluetooth->isOn ? std::to_string(bluetooth->connectedCount) : "Off";
}

} // namespace

std::string_view rawValue(Section section) { return row(section).rawValue; }
std::string_view title(Section section) { return row(section).title; }
std::string_view symbol(Section section) { return row(section).symbol; }
AdaptiveColor color(Section section) { return row(section).color; }

std::optional<Metric> metricOf(Section section) {
    switch (section) {
    case Section::cpu:
        return Metric::cpu;
    case Section::memory:
        return Metric::memory;
    case Section::gpu:
        return Metric::gpu;
    case Section::power:
        return Metric::power;
    case Section::disk:
        return Metric::disk;
    case Section::network:
        return Metric::network;
    default:
        return std::nullopt;
    }
}

std::optional<Section> sectionNamed(std::string_view rawValue) {
    const auto found = std::find_if(allSections.begin(), allSections.end(), [&](Section section) {
        return tavero::rawValue(section) == rawValue;
    });
    return found == allSections.end() ? std::nullopt : std::optional(*found);
}

std::string sidebarValue(Section section, const std::optional<LiveSnapshot>& snapshot,
                         const std::optional<BluetoothSummary>& bluetooth, const Format& format) {
    if (section == Section::bluetooth) return bluetoothValue(bluetooth);
    if (!snapshot) return "";
    switch (section) {
    case Section::cpu:
    case Section::gpu:
        return reading(*metricOf(section), *snapshot, format).value + "%";
    case Section::memory:
        return snapshot->memory ? gibibytes(snapshot->memory->used()) + " GB" : "";
    case Section::power:
        return powerValue(*snapshot);
    case Section::disk:
        return diskValue(*snapshot, format);
    case Section::network:
        return format.rate(snapshot->networkInPerSecond).joined();
    case Section::sound:
        return soundValue(*snapshot);
    default:
        return "";
    }
}

} // namespace tavero
