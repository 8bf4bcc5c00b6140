#include "platform/linux/sound/tap/PipeWireTaps.h"

#include "platform/linux/sound/tap/PipeWireMeter.h"
#include "platform/linux/sound/tap/PipeWireTap.h"

#include <array>
#include <cstdint>
#include <random>
#include <string>
#include <utility>

namespace tavero {

namespace {

// A UUID of version 4, as text.
std::string freshUUID() {
    std::random_device random;
    std::array<std::uint8_t, 16> bytes{};
    for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(random());
    bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x40);
    bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80);
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
        text += "0123456789abcdef"[bytes[i] >> 4];
        text += "0123456789abcdef"[bytes[i] & 15];
    }
    return text;
}

} // namespace

PipeWireTaps::PipeWireTaps(std::shared_ptr<PipeWireGraph> graph) : graph_(std::move(graph)) {}

AudioTapSource::Result PipeWireTaps::start(const TapRequest& request, TapCells& cells) {
    const std::string name = std::string(ownNodePrefix) + "app-audio." + freshUUID();
    if (request.listenOnly) {
        auto meter = std::make_unique<PipeWireMeter>(graph_, request.processObjects, cells);
        if (const auto failure = meter->open(name)) return *failure;
        return meter;
    }
    auto tap = std::make_unique<PipeWireTap>(graph_);
    if (const auto failure = tap->open(name, request, cells)) return *failure;
    return tap;
}

} // namespace tavero
