// Which apps really sound. An app that says that it plays may be silent for long, so its sound is
// measured.

#include "sound/AppAudioRouter.h"
#include "sound/SoundController.h"

#include <algorithm>
#include <chrono>

namespace tavero {

namespace {

using namespace std::chrono_literals;

constexpr std::size_t mostCandidates = 6; // each may need a meter
constexpr float silenceFloor = 0.0005F;
constexpr auto soundTime = 1s; // how long a sound counts

bool contains(const std::vector<AudioApp>& apps, const std::string& id) {
    return std::any_of(apps.begin(), apps.end(), [&](const AudioApp& app) { return app.id == id; });
}

bool haveSameIDs(const std::vector<AudioApp>& one, const std::vector<AudioApp>& other) {
    return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                      [](const AudioApp& a, const AudioApp& b) { return a.id == b.id; });
}

} // namespace

void AppAudioRouter::setNowPlayingWanted(bool wanted) {
    if (nowPlayingWanted_ == wanted) return;
    const Telling telling(*this);
    assign(nowPlayingWanted_, wanted, Change::nowPlayingWanted);
    updateNowPlaying(true);
}

void AppAudioRouter::updateNowPlaying(bool rescan) {
    if (!hasSound()) return;
    const Telling telling(*this);
    if (!nowPlayingWanted_) return forgetNowPlaying();
    if (rescan) findCandidates();
    if (permission_ != Permission::granted) {
        removeMeters();
        return assign(playing_, candidates_, Change::playing);
    }
    const Date now = clock_.now();
    for (const AudioApp& app : candidates_) listen(app, now);
    forgetOthers();
    std::vector<AudioApp> sounding = this->sounding(now);
    // The rest of an app changes often, and no surface of what plays shows it.
    if (!haveSameIDs(playing_, sounding)) assign(playing_, std::move(sounding), Change::playing);
}

void AppAudioRouter::forgetNowPlaying() {
    removeMeters();
    assign(candidates_, {}, Change::candidates);
    assign(playing_, {}, Change::playing);
}

void AppAudioRouter::findCandidates() {
    const bool wereNone = candidates_.empty();
    std::vector<AudioApp> found = AudioApps::playing(*audio_.objects, *audio_.processes);
    if (found.size() > mostCandidates) found.resize(mostCandidates);
    assign(candidates_, std::move(found), Change::candidates);
    // Not to wait out the long sleep of a silent machine.
    if (wereNone && !candidates_.empty() && loop_) startLoop();
}

void AppAudioRouter::listen(const AudioApp& app, Date now) {
    lastSound_.try_emplace(app.id, now); // until a meter says otherwise
    AppAudioTap* tap = nullptr;
    if (const auto real = taps_.find(app.id); real != taps_.end()) {
        removeMeter(app.id);
        tap = real->second.get();
    } else {
        tap = meter(app);
    }
    // A call often has long silences.
    if (!tap || tap->takeRecentPeak() > silenceFloor ||
        AudioApps::isUsingInput(*audio_.objects, app))
        lastSound_[app.id] = now;
}

// The meter of the app, made if need be, whatever output it was made with. Null if there is none.
AppAudioTap* AppAudioRouter::meter(const AudioApp& app) {
    const auto found = meters_.find(app.id);
    AppAudioTap* old = found == meters_.end() ? nullptr : found->second.get();
    if (old && old->processObjects() == app.processObjects) return old;
    const auto output =
        defaultOutputUID_ ? defaultOutputUID_ : SoundController::defaultOutputUID(*audio_.objects);
    if (!output) return old;
    removeMeter(app.id);
    auto fresh = makeTap(app, TapRequest{.outputUID = *output, .listenOnly = true}, 0);
    if (!fresh) return nullptr;
    changed(Change::meters);
    return (meters_[app.id] = std::move(fresh)).get();
}

void AppAudioRouter::removeMeter(const std::string& id) {
    const auto found = meters_.find(id);
    if (found == meters_.end()) return;
    found->second->stop();
    meters_.erase(found);
    changed(Change::meters);
}

void AppAudioRouter::removeMeters() {
    while (!meters_.empty()) removeMeter(std::string(meters_.begin()->first));
}

// An app that leaves the candidates and comes back begins as one that sounds.
void AppAudioRouter::forgetOthers() {
    std::set<std::string> others;
    for (const auto& [id, meter] : meters_)
        if (!contains(candidates_, id)) others.insert(id);
    for (const std::string& id : others) removeMeter(id);
    std::erase_if(lastSound_,
                  [this](const auto& entry) { return !contains(candidates_, entry.first); });
}

std::vector<AudioApp> AppAudioRouter::sounding(Date now) const {
    std::vector<AudioApp> sounding;
    for (const AudioApp& app : candidates_) {
        const auto sounded = lastSound_.find(app.id);
        if (sounded != lastSound_.end() && now - sounded->second < soundTime)
            sounding.push_back(app);
    }
    return sounding;
}

} // namespace tavero
