#pragma once

#include "platform/PowerSource.h"
#include "presentation/Format.h"
#include "presentation/Metric.h"
#include "records/LiveSnapshot.h"

#include <optional>
#include <string>
#include <string_view>

namespace tavero {

// The one thing that the machine suffers from, as the menu bar warns of it.
struct Strain {
    std::string text; // the words: "Memory 93%"
    Metric metric = Metric::cpu;
    std::string value; // the bare figure: "93%"

    bool operator==(const Strain&) const = default;
};

// Memory pressure comes first, heat second, a busy CPU last. Absent if there is none of them.
std::optional<Strain> detectStrain(const LiveSnapshot& snapshot, ThermalState thermal,
                                   const Format& format);

// Whether the main menu bar item warns; in its other styles the metric's own item does. The
// arguments are the settings of these names.
bool strainShowsOnTaveroItem(std::string_view menuBarStyle, bool warnUnderStrain);

} // namespace tavero
