#pragma once

#include "platform/BatterySource.h"
#include "platform/linux/BoundedCalls.h"
#include "platform/linux/KeptDirectory.h"

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>

namespace tavero {

// The packs that feed this machine, as one battery, from /sys/class/power_supply. Their drivers may
// wait for an embedded controller: a read that takes longer than the limit gives the battery as it
// was last read.
class LinuxBattery : public BatterySource {
  public:
    LinuxBattery(const std::filesystem::path& root, std::chrono::milliseconds limit);

    std::optional<BatterySnapshot> battery() override;

  private:
    struct Reading;
    void findSupplies();

    KeptDirectory supplies_;
    std::shared_ptr<Reading> reading_; // null without a pack
    std::optional<BatterySnapshot> last_;
    BoundedCalls calls_;
};

} // namespace tavero
