#pragma once

#include <string_view>

namespace tavero {

// What the user asked of a device and didn't get.
enum class BluetoothFailure { connect, disconnect };

constexpr std::string_view text(BluetoothFailure failure) {
    return failure == BluetoothFailure::connect ? "Couldn’t connect. Is it on and nearby?"
                                                : "Couldn’t disconnect";
}

} // namespace tavero
