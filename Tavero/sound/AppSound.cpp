#include "sound/AppSound.h"

#include "presentation/NumberText.h"
#include "sound/AppAudioRouter.h"

#include <algorithm>
#include <array>

namespace tavero {

namespace {

std::string nameOf(const std::optional<std::string>& uid, const std::vector<AudioOutput>& outputs) {
    if (!uid) return "";
    const auto found = std::find_if(outputs.begin(), outputs.end(),
                                    [&](const AudioOutput& output) { return output.uid == *uid; });
    return found == outputs.end() ? "" : found->name;
}

} // namespace

std::string_view status(const AppSound& app) {
    if (app.isProtected) return "Protected";
    return app.isPlaying ? "Playing" : "Silent";
}

std::string volumeText(const AppSound& app) {
    return app.isMuted ? "Muted" : percent(app.volume) + "%";
}

std::vector<AppSound> appSounds(const AppAudioRouter& router) {
    std::vector<AppSound> rows;
    for (const AudioApp& app : router.apps()) {
        const AudioSetting setting = router.setting(app);
        rows.push_back({.name = app.name,
                        .isPlaying = app.isPlaying,
                        .isProtected = router.protectedApps().contains(app.id),
                        .volume = router.volume(app),
                        .isMuted = setting.muted,
                        .level = router.liveLevel(std::array{app.id}),
                        .output = nameOf(setting.outputUID, router.outputs())});
    }
    return rows;
}

} // namespace tavero
