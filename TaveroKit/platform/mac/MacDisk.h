#pragma once

#include "platform/DiskSource.h"
#include "platform/mac/MacRegistry.h"
#include "platform/mac/MacVolumes.h"

#include <memory>

namespace tavero {

// Disks of a Mac: the statistics of its block storage drivers, and its volumes.
class MacDisk : public DiskSource {
  public:
    MacDisk(std::shared_ptr<MacRegistry> registry, std::shared_ptr<MacVolumes> volumes);

    std::vector<DiskCounters> disks() override;
    std::optional<VolumeSpace> space(const std::string& path) override;
    std::vector<MountedVolume> volumes() override;

  private:
    std::shared_ptr<MacRegistry> registry_;
    std::shared_ptr<MacVolumes> volumes_;
};

} // namespace tavero
