#include "platform/linux/hardware/LinuxBatteryPacks.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

// Supplies are parted by empty lines; the first byte of each says whether it is a charger.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view text(reinterpret_cast<const char*>(data), size);
    std::vector<tavero::PowerSupply> supplies;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find("\n\n"), text.size());
        supplies.push_back(tavero::parsePowerSupply(text.substr(0, end)));
        if (text.front() == 'c') supplies.back().kind = tavero::SupplyKind::charger;
        text.remove_prefix(std::min(end + 2, text.size()));
    }
    const auto battery = tavero::combinePacks(supplies);
    if (!battery) return 0;
    if (battery->percent < 0 || battery->percent > 100) std::abort();
    if (battery->health && !(*battery->health > 0 && *battery->health <= 1)) std::abort();
    if (battery->watts && !std::isfinite(*battery->watts)) std::abort();
    if (battery->minutesToEmpty && *battery->minutesToEmpty < 0) std::abort();
    if (battery->minutesToFull && *battery->minutesToFull < 0) std::abort();
    if (battery->remainingWattHours && !(*battery->remainingWattHours >= 0)) std::abort();
    return 0;
}
