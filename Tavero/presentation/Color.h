#pragma once

#include <cstdint>

namespace tavero {

// 24 bits of sRGB at full alpha: 0xRRGGBB.
struct Color {
    std::uint32_t rgb = 0;

    bool operator==(const Color&) const = default;
};

// A colour for each appearance of the system. The surface picks, when it draws.
struct AdaptiveColor {
    Color light;
    Color dark;

    bool operator==(const AdaptiveColor&) const = default;
};

} // namespace tavero
