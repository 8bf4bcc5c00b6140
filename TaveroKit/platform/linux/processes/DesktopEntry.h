#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tavero {

// What a .desktop file says of an app, as far as it matters here. Empty means that it doesn't say.
struct DesktopEntry {
    std::string id;   // the file's name in its applications folder, without ".desktop"
    std::string file; // its path
    std::string name; // in the user's language, if the file has it
    std::string icon; // a name in the icon theme, or a path
    // The program that Exec or TryExec starts, as written and with links followed. An interpreter
    // is passed over for the script that it runs.
    std::string program;
    std::string resolvedProgram;
    std::size_t arguments = 0; // how many more words Exec has, field codes not counted
    std::string snap;          // the snap that it comes from
    bool isShown = true;       // in menus
    bool inTerminal = false;
    // A terminal or file manager: what it starts is another app's, or a tool.
    bool isLauncher = false;

    bool operator==(const DesktopEntry&) const = default;
};

// How an entry may mark words for a locale "LANGUAGE_COUNTRY.ENCODING@MODIFIER", the likeliest
// first. None for the plain locale of C.
std::vector<std::string> localeCandidates(std::string_view locale);

// Absent if it isn't the entry of an app that can be started, or was deleted by the user. The name
// is the one for the first of `locales` that has one, or else for no language in particular. The
// id, the file and the resolved program are the caller's to fill in.
std::optional<DesktopEntry> parseDesktopEntry(std::string_view text,
                                              std::span<const std::string> locales = {});

// True for a program that is only a means to run another.
bool isInterpreter(std::string_view fileName);

// The last component of a path.
std::string_view fileName(std::string_view path);

} // namespace tavero
