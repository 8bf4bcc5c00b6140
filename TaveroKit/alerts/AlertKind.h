#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace tavero {

// What an alert can be about. The order is fixed: a kind's position indexes tables.
enum class AlertKind {
    appCPU,
    memoryGrowing,
    diskWrites,
    memoryPressure,
    diskFull,
    hotMac,
    bluetoothBattery,
    microphone,
    heavyOnBattery,
    gpuBusy,
    appCrashed,
    throttling,
    restart,
    macBattery,
    charged,
    offline,
};

struct AlertKindEntry {
    AlertKind kind;
    std::string_view rawValue; // the stable name, as stored in settings
    bool onByDefault;
};

inline constexpr std::array allAlertKinds{
    AlertKindEntry{AlertKind::appCPU, "appCPU", false},
    AlertKindEntry{AlertKind::memoryGrowing, "memoryGrowing", false},
    AlertKindEntry{AlertKind::diskWrites, "diskWrites", false},
    AlertKindEntry{AlertKind::memoryPressure, "memoryPressure", true},
    AlertKindEntry{AlertKind::diskFull, "diskFull", true},
    AlertKindEntry{AlertKind::hotMac, "hotMac", true},
    AlertKindEntry{AlertKind::bluetoothBattery, "bluetoothBattery", true},
    AlertKindEntry{AlertKind::microphone, "microphone", false},
    AlertKindEntry{AlertKind::heavyOnBattery, "heavyOnBattery", false},
    AlertKindEntry{AlertKind::gpuBusy, "gpuBusy", false},
    AlertKindEntry{AlertKind::appCrashed, "appCrashed", true},
    AlertKindEntry{AlertKind::throttling, "throttling", false},
    AlertKindEntry{AlertKind::restart, "restart", false},
    AlertKindEntry{AlertKind::macBattery, "macBattery", true},
    AlertKindEntry{AlertKind::charged, "charged", false},
    AlertKindEntry{AlertKind::offline, "offline", true},
};

constexpr const AlertKindEntry& entry(AlertKind kind) {
    return allAlertKinds[static_cast<std::size_t>(kind)];
}
constexpr std::string_view rawValue(AlertKind kind) { return entry(kind).rawValue; }

// Absent for a text that names no kind.
constexpr std::optional<AlertKind> alertKind(std::string_view rawValue) {
    for (const AlertKindEntry& known : allAlertKinds)
        if (known.rawValue == rawValue) return known.kind;
    return std::nullopt;
}

} // namespace tavero
