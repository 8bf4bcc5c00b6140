#pragma once

#include <variant>
#include <vector>

namespace tavero {

// A quantity over time, in seconds, with its exact integral. So a counter that grows by it is known
// at any moment without stepping through the time before, and the same however often it is asked.
class Curve {
  public:
    // The same at all times.
    Curve(double level = 0); // NOLINT(google-explicit-constructor): a plain number is a curve

    // Swings around 0, rising at `start`.
    static Curve wave(double amplitude, double period, double start = 0);
    // `height` for `width` seconds out of every `period`, first at `start`; else 0.
    static Curve pulses(double height, double period, double width, double start = 0);
    // 0 until `from`, then evenly up to `height` at `to`, where it stays.
    static Curve ramp(double height, double from, double to);

    Curve& operator+=(const Curve& other);
    friend Curve operator+(Curve a, const Curve& b) { return a += b; }

    double at(double time) const;
    double integral(double time) const; // from 0 to `time`
    double mean(double from, double to) const;

  private:
    struct Level {
        double height;
    };
    struct Wave {
        double amplitude, period, start;
    };
    struct Pulses {
        double height, period, width, start;
    };
    struct Ramp {
        double height, from, to;
    };
    using Term = std::variant<Level, Wave, Pulses, Ramp>;

    explicit Curve(Term term) : terms_{term} {}

    static double at(const Level& level, double time);
    static double at(const Wave& wave, double time);
    static double at(const Pulses& pulses, double time);
    static double at(const Ramp& ramp, double time);
    // The integral from some moment that is the same for every `time`.
    static double antiderivative(const Level& level, double time);
    static double antiderivative(const Wave& wave, double time);
    static double antiderivative(const Pulses& pulses, double time);
    static double antiderivative(const Ramp& ramp, double time);

    std::vector<Term> terms_;
};

} // namespace tavero
