#pragma once

#include "platform/ProcessSource.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tavero {

// The processes of an app, by number, as they are now. Looks at every process of the machine, so it
// is for the moment when an app is to be asked something, not for every pass.
std::vector<std::int32_t> processesOf(ProcessSource& source, const std::string& bundlePath);

} // namespace tavero
