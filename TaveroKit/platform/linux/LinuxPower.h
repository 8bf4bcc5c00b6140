#pragma once

#include "platform/PowerSource.h"
#include "platform/linux/KeptDirectory.h"
#include "platform/linux/KeptFile.h"

#include <filesystem>
#include <vector>

namespace tavero {

// Where the power comes from, by /sys/class/power_supply, and the firmware's profile
// (/sys/firmware/acpi/platform_profile). The batteries of mice and headsets don't count.
class LinuxPower : public PowerSource {
  public:
    explicit LinuxPower(const std::filesystem::path& root);

    // True while the profile is "low-power".
    bool lowPowerMode() override;

    // True if a charger is online or there is no battery. A machine whose chargers can't be seen is
    // on battery power while a battery says that it discharges.
    bool onExternalPower() override;

  private:
    void findSupplies();
    bool isOnline(KeptFile& charger);
    bool isDischarging(KeptFile& battery);

    KeptFile profile_;
    KeptDirectory supplies_;
    std::vector<KeptFile> chargers_;  // their "online"
    std::vector<KeptFile> batteries_; // their "status", which may be slow to read
    std::vector<char> buffer_;
};

} // namespace tavero
