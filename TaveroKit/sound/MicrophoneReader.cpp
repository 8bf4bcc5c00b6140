#include "sound/MicrophoneReader.h"

#include "sound/AudioProperty.h"

#include <set>

namespace tavero::MicrophoneReader {

namespace {

std::set<std::int32_t> recordingPids(AudioObjects& objects) {
    std::set<std::int32_t> pids;
    for (const AudioObjectID process :
         AudioProperty::array(objects, audioSystem, AudioSelector::processes)) {
        if (objects.word(process, {AudioSelector::processIsRunningInput}) != 1u) continue;
        if (const auto pid = objects.word(process, {AudioSelector::processID}))
            pids.insert(static_cast<std::int32_t>(*pid));
    }
    return pids;
}

} // namespace

std::vector<std::string> appsUsingInput(AudioObjects& objects, AudioProcesses& processes) {
    std::set<std::string> names;
    for (const std::int32_t pid : recordingPids(objects)) {
        if (pid == processes.ownPid()) continue;
        const std::optional<AppIdentity> identity = processes.identity(pid);
        if (identity && identity->kind != AppIdentity::Kind::system)
            names.insert(processes.displayName(*identity));
    }
    return {names.begin(), names.end()};
}

} // namespace tavero::MicrophoneReader
