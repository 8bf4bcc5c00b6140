#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>

namespace tavero {

// How far up the span that a meter shows an amplitude is, 0 to 1: it goes by decibels, as ears do.
// No number is silence.
double loudness(float level);

// What the bars of a level meter ask for, each when they need it.
struct LevelBarsSources {
    std::function<float()> level;         // amplitude, linear; a peak is 1
    std::function<bool()> isSavingEnergy; // asked about every five seconds
    std::function<double()> random;       // evenly spread from 0 to 1
};

// The small meter of four bars: what they do on each tick of a repeating timer, for a view to
// animate. They are never empty; silence is four low bars.
class LevelBars {
  public:
    static constexpr std::size_t count = 4;
    static constexpr double interval = 1.0 / 6; // seconds from tick to tick

    // Sizes in device-independent pixels. The bars stand on the bottom.
    static constexpr double barWidth = 2.5;
    static constexpr double barStep = 4.5; // from the middle of one to that of the next
    static constexpr double firstMiddle = 1.25;
    static constexpr double cornerRadius = 1.25;
    static constexpr double width = firstMiddle * 2 + barStep * (count - 1);

    using Heights = std::array<double, count>; // fractions of the view's height

    // Where the bars go, and for how long, slow at both ends.
    struct Motion {
        Heights heights;
        double duration = 0; // seconds
    };

    explicit LevelBars(LevelBarsSources sources);

    // A bar that isn't moving stands at its weight of the level. Absent on a tick that is left out
    // to save energy.
    std::optional<Motion> tick(bool isMoving);

    const Heights& heights() const { return heights_; }

  private:
    LevelBarsSources sources_;
    Heights heights_;
    std::uint64_t ticks_ = 0;
    bool savesEnergy_ = false;
};

} // namespace tavero
