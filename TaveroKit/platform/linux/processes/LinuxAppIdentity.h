#pragma once

#include "platform/linux/processes/DesktopApps.h"
#include "records/AppIdentity.h"

#include <optional>
#include <string>
#include <string_view>

namespace tavero {

// What a process tells of whom it belongs to. Empty is unknown.
struct ProcessFacts {
    std::string_view path; // of the executable
    bool isKernelThread = false;
    std::string_view cgroup;   // its control group
    std::string_view script;   // the first argument that is no option, if it runs an interpreter
    std::string_view appImage; // the APPIMAGE of its environment, if it runs from a mounted one
    std::string_view flatpak;  // the id in its sandbox, if it runs in one
    std::optional<AppIdentity> parent; // of the process that started it, as answered here
    std::string_view ownCgroup;        // Tavero's own
};

// Who it belongs to. First what started it says: sandbox, snap, the unit of the desktop's session,
// AppImage, container; then whether its executable is an app's; then its parent; and what is left
// is the operating system's or a tool. The id of an app is the path of its desktop entry, or of the
// AppImage. A tool with an empty id is to be named by its path.
AppIdentity linuxAppIdentity(const ProcessFacts& process, const DesktopApps& apps);

} // namespace tavero
