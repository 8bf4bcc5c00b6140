#include "sound/AppAudioRouter.h"

#include <algorithm>
#include <array>
#include <variant>

namespace tavero {

AppAudioRouter::AppAudioRouter(AudioSystem audio, std::unique_ptr<TaskQueue> activityQueue,
                               Clock& clock, Settings& settings)
    : audio_(std::move(audio)), clock_(clock), store_(settings), mainQueue_(clock),
      activityQueue_(std::move(activityQueue)) {
    if (hasSound()) permission_ = audio_.permission->status();
    loadSettings();
}

AppAudioRouter::~AppAudioRouter() = default;

void AppAudioRouter::start() {
    if (loop_ || !hasSound()) return;
    const Telling telling(*this);
    if (!activityQueue_) activityQueue_ = std::make_unique<ClockQueue>(clock_);
    const auto update = [this] {
        const Telling tellingOnce(*this);
        refresh(true);
        updateNowPlaying(true);
    };
    watcher_ = std::make_unique<AudioActivityWatcher>(
        *audio_.objects, audio_.processes->ownPid(), std::move(activityQueue_),
        [update, post = mainQueue_.poster()] { post(update); });
    updateNowPlaying(true);
    startLoop();
}

void AppAudioRouter::pageAppeared() {
    const Telling telling(*this);
    visible_ = true;
    readPermission();
    refresh(true);
}

void AppAudioRouter::checkPermission() {
    const Telling telling(*this);
    const Permission before = permission_;
    readPermission();
    if (permission_ != before) refresh(true);
}

// The answer may come on any thread, and after this has gone.
void AppAudioRouter::requestPermission(std::function<void()> done) {
    const auto answered = [this, done = std::move(done)] {
        {
            const Telling telling(*this);
            readPermission();
            refresh(true);
        }
        if (done) done();
    };
    if (!hasSound()) return answered();
    audio_.permission->request([answered, post = mainQueue_.poster()](bool) { post(answered); });
}

void AppAudioRouter::readPermission() {
    if (hasSound()) assign(permission_, audio_.permission->status(), Change::permission);
}

float AppAudioRouter::liveLevel(std::span<const std::string> ids) const {
    float level = 0;
    for (const std::string& id : ids) {
        auto found = taps_.find(id);
        if (found == taps_.end()) {
            found = meters_.find(id);
            if (found == meters_.end()) continue;
        }
        level = std::max(level, found->second->latestLevel());
    }
    return level;
}

// Where an app plays that is to play there. An output without a UID can't be told from others.
std::optional<std::string> AppAudioRouter::target(const std::optional<std::string>& uid) const {
    const auto isMeant = [&](const AudioOutput& output) { return output.uid == *uid; };
    if (uid && !uid->empty() && std::any_of(outputs_.begin(), outputs_.end(), isMeant)) return uid;
    return defaultOutputUID_;
}

// Null if there can't be one now; whoever asked tries again the next time.
std::unique_ptr<AppAudioTap> AppAudioRouter::makeTap(const AudioApp& app, TapRequest request,
                                                     float volume) {
    request.processObjects = app.processObjects;
    AppAudioTap::Result result =
        AppAudioTap::start(*audio_.taps, std::move(request), volume, clock_.now());
    if (auto* tap = std::get_if<std::unique_ptr<AppAudioTap>>(&result)) return std::move(*tap);
    return nullptr;
}

void AppAudioRouter::tell() {
    using Signal = void (AppAudioRouter::*)();
    static constexpr std::array<Signal, static_cast<std::size_t>(Change::count)> signalOf{
        &AppAudioRouter::appsChanged,
        &AppAudioRouter::protectedAppsChanged,
        &AppAudioRouter::outputsChanged,
        &AppAudioRouter::defaultOutputUIDChanged,
        &AppAudioRouter::permissionChanged,
        &AppAudioRouter::settingsChanged,
        &AppAudioRouter::playingChanged,
        &AppAudioRouter::candidatesChanged,
        &AppAudioRouter::tapsChanged,
        &AppAudioRouter::metersChanged,
        &AppAudioRouter::nowPlayingWantedChanged,
    };
    const auto changes = std::exchange(changes_, {});
    for (std::size_t i = 0; i < signalOf.size(); ++i)
        if (changes.test(i)) (this->*signalOf.at(i))();
}

} // namespace tavero
