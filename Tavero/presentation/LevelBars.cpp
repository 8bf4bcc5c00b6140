#include "presentation/LevelBars.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tavero {

namespace {

constexpr LevelBars::Heights weights{0.7, 1.0, 0.85, 0.6};
constexpr double leastHeight = 0.18;
constexpr std::uint64_t energyCheckTicks = 30;
constexpr double silence = 0.00001;    // amplitude
constexpr double lowestDecibels = -50; // of full scale, where the bars begin
constexpr double decibelSpan = 44;     // up to -6
constexpr double leastJitter = 0.75;
constexpr double mostJitter = 1.15;

} // namespace

double loudness(float level) {
    const double amplitude = level > silence ? static_cast<double>(level) : silence;
    return std::clamp((20 * std::log10(amplitude) - lowestDecibels) / decibelSpan, 0.0, 1.0);
}

LevelBars::LevelBars(LevelBarsSources sources) : sources_(std::move(sources)) {
    heights_.fill(leastHeight);
}

std::optional<LevelBars::Motion> LevelBars::tick(bool isMoving) {
    ++ticks_;
    if (ticks_ % energyCheckTicks == 1) savesEnergy_ = sources_.isSavingEnergy();
    if (savesEnergy_ && ticks_ % 2 == 0) return std::nullopt;
    const double level = loudness(sources_.level());
    for (std::size_t bar = 0; bar < count; ++bar) {
        const double jitter =
            isMoving ? leastJitter + (mostJitter - leastJitter) * sources_.random() : 1.0;
        heights_[bar] = std::max(std::min(level * weights[bar] * jitter, 1.0), leastHeight);
    }
    return Motion{heights_, savesEnergy_ ? 2 * interval : interval};
}

} // namespace tavero
