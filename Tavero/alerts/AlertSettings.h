#pragma once

#include "alerts/AlertKind.h"
#include "presentation/Format.h"
#include "settings/Settings.h"

#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tavero {

// The mixes of alerts that a user can choose with one click, and whatever else is enabled.
enum class AlertPreset { everything, important, never, custom };

std::string_view label(AlertPreset preset); // empty for `custom`, which is no choice
std::string_view note(AlertPreset preset);

// One alert as the settings show it.
struct AlertItem {
    AlertKind kind;
    std::string_view title;
    std::string_view detail; // "{temperature}" stands for the limit in the user's unit
};

// Alerts that belong together.
struct AlertGroup {
    std::string_view id;
    std::string_view title;
    std::string_view detail;
    std::span<const AlertItem> items;

    // All five, each kind in exactly one.
    static std::span<const AlertGroup> all();
};

std::string detail(const AlertItem& item, const Format& format);

// The pane of the alert settings: which alerts are on, and what turning them on and off writes. All
// of it is in force at once, for whoever watches the settings.
class AlertSettings {
  public:
    // The settings must outlive it.
    explicit AlertSettings(Settings& settings);

    static constexpr std::string_view presetLabel = "Alert me";

    AlertPreset preset() const;
    void choose(AlertPreset preset); // `custom` changes nothing

    bool isOn(AlertKind kind) const { return enabled_.contains(kind); }
    bool isOn(const AlertGroup& group) const; // if at least one of its alerts is
    void set(AlertKind kind, bool on);
    void set(const AlertGroup& group, bool on);

  private:
    Settings& settings_;
    std::set<AlertKind> enabled_;
};

} // namespace tavero
