#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace tavero {

// The system's own pictures of symbols. Main thread only.

// Width and height, in the unit that was asked in.
struct SymbolExtent {
    double width = 0;
    double height = 0;
};

// How much of each pixel a symbol covers, 255 being all: rows from the top, `width` values each.
struct SymbolMask {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> coverage;
};

// The space that a symbol takes at a font's point size. Absent if the system has none of that name.
std::optional<SymbolExtent> hostSymbolExtent(std::string_view name, double pointSize);

// The symbol as large as fits into so many pixels, centred. Absent likewise.
std::optional<SymbolMask> hostSymbolMask(std::string_view name, int width, int height);

} // namespace tavero
