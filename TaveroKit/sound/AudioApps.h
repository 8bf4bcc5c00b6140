#pragma once

#include "platform/AudioObjects.h"
#include "platform/AudioProcesses.h"

#include <optional>
#include <string>
#include <vector>

namespace tavero {

// An app that the audio system knows.
struct AudioApp {
    std::string id; // that of its AppIdentity
    std::string name;
    std::optional<std::string> bundlePath;     // the same text as the id
    std::vector<AudioObjectID> processObjects; // ascending
    bool isPlaying = false;                    // some process of it plays

    bool operator==(const AudioApp&) const = default;
};

// Which apps those are right now. Nothing is kept. From any thread.
namespace AudioApps {

// Those that play first, then by name.
std::vector<AudioApp> all(AudioObjects& objects, AudioProcesses& processes);
std::vector<AudioApp> playing(AudioObjects& objects, AudioProcesses& processes);
// Whether some process of the app records.
bool isUsingInput(AudioObjects& objects, const AudioApp& app);

} // namespace AudioApps

} // namespace tavero
