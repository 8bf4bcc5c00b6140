#pragma once

#include "menubar/ItemContent.h"
#include "records/SoundSnapshot.h"

#include <array>
#include <optional>
#include <string_view>
#include <vector>

// The items of sound and Bluetooth.
namespace tavero::ExtraMenuBarItem {

// Every picture that the sound item may show.
inline constexpr std::array<std::string_view, 4> soundSymbols{
    "speaker.slash.fill", "speaker.wave.1.fill", "speaker.wave.2.fill", "speaker.wave.3.fill"};

inline constexpr std::string_view bluetoothSymbol = "dot.radiowaves.left.and.right";

// The one that tells how loud it is.
std::string_view soundSymbol(const std::optional<SoundSnapshot>& sound);

// The device that will be empty first, the first of them on a tie. `devices` are those that are
// connected and tell their charge.
std::optional<BluetoothBattery> lowest(const std::vector<BluetoothBattery>& devices);

} // namespace tavero::ExtraMenuBarItem
