#include "bluetooth/BluetoothReader.h"
#include "bluetooth/DeviceKind.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto snapshot = tavero::parseBluetoothReport(text);
    if (!snapshot) return 0;
    for (const auto& list : {snapshot->connected, snapshot->paired})
        for (const tavero::BluetoothDevice& device : list) {
            if (device.name.starts_with(' ') || device.name.ends_with('\n')) std::abort();
            if (device.batteries.empty() == device.lowestBattery().has_value()) std::abort();
            for (const auto& battery : device.batteries)
                if (battery.percent < 0) std::abort();
            if (tavero::DeviceKind::symbol(device).empty()) std::abort();
            tavero::DeviceKind::label(device);
        }
    return 0;
}
