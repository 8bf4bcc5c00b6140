#pragma once

#include "alerts/AlertKind.h"
#include "presentation/Metric.h"
#include "presentation/Section.h"
#include "records/Date.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tavero {

// A setting: its name in the store, its type, and the value in force while the store has none.
template <typename Value>
struct Key {
    std::string name;
    Value fallback;
};

using Bytes = std::vector<std::uint8_t>;

// Every setting there is. A dot stands before the variable part of a name.
namespace keys {

// The application itself
inline const Key<bool> onboardingDone{"onboardingDone", false};
inline const Key<bool> openWindowAtLaunch{"openWindowAtLaunch", true};
inline const Key<bool> globalShortcut{"globalShortcut", true};
inline const Key<bool> showInDock{"showInDock", false};
inline const Key<std::string> theme{"theme", "system"};
inline const Key<std::string> settingsTab{"settingsTab", "general"};
inline const Key<std::string> lastSection{"lastSection", "overview"};

// Pace and history
inline const Key<std::int64_t> refreshSeconds{"refreshSeconds", 1};
inline const Key<bool> slowOnBattery{"slowOnBattery", true};
inline const Key<bool> keepHistory{"keepHistory", true};
inline const Key<std::int64_t> insightsDays{"insightsDays", 30};

// The main window
inline const Key<std::string> navigation{"navigation", "sidebar"};
inline const Key<std::string> overviewLayout{"overviewLayout", "cards"};
inline const Key<bool> cardDetails{"cardDetails", true};
inline const Key<std::string> overviewCardOrder{"overviewCardOrder", ""};
inline Key<bool> overviewCard(Section section) {
    return {"overviewCard." + std::string(rawValue(section)), true};
}

// Units
inline const Key<std::string> temperatureUnit{"temperatureUnit", "celsius"};
inline const Key<bool> networkBits{"networkBits", false};

// The menu bar
inline const Key<std::string> menuBarStyle{"menuBarStyle", "detailed"};
inline Key<bool> menuBarItem(Metric metric) {
    const bool shown = metric == Metric::cpu || metric == Metric::memory ||
                       metric == Metric::temperature || metric == Metric::network;
    return {"menuBar." + std::string(rawValue(metric)), shown};
}
inline const Key<bool> menuBarSound{"menuBar.sound", true};
inline const Key<bool> menuBarBluetooth{"menuBar.bluetooth", false};
inline Key<std::string> menuBarMode(Metric metric) {
    return {"menuBarMode." + std::string(rawValue(metric)),
            metric == Metric::cpu ? "both" : "value"};
}
inline const Key<bool> menuBarLabels{"menuBarLabels", true};
inline const Key<bool> warnUnderStrain{"warnUnderStrain", true};

// The dropdown
inline const Key<std::string> dropdownStyle{"dropdownStyle", "cards"};
inline const Key<std::string> dropdownMaterial{"dropdownMaterial", "glass"};
inline const Key<std::string> dropdownTab{"dropdownTab", "overview"};

// The notch
inline const Key<bool> notchEnabled{"notchEnabled", true};
inline const Key<bool> notchValues{"notchValues", true};
inline const Key<bool> notchPeek{"notchPeek", true};
inline const Key<bool> notchAlerts{"notchAlerts", true};
inline const Key<bool> notchLabels{"notchLabels", true};
inline const Key<std::string> notchLeft{"notchLeft", "cpu"};
inline const Key<std::string> notchRight{"notchRight", "memory"};
inline const Key<std::string> notchStyle{"notchStyle", "gauges"};
inline const Key<std::string> notchHomeStats{"notchHomeStats", "cpu,memory,battery"};

// Alerts and sound. The data is JSON; empty means that there is none.
inline const Key<bool> quietHours{"quietHours", false};
inline Key<bool> alert(AlertKind kind) {
    return {"alert." + std::string(rawValue(kind)), entry(kind).onByDefault};
}
inline const Key<Bytes> alertMemory{"alertMemory", {}};
inline const Key<Bytes> appAudioSettings{"appAudioSettings", {}};

// Versions. An empty text and the epoch mean "never".
inline const Key<std::string> whatsNewSeenVersion{"whatsNewSeenVersion", ""};
inline Key<Date> updateFirstSeen(std::string_view version) {
    return {"updateFirstSeen." + std::string(version), {}};
}

} // namespace keys
} // namespace tavero
