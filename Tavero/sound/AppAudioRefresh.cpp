// When an app is tapped, and when its tap is made anew.

#include "sound/AppAudioRouter.h"
#include "sound/SoundController.h"

#include <algorithm>
#include <chrono>

namespace tavero {

namespace {

using namespace std::chrono_literals;

// An app that plays for this long, and of which nothing is heard, can't be captured.
constexpr auto silentCaptureTime = 8s;
// After such a break a tap may have outlived the device it was made with.
constexpr auto idleTime = 15s;

} // namespace

void AppAudioRouter::refresh(bool rescan) {
    if (!hasSound() || (!visible_ && settings_.empty() && taps_.empty())) return;
    const Telling telling(*this);
    const Date now = clock_.now();
    if (rescan) this->rescan();
    notePlaying(now);
    for (const AudioApp& app : apps_) refreshTap(app, now);

    std::set<std::string> gone;
    for (const auto& [id, tap] : taps_) gone.insert(id);
    for (const AudioApp& app : apps_) gone.erase(app.id);
    for (const std::string& id : gone) removeTap(id);
}

void AppAudioRouter::rescan() {
    assign(apps_, AudioApps::all(*audio_.objects, *audio_.processes), Change::apps);
    assign(outputs_, SoundController::outputs(*audio_.objects), Change::outputs);
    assign(defaultOutputUID_, SoundController::defaultOutputUID(*audio_.objects),
           Change::defaultOutputUID);
}

// That an app is out of reach is held only until it stops: what it plays next may be another thing.
void AppAudioRouter::notePlaying(Date now) {
    std::set<std::string> stillProtected;
    for (const AudioApp& app : apps_) {
        if (!app.isPlaying) {
            playingSince_.erase(app.id);
            continue;
        }
        playingSince_.try_emplace(app.id, now);
        lastPlayed_[app.id] = now;
        if (protectedApps_.contains(app.id)) stillProtected.insert(app.id);
    }
    assign(protectedApps_, std::move(stillProtected), Change::protectedApps);
}

void AppAudioRouter::refreshTap(const AudioApp& app, Date now) {
    const Setting setting = this->setting(app);
    const auto target = this->target(setting.outputUID);
    if (permission_ != Permission::granted || setting.isUntouched(target) ||
        protectedApps_.contains(app.id) || !target)
        return removeTap(app.id);

    const float gain = setting.muted ? 0 : static_cast<float>(setting.volumeOn(target));
    const auto found = taps_.find(app.id);
    if (found == taps_.end() || !isInOrder(*found->second, app, *target)) {
        // The new one before the old one ends, or the app would blare in between.
        return keepTap(app.id, makeTap(app, *target, gain));
    }
    AppAudioTap& tap = *found->second;
    tap.setVolume(gain);
    if (app.isPlaying) {
        if (isSilentCapture(tap, app, gain, now)) protect(app.id);
        return;
    }
    if (hasIdled(app, now) && tap.isRunning()) {
        tap.stop(); // first here, since nothing plays
        keepTap(app.id, makeTap(app, *target, gain));
    }
}

bool AppAudioRouter::isInOrder(const AppAudioTap& tap, const AudioApp& app,
                               const std::string& target) const {
    return tap.processObjects() == app.processObjects && tap.outputUID() == target &&
           tap.sourceUID() == defaultOutputUID_;
}

// Of an app that plays. One that is muted has a gain of 0: whether it is heard can't matter.
bool AppAudioRouter::isSilentCapture(const AppAudioTap& tap, const AudioApp& app, float gain,
                                     Date now) const {
    if (!audio_.taps->canBeDenied()) return false;
    const auto since = playingSince_.find(app.id);
    if (since == playingSince_.end() || tap.hasHeardSound() || gain <= 0) return false;
    return now - std::max(tap.started(), since->second) > silentCaptureTime;
}

bool AppAudioRouter::hasIdled(const AudioApp& app, Date now) const {
    const auto played = lastPlayed_.find(app.id);
    return played == lastPlayed_.end() || now - played->second > idleTime;
}

std::unique_ptr<AppAudioTap> AppAudioRouter::makeTap(const AudioApp& app, const std::string& target,
                                                     float gain) {
    return makeTap(app, TapRequest{.outputUID = target, .sourceUID = defaultOutputUID_}, gain);
}

// In the place of the old one, which ends. Null if there is none.
void AppAudioRouter::keepTap(const std::string& id, std::unique_ptr<AppAudioTap> tap) {
    if (!tap) return removeTap(id);
    std::unique_ptr<AppAudioTap>& place = taps_[id];
    if (place) place->stop();
    place = std::move(tap);
    changed(Change::taps);
}

void AppAudioRouter::removeTap(const std::string& id) {
    const auto found = taps_.find(id);
    if (found == taps_.end()) return;
    found->second->stop();
    taps_.erase(found);
    changed(Change::taps);
}

void AppAudioRouter::protect(const std::string& id) {
    protectedApps_.insert(id);
    changed(Change::protectedApps);
    removeTap(id);
}

bool AppAudioRouter::anyRunning() const {
    return std::any_of(taps_.begin(), taps_.end(),
                       [](const auto& entry) { return entry.second->isRunning(); });
}

} // namespace tavero
