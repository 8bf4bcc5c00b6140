#pragma once

#include "presentation/Color.h"

// How good or bad a live value is.
namespace tavero::Levels {

inline constexpr AdaptiveColor good{{0x2FA84F}, {0x30D158}};
inline constexpr AdaptiveColor warning{{0xD99A00}, {0xFFD60A}};
inline constexpr AdaptiveColor danger{{0xD92D2D}, {0xFF453A}};

} // namespace tavero::Levels
