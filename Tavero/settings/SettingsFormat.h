#pragma once

#include "presentation/Format.h"
#include "settings/Settings.h"

namespace tavero {

// Numbers as the user wants them now.
inline Format format(const Settings& settings) {
    return {.networkBits = settings.get(keys::networkBits),
            .fahrenheit = settings.get(keys::temperatureUnit) == "fahrenheit"};
}

} // namespace tavero
