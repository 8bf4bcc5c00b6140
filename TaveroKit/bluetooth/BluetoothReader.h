#pragma once

#include "platform/BluetoothReportSource.h"
#include "records/BluetoothSnapshot.h"

#include <memory>
#include <optional>
#include <string_view>
#include <utility>

namespace tavero {

// What the system's report says of Bluetooth: the output of `system_profiler SPBluetoothDataType
// -json`. Absent if it isn't such a report. A field of another type than expected is absent, its
// device stays.
std::optional<BluetoothSnapshot> parseBluetoothReport(std::string_view json);

// Reads the state of Bluetooth, devices and batteries included, for which the report needs no
// permission.
class BluetoothReader {
  public:
    explicit BluetoothReader(std::unique_ptr<BluetoothReportSource> source)
        : source_(std::move(source)) {}

    // Absent if it couldn't be read. Blocks as long as the report takes.
    std::optional<BluetoothSnapshot> read();

  private:
    std::unique_ptr<BluetoothReportSource> source_;
};

} // namespace tavero
