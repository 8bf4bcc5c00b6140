#pragma once

#include "presentation/Metric.h"
#include "settings/Settings.h"

#include <optional>
#include <string_view>

namespace tavero {

// What a metric's item shows beside its icon.
enum class MenuBarItemMode { value, graph, both };

std::string_view rawValue(MenuBarItemMode mode); // the stable name, as settings hold it: "both"
std::optional<MenuBarItemMode> menuBarItemModeNamed(std::string_view rawValue);

// The mode that the user chose for a metric. A text that names none counts as the default.
MenuBarItemMode menuBarMode(Metric metric, const Settings& settings);

} // namespace tavero
