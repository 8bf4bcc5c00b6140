#pragma once

#include "presentation/Color.h"

#include <optional>
#include <string>
#include <string_view>

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

} // namespace tavero
