#include "sound/tap/AppAudioTap.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tavero {

namespace {

// One that is no number is silence.
float clamped(float volume) { return std::isnan(volume) ? 0 : std::clamp(volume, 0.0f, 1.0f); }

} // namespace

AppAudioTap::AppAudioTap(TapRequest request, float volume, Date now)
    : request_(std::move(request)), started_(now) {
    setVolume(volume);
}

AppAudioTap::Result AppAudioTap::start(AudioTapSource& source, TapRequest request, float volume,
                                       Date now) {
    std::unique_ptr<AppAudioTap> tap(new AppAudioTap(std::move(request), volume, now));
    AudioTapSource::Result result = source.start(tap->request_, tap->cells_);
    if (const TapFailure* failure = std::get_if<TapFailure>(&result)) return *failure;
    tap->running_ = std::get<std::unique_ptr<RunningTap>>(std::move(result));
    return tap;
}

float AppAudioTap::volume() const { return cells_.gain.load(std::memory_order_relaxed); }

void AppAudioTap::setVolume(float volume) {
    if (!request_.listenOnly) cells_.gain.store(clamped(volume), std::memory_order_relaxed);
}

bool AppAudioTap::hasHeardSound() const { return cells_.peak.load(std::memory_order_relaxed) > 0; }

float AppAudioTap::latestLevel() const { return cells_.latest.load(std::memory_order_relaxed); }

float AppAudioTap::takeRecentPeak() { return cells_.recent.exchange(0, std::memory_order_relaxed); }

bool AppAudioTap::isRunning() const { return running_ && running_->isRunning(); }

void AppAudioTap::stop() { running_.reset(); }

} // namespace tavero
