#include "platform/linux/hardware/DrmClients.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

// What a graphics driver says of its clients, in two rounds a moment apart.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    tavero::DrmClients clients;
    for (std::size_t half = 0; half < 2; ++half) {
        clients.beginRound(1'000'000'000 * (half + 1));
        const auto client = tavero::parseDrmClient(text.substr(half * size / 2, size / 2));
        if (client) clients.add(1, *client);
        clients.endRound();
        const auto load = client ? clients.load(client->device) : std::nullopt;
        if (load && !(load->busiest >= 0 && load->busiest <= 1)) std::abort();
    }
    return 0;
}
