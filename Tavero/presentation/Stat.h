#pragma once

#include "presentation/Color.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavero {

// One secondary figure of a page. Its label identifies it in a list.
struct Stat {
    std::string label;
    std::string value;
    bool wide = false;                 // takes a whole row in a grid
    std::optional<AdaptiveColor> tint; // of the value; absent: the surface's own
    std::optional<std::string> icon;   // instead of the label's own symbol

    // The name of the icon: `icon`, or what goes with the label.
    std::string_view symbol() const;

    bool operator==(const Stat&) const = default;
};

// The labels that have a symbol of their own.
std::vector<std::string_view> labelsWithSymbols();

} // namespace tavero
