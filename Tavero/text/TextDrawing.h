#pragma once

#include "presentation/GraphPoint.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tavero {

// Pictures and columns out of characters. Widths are in columns of the terminal.

// How many columns a text takes; a character that can't be shown takes none.
int textWidth(std::string_view text);

// Cut to `width` with an ellipsis, or padded with blanks to it. Control characters, which would
// steer the terminal, and bytes that are not UTF-8 become "?".
std::string fitted(std::string_view text, int width);
std::string fittedRight(std::string_view text, int width);

// Broken at blanks into lines of at most this width; a word that is longer is cut.
std::vector<std::string> wrapped(std::string_view text, int width);

// A bar, filled from the left to this fraction in steps of an eighth of a column.
std::string textBar(double fraction, int width);

// The part of a whole that each of several takes: one letter a part, blanks for the rest.
struct BarPart {
    double fraction;
    std::string_view fill; // one column wide
};
std::string textStackedBar(std::span<const BarPart> parts, int width);

// The last `seconds` of a curve, newest at the right, in one line.
std::string textSparkline(std::span<const GraphPoint> points, int width, double seconds);

} // namespace tavero
