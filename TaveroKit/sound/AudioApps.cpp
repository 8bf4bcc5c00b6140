#include "sound/AudioApps.h"

#include "sound/AudioProperty.h"
#include "sound/NameOrder.h"

#include <algorithm>
#include <map>
#include <utility>

namespace tavero::AudioApps {

namespace {

bool is(AudioObjects& objects, AudioObjectID process, std::uint32_t selector) {
    return objects.word(process, {selector}) == 1u;
}

// The id of the app of a process. Absent for this program, for one that has quit, and for all that
// the user doesn't know as an app: tools, the system, and what runs from anywhere else.
std::optional<std::string> userApp(AudioObjects& objects, AudioProcesses& processes,
                                   AudioObjectID process) {
    const std::optional<std::uint32_t> word = objects.word(process, {AudioSelector::processID});
    if (!word) return std::nullopt;
    const auto pid = static_cast<std::int32_t>(*word);
    if (pid == processes.ownPid()) return std::nullopt;
    const std::optional<AppIdentity> identity = processes.identity(pid);
    if (!identity || identity->kind != AppIdentity::Kind::app) return std::nullopt;
    return processes.isUserApp(identity->id) ? std::optional(identity->id) : std::nullopt;
}

bool comesBefore(const AudioApp& a, const AudioApp& b) {
    if (a.isPlaying != b.isPlaying) return a.isPlaying;
    return localizedCaseInsensitiveLess(a.name, b.name);
}

} // namespace

std::vector<AudioApp> all(AudioObjects& objects, AudioProcesses& processes) {
    std::map<std::string, AudioApp> found; // in order, so that equal names have one too
    for (const AudioObjectID process :
         AudioProperty::array(objects, audioSystem, AudioSelector::processes)) {
        const std::optional<std::string> id = userApp(objects, processes, process);
        if (!id) continue;
        AudioApp& app = found[*id];
        app.processObjects.push_back(process);
        if (is(objects, process, AudioSelector::processIsRunningOutput)) app.isPlaying = true;
    }

    std::vector<AudioApp> apps;
    for (auto& [id, app] : found) {
        std::sort(app.processObjects.begin(), app.processObjects.end());
        apps.push_back({.id = id,
                        .name = processes.displayName({AppIdentity::Kind::app, id}),
                        .bundlePath = id,
                        .processObjects = std::move(app.processObjects),
                        .isPlaying = app.isPlaying});
    }
    std::stable_sort(apps.begin(), apps.end(), comesBefore);
    return apps;
}

std::vector<AudioApp> playing(AudioObjects& objects, AudioProcesses& processes) {
    std::vector<AudioApp> apps = all(objects, processes);
    std::erase_if(apps, [](const AudioApp& app) { return !app.isPlaying; });
    return apps;
}

bool isUsingInput(AudioObjects& objects, const AudioApp& app) {
    return std::any_of(app.processObjects.begin(), app.processObjects.end(),
                       [&](AudioObjectID process) {
                           return is(objects, process, AudioSelector::processIsRunningInput);
                       });
}

} // namespace tavero::AudioApps
