#pragma once

#include "platform/MemorySource.h"
#include "records/MemorySnapshot.h"

#include <optional>

namespace tavero::MemoryReader {

// Where the memory is now. Absent if the source refuses.
std::optional<MemorySnapshot> read(MemorySource& source);

} // namespace tavero::MemoryReader
