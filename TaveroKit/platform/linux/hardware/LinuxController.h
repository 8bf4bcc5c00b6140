#pragma once

#include "platform/ControllerSource.h"
#include "platform/linux/BoundedCalls.h"
#include "platform/linux/KeptDirectory.h"

#include <chrono>
#include <filesystem>
#include <memory>

namespace tavero {

// The fans of all chips (fan*_input of /sys/class/hwmon), and the power of the whole system where a
// meter measures just that: the ACPI power meter of servers, a power supply or a board that says
// so. The power of a processor or a battery is no such figure, so most machines tell none.
//
// A fan that stands still is one of 0 rpm. Reading some of these takes long: a read beyond the
// limit gives what was read last.
class LinuxController : public ControllerSource {
  public:
    LinuxController(const std::filesystem::path& root, std::chrono::milliseconds limit);

    SMCSnapshot read() override;

  private:
    struct Reading;
    void findFigures();

    KeptDirectory hwmon_;
    std::shared_ptr<Reading> reading_; // null if no chip has any
    SMCSnapshot last_;
    BoundedCalls calls_;
};

} // namespace tavero
