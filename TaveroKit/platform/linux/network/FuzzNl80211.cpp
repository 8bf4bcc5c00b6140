#include "platform/linux/network/Nl80211Link.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto bytes = std::as_bytes(std::span(data, size));
    tavero::visitNetlinkMessages(bytes, [](const tavero::NetlinkMessage& message) {
        tavero::parseFamily(message.body);
        tavero::parseInterface(message.body);
    });
    tavero::parseFamily(bytes);
    if (const auto interface = tavero::parseInterface(bytes))
        if (interface->number == 0) std::abort();
    if (const auto link = tavero::parseStation(bytes, 5975))
        if (link->rssi >= 0 || !(link->linkSpeed >= 0 && link->linkSpeed <= 100'000)) std::abort();
    return 0;
}
