#pragma once

#include "platform/AudioObjects.h"
#include "platform/AudioProcesses.h"

#include <string>
#include <vector>

namespace tavero::MicrophoneReader {

// The names of the apps and tools that record, ascending; never the system's own processes. Asks
// for each process, so not on the main thread.
std::vector<std::string> appsUsingInput(AudioObjects& objects, AudioProcesses& processes);

} // namespace tavero::MicrophoneReader
