#pragma once

#include <optional>
#include <string>

namespace tavero {

// Where the system's own report on Bluetooth comes from.
class BluetoothReportSource {
  public:
    virtual ~BluetoothReportSource() = default;

    // JSON, as the Mac's profiler writes it. Absent if there is none to be had. May block for as
    // long as a program takes to run.
    virtual std::optional<std::string> report() = 0;
};

} // namespace tavero
