#pragma once

#include "platform/AudioSystem.h"

#include <filesystem>
#include <memory>

namespace tavero {

// The sound of this machine, by PipeWire. Where it doesn't run all is empty until it does. `root`
// holds proc/.
AudioSystem linuxAudio(const std::filesystem::path& root,
                       std::shared_ptr<AudioProcesses> processes);

} // namespace tavero
