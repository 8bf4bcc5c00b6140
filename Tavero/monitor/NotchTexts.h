#pragma once

#include "records/LiveSnapshot.h"

#include <string>

namespace tavero {

// The two figures beside the notch.
std::string notchCPU(const LiveSnapshot& snapshot);    // "47%"; "–%" if it is not known
std::string notchMemory(const LiveSnapshot& snapshot); // "9.4 GB"; empty if it is not known

} // namespace tavero
