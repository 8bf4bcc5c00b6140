#include "sound/CompactSoundPanel.h"

#include "apps/Text.h"

#include <array>
#include <string>

namespace tavero::CompactSoundPanel {

namespace {

constexpr std::string_view plainSymbol = "speaker.wave.2";

struct NamedSymbol {
    std::string_view part; // of the name in lower case
    std::string_view symbol;
};

// The first that fits is meant, so the special names stand before the general ones.
constexpr std::array namedSymbols{
    NamedSymbol{"airpods max", "airpodsmax"},    NamedSymbol{"airpods pro", "airpodspro"},
    NamedSymbol{"airpods", "airpods"},           NamedSymbol{"beats", "beats.headphones"},
    NamedSymbol{"homepod mini", "homepod.mini"}, NamedSymbol{"homepod", "homepod"},
    NamedSymbol{"headphone", "headphones"},      NamedSymbol{"headset", "headphones"},
    NamedSymbol{"buds", "headphones"},
};
constexpr std::array macSymbols{
    NamedSymbol{"macbook", "laptopcomputer"},
    NamedSymbol{"imac", "desktopcomputer"},
    NamedSymbol{"mac mini", "macmini"},
    NamedSymbol{"mac studio", "macmini"},
};
constexpr std::array tvSymbols{NamedSymbol{"tv", "tv"}};

template <std::size_t count>
std::optional<std::string_view> find(const std::array<NamedSymbol, count>& symbols,
                                     std::string_view name) {
    for (const NamedSymbol& entry : symbols)
        if (name.find(entry.part) != std::string_view::npos) return entry.symbol;
    return std::nullopt;
}

std::string_view symbol(AudioOutput::Transport transport, std::string_view name) {
    switch (transport) {
    case AudioOutput::Transport::builtIn:
        return find(macSymbols, name).value_or(plainSymbol);
    case AudioOutput::Transport::display:
        return find(tvSymbols, name).value_or("display");
    case AudioOutput::Transport::airPlay:
        return find(tvSymbols, name).value_or("airplayaudio");
    case AudioOutput::Transport::virtualDevice:
        return "waveform";
    case AudioOutput::Transport::bluetooth:
    case AudioOutput::Transport::usb:
    case AudioOutput::Transport::other:
        break;
    }
    return "hifispeaker";
}

} // namespace

std::string_view symbol(const std::optional<AudioOutput>& output) {
    if (!output) return plainSymbol;
    const std::string name = lowerCase(output->name);
    if (const auto named = find(namedSymbols, name)) return *named;
    return symbol(output->transport, name);
}

} // namespace tavero::CompactSoundPanel
