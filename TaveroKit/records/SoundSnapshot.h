#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tavero {

// A device that sound can go to. Its id identifies it while it is connected, its uid across
// restarts.
struct AudioOutput {
    // How the device is attached.
    enum class Transport { builtIn, bluetooth, usb, display, airPlay, virtualDevice, other };

    std::uint32_t id = 0;
    std::string name;
    std::string uid;
    Transport transport = Transport::other;

    bool operator==(const AudioOutput&) const = default;
};

// From the four-character code that the audio system reports, its first character highest: "bltn".
AudioOutput::Transport audioTransport(std::uint32_t code);

// The sound output and its volume.
struct SoundSnapshot {
    std::optional<AudioOutput> output; // absent if there is none
    std::optional<double> volume;      // fraction; absent if the device has no volume of its own
    bool isMuted = false;
    std::vector<AudioOutput> outputs;

    bool operator==(const SoundSnapshot&) const = default;
};

} // namespace tavero
