#pragma once

#include "platform/NetworkSource.h"
#include "records/NetworkSnapshot.h"

#include <optional>

namespace tavero::NetworkReader {

// The bytes through all physical interfaces; 0 if there is none. Absent if the source refuses.
std::optional<NetworkSnapshot> read(NetworkSource& source);

} // namespace tavero::NetworkReader
