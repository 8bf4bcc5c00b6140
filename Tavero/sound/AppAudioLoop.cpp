// When the router looks by itself: often while something may sound, rarely while nothing can.

#include "sound/AppAudioRouter.h"

#include <chrono>

namespace tavero {

namespace {

using namespace std::chrono_literals;

constexpr std::int64_t ticksBetweenScans = 15;
constexpr std::chrono::nanoseconds soundingPause = 500ms;
constexpr std::chrono::nanoseconds activePause = 2s;
constexpr std::chrono::nanoseconds idlePause = 30s;

} // namespace

// In place of the one that runs; a turn under way ends as it would.
void AppAudioRouter::startLoop() {
    ++loops_;
    sleep({}, 0);
}

void AppAudioRouter::sleep(std::chrono::nanoseconds time, std::int64_t tick) {
    loop_ = clock_.after(time, [this, tick] { turn(tick); });
}

void AppAudioRouter::turn(std::int64_t tick) {
    const Telling telling(*this);
    const std::int64_t loop = loops_;
    const bool anyRunning = this->anyRunning();
    const bool isScan = tick % ticksBetweenScans == 0;
    const bool rescan = isScan || (visible_ && (tick % 2 == 0 || candidates_.empty()));
    if (rescan || anyRunning) refresh(rescan);
    if (isScan)
        updateNowPlaying(true);
    else if (!candidates_.empty())
        updateNowPlaying(false);
    if (loop != loops_) return; // another one has begun
    const auto active = anyRunning || visible_ ? activePause : idlePause;
    sleep(candidates_.empty() ? active : soundingPause, tick + 1);
}

} // namespace tavero
