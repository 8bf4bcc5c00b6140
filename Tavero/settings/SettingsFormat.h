#pragma once

#include "presentation/Format.h"
#include "settings/Settings.h"

#include <QLocale>

namespace tavero {

// Numbers as the user wants them now, grouped as the user's locale has it.
inline Format format(const Settings& settings) {
    return {.networkBits = settings.get(keys::networkBits),
            .fahrenheit = settings.get(keys::temperatureUnit) == "fahrenheit",
            .groupSeparator = QLocale().groupSeparator().toStdString()};
}

} // namespace tavero
