#include "menubar/MenuBarItemMode.h"

namespace tavero {

std::string_view rawValue(MenuBarItemMode mode) {
    switch (mode) {
    case MenuBarItemMode::value:
        return "value";
    case MenuBarItemMode::graph:
        return "graph";
    case MenuBarItemMode::both:
        return "both";
    }
    return "";
}

std::optional<MenuBarItemMode> menuBarItemModeNamed(std::string_view name) {
    for (const auto mode : {MenuBarItemMode::value, MenuBarItemMode::graph, MenuBarItemMode::both})
        if (rawValue(mode) == name) return mode;
    return std::nullopt;
}

MenuBarItemMode menuBarMode(Metric metric, const Settings& settings) {
    const Key<std::string> key = keys::menuBarMode(metric);
    if (const auto chosen = menuBarItemModeNamed(settings.get(key))) return *chosen;
    return menuBarItemModeNamed(key.fallback).value_or(MenuBarItemMode::value);
}

} // namespace tavero
