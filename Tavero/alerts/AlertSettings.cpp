#include "alerts/AlertSettings.h"

#include "alerts/AlertCenter.h"

#include <algorithm>
#include <array>

namespace tavero {

namespace {

constexpr std::array appItems{
    AlertItem{AlertKind::appCrashed, "App crashed", "When an app quits unexpectedly"},
    AlertItem{AlertKind::appCPU, "High CPU", "An app above 80% for 5 minutes"},
    AlertItem{AlertKind::memoryGrowing, "App using a lot of memory",
              "One app holds over a fifth of your Mac’s memory for 2 minutes"},
    AlertItem{AlertKind::diskWrites, "Heavy disk writes", "An app writes 5 GB in an hour"},
    AlertItem{AlertKind::heavyOnBattery, "Heavy on battery",
              "An app above 30% for 10 minutes on battery"},
};
constexpr std::array macItems{
    AlertItem{AlertKind::memoryPressure, "Memory pressure", "When it turns high"},
    AlertItem{AlertKind::diskFull, "Disk almost full", "Less than 10% free"},
    AlertItem{AlertKind::hotMac, "Hot Mac", "CPU above {temperature}"},
    AlertItem{AlertKind::throttling, "Slowing down to cool", "macOS limits speed because of heat"},
    AlertItem{AlertKind::gpuBusy, "GPU busy", "Above 90% for 5 minutes"},
    AlertItem{AlertKind::restart, "Restart suggested", "On for 14+ days and short on memory"},
};
constexpr std::array batteryItems{
    AlertItem{AlertKind::macBattery, "Battery low", "At 20% and 10%"},
    AlertItem{AlertKind::charged, "Fully charged", "Unplug to help the battery last longer"},
};
constexpr std::array deviceItems{
    AlertItem{AlertKind::bluetoothBattery, "Bluetooth battery low", "At 20% and 10%"},
    AlertItem{AlertKind::microphone, "Microphone in use", "When an app starts listening"},
};
constexpr std::array networkItems{
    AlertItem{AlertKind::offline, "Went offline", "And when the connection is back"},
};

constexpr std::array groups{
    AlertGroup{"apps", "When an app misbehaves",
               "Uses too much CPU, memory, disk or battery, or crashes", appItems},
    AlertGroup{"mac", "When your Mac is struggling",
               "Short on memory or disk, too hot, slowing down", macItems},
    AlertGroup{"battery", "Battery", "Low, or fully charged", batteryItems},
    AlertGroup{"devices", "Devices", "Bluetooth battery low, microphone in use", deviceItems},
    AlertGroup{"network", "Connection", "Went offline and came back", networkItems},
};

struct PresetTexts {
    std::string_view label;
    std::string_view note;
};

constexpr std::array presetTexts{
    PresetTexts{"About everything", "Every alert below is on."},
    PresetTexts{"Only important",
                "Crashes, low memory or disk, a hot Mac, low batteries and going offline."},
    PresetTexts{"Never",
                "Tavero won't send alerts. The menu bar still shows when the Mac is under strain."},
    PresetTexts{"", "Your own mix. Open a group to see each alert."},
};

constexpr double hotCelsius = 95;

// What a new user has.
std::set<AlertKind> importantKinds() {
    std::set<AlertKind> important;
    for (const AlertKindEntry& kind : allAlertKinds)
        if (kind.onByDefault) important.insert(kind.kind);
    return important;
}

} // namespace

std::string_view label(AlertPreset preset) {
    return presetTexts.at(static_cast<std::size_t>(preset)).label;
}

std::string_view note(AlertPreset preset) {
    return presetTexts.at(static_cast<std::size_t>(preset)).note;
}

std::span<const AlertGroup> AlertGroup::all() { return groups; }

std::string detail(const AlertItem& item, const Format& format) {
    constexpr std::string_view blank = "{temperature}";
    std::string text(item.detail);
    if (const std::size_t at = text.find(blank); at != std::string::npos)
        text.replace(at, blank.size(), format.temperature(hotCelsius).joined(""));
    return text;
}

AlertSettings::AlertSettings(Settings& settings)
    : settings_(settings), enabled_(AlertCenter::enabledKinds(settings)) {}

AlertPreset AlertSettings::preset() const {
    if (enabled_.size() == allAlertKinds.size()) return AlertPreset::everything;
    if (enabled_.empty()) return AlertPreset::never;
    return enabled_ == importantKinds() ? AlertPreset::important : AlertPreset::custom;
}

void AlertSettings::choose(AlertPreset preset) {
    if (preset == AlertPreset::custom) return;
    const std::set<AlertKind> important = importantKinds();
    for (const AlertKindEntry& kind : allAlertKinds)
        set(kind.kind, preset == AlertPreset::everything ||
                           (preset == AlertPreset::important && important.contains(kind.kind)));
}

bool AlertSettings::isOn(const AlertGroup& group) const {
    return std::any_of(group.items.begin(), group.items.end(),
                       [&](const AlertItem& item) { return isOn(item.kind); });
}

void AlertSettings::set(AlertKind kind, bool on) {
    settings_.set(keys::alert(kind), on);
    if (on)
        enabled_.insert(kind);
    else
        enabled_.erase(kind);
}

void AlertSettings::set(const AlertGroup& group, bool on) {
    for (const AlertItem& item : group.items) set(item.kind, on);
}

} // namespace tavero
