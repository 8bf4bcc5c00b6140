#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tavero {

class AppAudioRouter;

// What there is to say of one app's sound: a row of any surface that lists them.
struct AppSound {
    std::string name;
    bool isPlaying = false;
    bool isProtected = false; // nobody may capture it, so it can't be adjusted
    double volume = 1;        // fraction, on the output that it plays to
    bool isMuted = false;
    float level = 0; // amplitude right now, before the volume
    std::string
        output; // the name of the one that its user chose; empty if there is none, or it is gone

    bool operator==(const AppSound&) const = default;
};

// "Protected", "Playing" or "Silent".
std::string_view status(const AppSound& app);
// "70%", or "Muted".
std::string volumeText(const AppSound& app);

// All that the router knows, in its order.
std::vector<AppSound> appSounds(const AppAudioRouter& router);

} // namespace tavero
