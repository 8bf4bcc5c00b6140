#include "records/SoundSnapshot.h"

#include <array>

namespace tavero {

namespace {

constexpr std::uint32_t fourCharacters(const char (&text)[5]) {
    std::uint32_t code = 0;
    for (int i = 0; i < 4; ++i) code = code << 8 | static_cast<unsigned char>(text[i]);
    return code;
}

struct TransportCode {
    std::uint32_t code;
    AudioOutput::Transport transport;
};

using enum AudioOutput::Transport;

constexpr std::array transportCodes{
    TransportCode{fourCharacters("bltn"), builtIn},
    TransportCode{fourCharacters("blue"), bluetooth},
    TransportCode{fourCharacters("blea"), bluetooth},
    TransportCode{fourCharacters("usb "), usb},
    TransportCode{fourCharacters("1394"), usb},
    TransportCode{fourCharacters("thun"), usb},
    TransportCode{fourCharacters("hdmi"), display},
    TransportCode{fourCharacters("dprt"), display},
    TransportCode{fourCharacters("airp"), airPlay},
    TransportCode{fourCharacters("virt"), virtualDevice},
    TransportCode{fourCharacters("grup"), virtualDevice},
    TransportCode{fourCharacters("fgrp"), virtualDevice},
};

} // namespace

AudioOutput::Transport audioTransport(std::uint32_t code) {
    for (const TransportCode& known : transportCodes)
        if (known.code == code) return known.transport;
    return other;
}

} // namespace tavero
