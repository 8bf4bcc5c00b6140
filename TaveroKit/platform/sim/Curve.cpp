#include "platform/sim/Curve.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tavero {

namespace {

constexpr double fullCircle = 2 * std::numbers::pi;

} // namespace

Curve::Curve(double level) : Curve(Term(Level{level})) {}

Curve Curve::wave(double amplitude, double period, double start) {
    return Curve(Wave{amplitude, period, start});
}

Curve Curve::pulses(double height, double period, double width, double start) {
    return Curve(Pulses{height, period, width, start});
}

Curve Curve::ramp(double height, double from, double to) { return Curve(Ramp{height, from, to}); }

Curve& Curve::operator+=(const Curve& other) {
    const std::vector<Term> added = other.terms_; // it may be this very curve
    terms_.insert(terms_.end(), added.begin(), added.end());
    return *this;
}

double Curve::at(double time) const {
    double sum = 0;
    for (const Term& term : terms_)
        sum += std::visit([&](const auto& shape) { return at(shape, time); }, term);
    return sum;
}

double Curve::integral(double time) const {
    double sum = 0;
    for (const Term& term : terms_)
        sum += std::visit(
            [&](const auto& shape) {
                return antiderivative(shape, time) - antiderivative(shape, 0);
            },
            term);
    return sum;
}

double Curve::mean(double from, double to) const {
    return to > from ? (integral(to) - integral(from)) / (to - from) : at(to);
}

double Curve::at(const Level& level, double) { return level.height; }

double Curve::antiderivative(const Level& level, double time) { return level.height * time; }

double Curve::at(const Wave& wave, double time) {
    return wave.amplitude * std::sin(fullCircle * (time - wave.start) / wave.period);
}

double Curve::antiderivative(const Wave& wave, double time) {
    return -wave.amplitude * wave.period / fullCircle *
           std::cos(fullCircle * (time - wave.start) / wave.period);
}

double Curve::at(const Pulses& pulses, double time) {
    const double cycles = (time - pulses.start) / pulses.period;
    return (cycles - std::floor(cycles)) * pulses.period < pulses.width ? pulses.height : 0;
}

double Curve::antiderivative(const Pulses& pulses, double time) {
    const double cycles = (time - pulses.start) / pulses.period;
    const double whole = std::floor(cycles);
    const double into = (cycles - whole) * pulses.period;
    return pulses.height * (whole * pulses.width + std::min(into, pulses.width));
}

double Curve::at(const Ramp& ramp, double time) {
    if (time <= ramp.from) return 0;
    if (time >= ramp.to) return ramp.height;
    return ramp.height * (time - ramp.from) / (ramp.to - ramp.from);
}

double Curve::antiderivative(const Ramp& ramp, double time) {
    if (time <= ramp.from) return 0;
    const double rising = std::min(time, ramp.to) - ramp.from;
    return at(ramp, std::min(time, ramp.to)) * rising / 2 +
           ramp.height * std::max(time - ramp.to, 0.0);
}

} // namespace tavero
