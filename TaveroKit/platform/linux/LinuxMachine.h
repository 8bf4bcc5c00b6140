#pragma once

#include "platform/Machine.h"

#include <filesystem>

namespace tavero {

// A recorded Linux machine, whose /proc and /sys stand under this folder. Its processes are
// measured by what their files say; Machine::host() asks the kernel's clocks.
Machine linuxMachine(const std::filesystem::path& root);

} // namespace tavero
