#pragma once

#include "menubar/ItemContent.h"
#include "menubar/MetricContent.h"
#include "settings/Settings.h"

#include <optional>
#include <span>

namespace tavero {

// Decides what the items show.

// The item of a metric: the warning if it is the one under strain, its figures otherwise, and its
// title until there are any.
ItemContent metricItemLabel(Metric metric, MenuBarItemMode mode,
                            const std::optional<Strain>& strain,
                            const std::optional<LiveSnapshot>& snapshot,
                            std::span<const GraphPoint> history, const MenuBarLook& look);

// The main item: the mark, or the warning where the user wants it there.
ItemContent menuBarLabel(const std::optional<Strain>& strain, bool strainShows, bool updateReady);

// How the user wants the items, and whether a warning shows on the main one.
MenuBarLook menuBarLook(const Settings& settings);
bool strainShowsOnTaveroItem(const Settings& settings);

} // namespace tavero
