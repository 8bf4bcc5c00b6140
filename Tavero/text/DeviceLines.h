#pragma once

#include "records/BluetoothSnapshot.h"
#include "text/TextPen.h"

#include <optional>
#include <string>
#include <vector>

namespace tavero {

// The connected Bluetooth devices below each other, each with what it is and how full its batteries
// are. Nothing before the first reading, and while Bluetooth is off. No line is wider than
// `columns`.
std::vector<std::string> deviceLines(const std::optional<BluetoothSnapshot>& bluetooth,
                                     const TextPen& pen, int columns);

} // namespace tavero
