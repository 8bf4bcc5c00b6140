#pragma once

#include "platform/linux/KeptFile.h"

#include <cstdint>
#include <filesystem>
#include <vector>

namespace tavero {

// Whether a graphics processor may be asked. One that sleeps would wake up to answer; one that is
// about to fall asleep is kept from it by being asked. Both show in files that the kernel answers
// by itself (power/runtime_status, control and autosuspend_delay_ms of the PCI device).
//
// So a processor that sleeps is left alone. One that may fall asleep and was idle three times in a
// row is left alone for as long as it takes to, and then looked at again. The one that the machine
// starts with drives the screen, and is asked whenever it is awake.
class LinuxGPUPower {
  public:
    enum class State { awake, leftAlone, asleep };

    // `device` is the folder of the PCI device. Times in nanoseconds.
    explicit LinuxGPUPower(std::filesystem::path device);

    State state(std::uint64_t now);

    // What it was found to do.
    void wasSeen(bool isIdle, std::uint64_t now);

  private:
    bool maySleep();
    std::uint64_t timeToSleep() const;

    std::filesystem::path device_;
    KeptFile status_;
    KeptFile control_;
    bool drivesScreen_ = false;
    int idle_ = 0; // times in a row
    std::uint64_t restsUntil_ = 0;
    std::vector<char> buffer_;
};

} // namespace tavero
