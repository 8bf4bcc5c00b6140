#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace tavero {

// What the user wants of one app's sound. Volumes are fractions.
struct AudioSetting {
    double volume = 1;                     // on each output that has no volume of its own
    std::map<std::string, double> volumes; // by the UID of an output; kept when that has gone
    bool muted = false;
    std::optional<std::string> outputUID; // absent: wherever the system plays

    // The volume in force on an output.
    double volumeOn(const std::optional<std::string>& uid) const;
    // Whether it asks for nothing anywhere.
    bool isDefault() const;
    // Whether it asks for nothing while the app plays on this output.
    bool isUntouched(const std::optional<std::string>& uid) const;

    bool operator==(const AudioSetting&) const = default;
};

// By the id of an app. An app that is at its defaults has no entry.
using AudioSettings = std::map<std::string, AudioSetting>;

// As JSON. Bytes that are not UTF-8 are replaced, so such an id or UID isn't found again.
std::string encoded(const AudioSettings& settings);

// Each member may be missing, and members that aren't known are passed over; a volume outside the
// range is cut to it. Absent if the text is damaged or a member has another type.
std::optional<AudioSettings> decodedAudioSettings(std::string_view text);

} // namespace tavero
