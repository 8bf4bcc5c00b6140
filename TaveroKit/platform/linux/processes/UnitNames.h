#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tavero {

// The units of the service manager that a control group path names, and what they say of the app.

// The name with each \xNN turned into its byte. Anything else that follows a backslash stays as it
// is.
std::string unescapeUnitName(std::string_view name);

// The desktop entry ids that a unit may have been started for, the likeliest first; none if it
// isn't an app's. The forms are "app[-LAUNCHER]-ID-RANDOM.scope",
// "app[-LAUNCHER]-ID[@RANDOM].service", "app[-LAUNCHER]-ID.slice", "dbus-:1.2-NAME@0.service" and
// older ones. What is LAUNCHER and what ID can't be told apart by itself, so both readings are
// given.
std::vector<std::string> appIdCandidates(std::string_view unit);

// A snap's unit: "snap.NAME.APP-UUID.scope", "snap.NAME.APP.service". Empty fields if it is none.
struct SnapUnit {
    std::string name;
    std::string app;
};
SnapUnit snapUnit(std::string_view unit);

// The app whose Flatpak sandbox a control group is in, by a part "app-flatpak-ID-RANDOM.scope" of
// its path. Empty if it is in none.
std::string flatpakOfControlGroup(std::string_view path);

// What a container is called if this part of a control group path starts one: its name, or the
// first twelve digits of its id. Empty if it starts none. `parent` is the part before.
std::string containerName(std::string_view part, std::string_view parent);

} // namespace tavero
