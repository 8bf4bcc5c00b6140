#include "presentation/Motion.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tavero {

namespace {

constexpr double settled = 0.001;      // of the way
constexpr double leastDamping = 0.01;  // of what never settles we say when it might
constexpr double criticalEnd = 9.2335; // where (1 + x) * exp(-x), the way left, is `settled`

// Of the undamped spring, in radians a second.
double frequency(const Spring& spring) { return 2 * std::numbers::pi / spring.response; }

bool isRigid(const Spring& spring) { return !(spring.response > 0); }

// Just below 1.0 the two solutions meet, and the oscillating one divides by nearly nothing.
bool oscillates(const Spring& spring) { return spring.dampingFraction < 1 - 1e-6; }

} // namespace

SpringState moved(const Spring& spring, const SpringState& start, double target, double seconds) {
    if (isRigid(spring)) return {target, 0};
    const double time = std::max(seconds, 0.0);
    const double omega = frequency(spring);
    const double away = start.value - target;
    if (!oscillates(spring)) {
        const double slope = start.velocity + omega * away;
        const double decay = std::exp(-omega * time);
        return {target + decay * (away + slope * time),
                decay * (slope - omega * (away + slope * time))};
    }
    const double damping = std::max(spring.dampingFraction, 0.0) * omega;
    const double damped = std::sqrt(omega * omega - damping * damping);
    const double decay = std::exp(-damping * time);
    const double cosine = std::cos(damped * time);
    const double sine = std::sin(damped * time);
    const double swing = (start.velocity + damping * away) / damped;
    return {target + decay * (away * cosine + swing * sine),
            decay * ((swing * damped - damping * away) * cosine -
                     (away * damped + damping * swing) * sine)};
}

double progress(const Spring& spring, double seconds) {
    return moved(spring, {}, 1, seconds).value;
}

double settlingTime(const Spring& spring) {
    if (isRigid(spring)) return 0;
    const double omega = frequency(spring);
    if (!oscillates(spring)) return criticalEnd / omega;
    const double damping = std::max(spring.dampingFraction, leastDamping);
    return std::log(1 / (settled * std::sqrt(1 - damping * damping))) / (damping * omega);
}

} // namespace tavero
