#pragma once

#include "platform/Machine.h"

#include <filesystem>

namespace tavero {

// A Linux machine whose /proc and /sys stand under this folder: "/" is the host, another one a
// recorded machine.
Machine linuxMachine(const std::filesystem::path& root);

} // namespace tavero
