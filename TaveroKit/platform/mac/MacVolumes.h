#pragma once

#include "platform/DiskSource.h"

#include <optional>
#include <string>
#include <vector>

namespace tavero {

// What the Mac's file manager tells of volumes, key by key as it is asked. DiskSource.h says what
// the answers mean.
class MacVolumes {
  public:
    virtual ~MacVolumes() = default;

    // -[NSURL resourceValuesForKeys:error:]; absent if that fails.
    virtual std::optional<VolumeSpace> space(const std::string& path) = 0;

    // -[NSFileManager mountedVolumeURLsIncludingResourceValuesForKeys:options:] without the hidden
    // ones; empty if that fails.
    virtual std::vector<MountedVolume> volumes() = 0;
};

} // namespace tavero
