#pragma once

#include "platform/DiskSource.h"
#include "records/DiskSnapshot.h"

#include <string>
#include <vector>

namespace tavero::DiskReader {

// The byte counts of all disks, and only if asked for, since it is slow, the free space of the
// volume at this path.
DiskSnapshot read(DiskSource& source, const std::string& volume, bool includeFreeSpace);

// The mounted volumes that a person would browse, in the order of the source.
std::vector<VolumeInfo> volumes(DiskSource& source);

} // namespace tavero::DiskReader
