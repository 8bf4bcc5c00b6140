#pragma once

#include "records/AppUsage.h"

#include <optional>
#include <vector>

namespace tavero {

// The rows that a person would call apps: all but the operating system. Borrowed, in their order.
inline std::vector<const AppUsage*> userApps(const std::vector<AppUsage>& rows) {
    std::vector<const AppUsage*> apps;
    for (const AppUsage& row : rows)
        if (row.identity.kind != AppIdentity::Kind::system) apps.push_back(&row);
    return apps;
}

// The app with the highest figure, the first of them on a tie. `figure` answers an optional number;
// an app without one is passed over. Null if none has one.
template <typename Figure>
const AppUsage* highest(const std::vector<const AppUsage*>& apps, Figure figure) {
    const AppUsage* best = nullptr;
    decltype(figure(*best)) most;
    for (const AppUsage* app : apps)
        if (const auto own = figure(*app); own && (!most || *own > *most)) {
            best = app;
            most = own;
        }
    return best;
}

} // namespace tavero
