// What the user changes: the settings of apps, and where they are kept.

#include "sound/AppAudioRouter.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <string_view>

namespace tavero {

namespace {

using namespace std::chrono_literals;

constexpr auto saveDelay = 400ms; // a slider that is dragged is stored once

} // namespace

AppAudioRouter::Setting AppAudioRouter::setting(const AudioApp& app) const {
    const auto found = settings_.find(app.id);
    return found == settings_.end() ? Setting{} : found->second;
}

double AppAudioRouter::volume(const AudioApp& app) const {
    const Setting setting = this->setting(app);
    return setting.volumeOn(target(setting.outputUID));
}

void AppAudioRouter::setVolume(double volume, const AudioApp& app) {
    if (std::isnan(volume)) return;
    edit(app, [&](Setting& setting) {
        const auto output = target(setting.outputUID);
        (output ? setting.volumes[*output] : setting.volume) = std::clamp(volume, 0.0, 1.0);
    });
}

void AppAudioRouter::setMuted(bool muted, const AudioApp& app) {
    edit(app, [&](Setting& setting) { setting.muted = muted; });
}

void AppAudioRouter::setOutput(const std::optional<std::string>& uid, const AudioApp& app) {
    edit(app, [&](Setting& setting) { setting.outputUID = uid; });
}

// A tap that is there and goes where it should only gets another volume, so that dragging a slider
// rebuilds nothing.
template <typename Edit>
void AppAudioRouter::edit(const AudioApp& app, Edit change) {
    const Telling telling(*this);
    Setting setting = this->setting(app);
    const auto outputBefore = setting.outputUID;
    change(setting);
    store(app.id, setting);
    scheduleSave();
    // Whoever touches it wants another try.
    const bool wasProtected = protectedApps_.erase(app.id) > 0;
    if (wasProtected) changed(Change::protectedApps);
    const auto tap = taps_.find(app.id);
    if (wasProtected || tap == taps_.end() || setting.outputUID != outputBefore)
        return refresh(false);
    const auto output = target(setting.outputUID);
    tap->second->setVolume(setting.muted ? 0 : static_cast<float>(setting.volumeOn(output)));
    if (setting.isUntouched(output)) refresh(false);
}

void AppAudioRouter::store(const std::string& id, const Setting& setting) {
    AudioSettings settings = settings_;
    if (setting.isDefault())
        settings.erase(id);
    else
        settings[id] = setting;
    assign(settings_, std::move(settings), Change::settings);
}

// What can't be read stays in the store until the user changes something.
void AppAudioRouter::loadSettings() {
    const Bytes stored = store_.get(keys::appAudioSettings);
    const std::string_view text(reinterpret_cast<const char*>(stored.data()), stored.size());
    settings_ = decodedAudioSettings(text).value_or(AudioSettings{});
}

void AppAudioRouter::scheduleSave() {
    saveTask_ = clock_.after(saveDelay, [this] { flushSave(); });
}

void AppAudioRouter::flushSave() {
    saveTask_.reset();
    const std::string text = encoded(settings_);
    store_.set(keys::appAudioSettings, Bytes(text.begin(), text.end()));
}

} // namespace tavero
