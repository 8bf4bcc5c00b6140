#pragma once

namespace tavero {

// Starts fast and slows down.
struct EaseOut {
    double duration = 0; // seconds
};

// A damped spring. Its numbers are all it takes: nothing blends one motion into the next, a new
// target simply takes over where and as fast as things move.
struct Spring {
    double response = 0;        // seconds, the period if nothing damped it
    double dampingFraction = 0; // 1.0 arrives without overshooting; more counts as 1.0
};

// Something on a spring.
struct SpringState {
    double value = 0;
    double velocity = 0; // per second
};

// Where a spring that pulls towards `target` has brought it after so many seconds: the exact
// solution, so any frame rate gives the same curve. A spring without response is there at once.
SpringState moved(const Spring& spring, const SpringState& start, double target, double seconds);

// The part of the way, from rest at 0 towards 1, after so many seconds. Passes 1 if it overshoots.
double progress(const Spring& spring, double seconds);

// Seconds after which what started at rest surely stays within a thousandth of the way of its
// target.
double settlingTime(const Spring& spring);

// The only curves for changes of state, on all surfaces.
namespace Motion {

inline constexpr EaseOut micro{0.15};          // small changes inside a control
inline constexpr Spring navigation{0.35, 1.0}; // moving between pages and cards
inline constexpr Spring notch{0.32, 0.79};     // the notch opens, closes, changes its size

} // namespace Motion

} // namespace tavero
