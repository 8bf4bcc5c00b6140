#pragma once

#include <string>

namespace tavero {

// Digits with so many decimals, as C's "%.Nf" in the C locale gives them, but never "-0". For a
// number that is neither NaN nor infinite.
std::string fixedDigits(double value, int decimals);

} // namespace tavero
