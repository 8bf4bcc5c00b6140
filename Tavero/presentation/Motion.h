#pragma once

namespace tavero {

// Starts fast and slows down.
struct EaseOut {
    double duration = 0; // seconds
};

// A spring without blending: a new target starts it anew.
struct Spring {
    double response = 0;        // seconds, the period if nothing damped it
    double dampingFraction = 0; // 1.0 arrives without overshooting
};

// The only curves for changes of state, on all surfaces.
namespace Motion {

inline constexpr EaseOut micro{0.15};          // small changes inside a control
inline constexpr Spring navigation{0.35, 1.0}; // moving between pages and cards
inline constexpr Spring notch{0.32, 0.79};     // the notch opens, closes, changes its size

} // namespace Motion

} // namespace tavero
