#pragma once

namespace tavero {

// Whether the user lets Tavero use Bluetooth. Reading devices and batteries needs no permission;
// connecting and signal strength do.
enum class BluetoothPermission { notAsked, granted, denied };

} // namespace tavero
