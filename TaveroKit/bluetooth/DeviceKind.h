#pragma once

#include "records/BluetoothSnapshot.h"

#include <optional>
#include <string>
#include <string_view>

// What the surfaces show of the kind of a device.
namespace tavero::DeviceKind {

// What the device says it is, else what its name tells. Absent if neither does.
std::optional<std::string> label(const BluetoothDevice& device);

// The name of its symbol.
std::string_view symbol(const BluetoothDevice& device);

} // namespace tavero::DeviceKind
