#include "menubar/ExtraMenuBarItem.h"

#include "presentation/NumberText.h"

#include <algorithm>

namespace tavero::ExtraMenuBarItem {

std::string_view soundSymbol(const std::optional<SoundSnapshot>& sound) {
    const auto [silent, low, medium, loud] = soundSymbols;
    if (!sound) return medium;
    if (sound->isMuted) return silent;
    const std::optional<double> volume = known(sound->volume);
    if (!volume) return loud;
    if (*volume <= 0) return silent;
    if (*volume < 0.34) return low;
    return *volume < 0.67 ? medium : loud;
}

std::optional<BluetoothBattery> lowest(const std::vector<BluetoothBattery>& devices) {
    const auto found = std::min_element(
        devices.begin(), devices.end(),
        [](const BluetoothBattery& a, const BluetoothBattery& b) { return a.percent < b.percent; });
    return found == devices.end() ? std::nullopt : std::optional(*found);
}

} // namespace tavero::ExtraMenuBarItem
