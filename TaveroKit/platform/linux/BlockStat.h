#pragma once

#include "platform/DiskSource.h"

#include <optional>
#include <string_view>

namespace tavero {

// The bytes through a block device, from its "stat" file in sysfs: the third and the seventh
// figure, in sectors of 512 bytes whatever the disk's own are. Absent if one is missing.
std::optional<DiskCounters> parseBlockStat(std::string_view text);

} // namespace tavero
