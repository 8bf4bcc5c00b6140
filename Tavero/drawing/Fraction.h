#pragma once

#include <algorithm>
#include <cmath>

namespace tavero {

// A level as a drawing takes it: between 0 and 1, and 0 for what is no number.
inline double fraction(double level) {
    return std::isfinite(level) ? std::clamp(level, 0.0, 1.0) : 0;
}

} // namespace tavero
