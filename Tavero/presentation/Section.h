#pragma once

#include "presentation/Color.h"
#include "presentation/Format.h"
#include "presentation/Metric.h"
#include "records/LiveSnapshot.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tavero {

// The pages of the main window, in their order. Temperature has none: its detail lives on others.
enum class Section {
    overview,
    cpu,
    memory,
    gpu,
    power,
    disk,
    network,
    sound,
    bluetooth,
    insights,
};

inline constexpr std::array allSections{
    Section::overview, Section::cpu,     Section::memory, Section::gpu,       Section::power,
    Section::disk,     Section::network, Section::sound,  Section::bluetooth, Section::insights};

std::string_view rawValue(Section section); // the stable name, as settings hold it: "overview"
std::string_view title(Section section);    // what a person reads: "Overview"
std::string_view symbol(Section section);   // the name of an icon
AdaptiveColor color(Section section);

// The metric that a page is about. Absent for those that are about something else.
std::optional<Metric> metricOf(Section section);

// The section of a stored raw value. Absent if there is none of that name.
std::optional<Section> sectionNamed(std::string_view rawValue);

// What the sidebar needs to know of Bluetooth.
struct BluetoothSummary {
    bool isOn = false;
    std::int64_t connectedCount = 0; // devices
};

// The short figure beside a page's name; empty if there is nothing to show.
std::string sidebarValue(Section section, const std::optional<LiveSnapshot>& snapshot,
                         const std::optional<BluetoothSummary>& bluetooth, const Format& format);

} // namespace tavero
