#include "menubar/ItemLabels.h"

#include "settings/SettingsFormat.h"

namespace tavero {

ItemContent metricItemLabel(Metric metric, MenuBarItemMode mode,
                            const std::optional<Strain>& strain,
                            const std::optional<LiveSnapshot>& snapshot,
                            std::span<const GraphPoint> history, const MenuBarLook& look) {
    // The bare figure: the item's place tells what it is of.
    if (strain && strain->metric == metric) return Strain{strain->value, metric, strain->value};
    if (snapshot) return metricContent(metric, mode, *snapshot, history, look);
    return TitleContent{metric};
}

ItemContent menuBarLabel(const std::optional<Strain>& strain, bool strainShows, bool updateReady) {
    if (strain && strainShows) return *strain;
    return MarkContent{updateReady};
}

MenuBarLook menuBarLook(const Settings& settings) {
    return {.showsNames = settings.get(keys::menuBarLabels), .format = format(settings)};
}

bool strainShowsOnTaveroItem(const Settings& settings) {
    return strainShowsOnTaveroItem(settings.get(keys::menuBarStyle),
                                   settings.get(keys::warnUnderStrain));
}

} // namespace tavero
