#pragma once

#include "records/AppUsage.h"
#include "records/LiveSnapshot.h"

#include <string_view>
#include <vector>

namespace tavero {

// What a full bar stands for in a list of apps.
struct Tops {
    double cpu = 0;    // cores, at least 0.01
    double memory = 0; // bytes, at least 1

    bool operator==(const Tops&) const = default;
};

Tops tops(const std::vector<AppUsage>& apps);

// The apps that a person could do something about, first the one with the largest share of either
// the CPU or the memory. What the system brings along is left out.
std::vector<AppUsage> usingTheMost(const LiveSnapshot& snapshot);

// Whether the row is this program. `ownBundlePath` is where it runs from.
bool isTavero(const AppUsage& row, std::string_view ownBundlePath);

} // namespace tavero
