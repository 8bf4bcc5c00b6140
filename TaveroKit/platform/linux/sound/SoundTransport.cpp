#include "platform/linux/sound/SoundTransport.h"

#include "platform/AudioObjects.h"

#include <string_view>

namespace tavero {

namespace {

bool has(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

bool goesToDisplay(const SoundNode& node) {
    return has(node.profile, "hdmi") || has(node.name, "hdmi") || has(node.name, "HDMI") ||
           has(node.profile, "displayport") || node.formFactor == "tv";
}

} // namespace

std::uint32_t transportCode(const SoundNode& node) {
    if (node.deviceAPI == "bluez5" || node.bus == "bluetooth") return fourCC("blue");
    if (goesToDisplay(node)) return fourCC("hdmi");
    if (node.bus == "usb") return fourCC("usb ");
    // Streams to loudspeakers in the network.
    if (has(node.name, "raop_") || has(node.name, "raop-") || has(node.name, "rtp-") ||
        has(node.name, "rtp_"))
        return fourCC("airp");
    if (node.bus == "pci" || node.bus == "isa" || node.formFactor == "internal")
        return fourCC("bltn");
    if (node.isVirtual || node.factory == "support.null-audio-sink" ||
        node.mediaClass == "Audio/Source/Virtual")
        return fourCC("virt");
    // A sound card of a board without a bus to name.
    if (node.deviceAPI == "alsa") return fourCC("bltn");
    return 0;
}

} // namespace tavero
