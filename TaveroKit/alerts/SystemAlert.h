#pragma once

#include "alerts/AlertKind.h"

#include <optional>
#include <string>

namespace tavero {

// Something that the user should hear of.
struct SystemAlert {
    AlertKind kind = AlertKind::appCPU;
    // What it is about: the raw value of the kind, for many kinds followed by "|" and the app, the
    // device or the level. Alerts of one key replace each other on screen.
    std::string key;
    std::string title;
    std::string body;
    std::optional<std::string> appName;
    std::optional<std::string> bundlePath; // of an app that the user may want to quit

    bool operator==(const SystemAlert&) const = default;
};

} // namespace tavero
