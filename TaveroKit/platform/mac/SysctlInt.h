#pragma once

#include "platform/mac/MacKernel.h"

#include <cstdint>
#include <optional>

namespace tavero {

// One integer of the kernel by name, 4 or 8 bytes wide. Absent if there is none.
std::optional<std::int64_t> sysctlInt(MacKernel& kernel, const char* name);

} // namespace tavero
