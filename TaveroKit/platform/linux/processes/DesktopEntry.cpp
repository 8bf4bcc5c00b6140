#include "platform/linux/processes/DesktopEntry.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace tavero {

namespace {

using namespace std::string_view_literals;

std::string_view trimmed(std::string_view text) {
    const std::size_t first = std::min(text.find_first_not_of(" \t\r"), text.size());
    text.remove_prefix(first);
    return text.substr(0, text.find_last_not_of(" \t\r") + 1);
}

std::string unescaped(std::string_view value) {
    std::string result;
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value[i] != '\\' || i + 1 == value.size()) {
            result += value[i];
            continue;
        }
        const char c = value[++i];
        result += c == 's' ? ' ' : c == 'n' ? '\n' : c == 't' ? '\t' : c == 'r' ? '\r' : c;
    }
    return result;
}

// The words of an Exec line; quotes keep spaces in a word.
std::vector<std::string> words(std::string_view command) {
    std::vector<std::string> result;
    std::string word;
    bool inWord = false, inQuotes = false;
    const auto end = [&] {
        if (inWord) result.push_back(std::move(word));
        word.clear();
        inWord = false;
    };
    for (std::size_t i = 0; i < command.size(); ++i) {
        const char c = command[i];
        if (!inQuotes && (c == ' ' || c == '\t')) {
            end();
            continue;
        }
        inWord = true;
        if (c == '"')
            inQuotes = !inQuotes;
        else if (c == '\\' && inQuotes && i + 1 < command.size())
            word += command[++i];
        else
            word += c;
    }
    end();
    return result;
}

bool isFieldCode(std::string_view word) { return word.size() == 2 && word.front() == '%'; }

// Programs that start an app which they don't tell.
bool isStarter(std::string_view fileName) {
    constexpr std::array starters{"flatpak"sv,   "snap"sv,        "gapplication"sv, "gtk-launch"sv,
                                  "dbus-send"sv, "dbus-launch"sv, "xdg-open"sv,     "wine"sv,
                                  "pkexec"sv,    "sudo"sv,        "systemctl"sv,    "gdbus"sv,
                                  "kioclient"sv, "qdbus"sv,       "distrobox"sv,    "waydroid"sv};
    return std::find(starters.begin(), starters.end(), fileName) != starters.end();
}

// Puts the program and the count of its arguments into the entry.
void setProgram(DesktopEntry& entry, std::string_view command) {
    std::vector<std::string> all = words(command);
    std::erase_if(all, isFieldCode);
    auto word = all.begin();
    const auto skipAssignments = [&] {
        while (word != all.end() && word->find('=') != std::string::npos && !word->starts_with('/'))
            ++word;
    };
    if (word != all.end() && fileName(*word) == "env") {
        ++word;
        skipAssignments();
    }
    if (word == all.end() || isStarter(fileName(*word))) return;
    if (isInterpreter(fileName(*word))) {
        ++word;
        // "sh -c" and "python -m" run something that has no path here.
        if (word == all.end() || !word->starts_with('/')) return;
    }
    entry.program = *word;
    entry.arguments = static_cast<std::size_t>(all.end() - word) - 1;
}

bool isTrue(std::string_view value) { return value == "true" || value == "1"; }

bool contains(std::string_view list, std::string_view item) {
    while (!list.empty()) {
        const std::size_t end = std::min(list.find(';'), list.size());
        if (list.substr(0, end) == item) return true;
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return false;
}

// The places of "Name[LOCALE]" among the locales and of "Name" behind them. Absent for another key.
std::optional<std::size_t> nameRank(std::string_view key, std::span<const std::string> locales) {
    constexpr std::string_view start = "Name[";
    if (key == "Name") return locales.size();
    if (!key.starts_with(start) || !key.ends_with(']')) return std::nullopt;
    const std::string_view locale = key.substr(start.size(), key.size() - start.size() - 1);
    const auto place = std::find(locales.begin(), locales.end(), locale);
    if (place == locales.end()) return std::nullopt;
    return static_cast<std::size_t>(place - locales.begin());
}

} // namespace

std::string_view fileName(std::string_view path) { return path.substr(path.rfind('/') + 1); }

bool isInterpreter(std::string_view name) {
    constexpr std::array names{"sh"sv,     "bash"sv, "dash"sv, "zsh"sv,         "fish"sv,
                               "node"sv,   "java"sv, "gjs"sv,  "gjs-console"sv, "mono"sv,
                               "nodejs"sv, "seed"sv, "deno"sv, "bun"sv,         "cinnamon-js"sv};
    if (std::find(names.begin(), names.end(), name) != names.end()) return true;
    // These carry their version in the name.
    for (const std::string_view stem :
         {"python"sv, "perl"sv, "ruby"sv, "electron"sv, "guile"sv, "lua"sv, "php"sv, "mono-"sv})
        if (name.starts_with(stem) &&
            name.find_first_not_of("0123456789.-", stem.size()) == name.npos)
            return true;
    return false;
}

std::vector<std::string> localeCandidates(std::string_view locale) {
    const std::size_t at = std::min(locale.find('@'), locale.size());
    const std::string_view modifier = locale.substr(at); // with its sign, as is the country below
    locale = locale.substr(0, at);
    locale = locale.substr(0, locale.find('.'));
    const std::size_t underscore = std::min(locale.find('_'), locale.size());
    const std::string_view country = locale.substr(underscore);
    const std::string language(locale.substr(0, underscore));
    std::vector<std::string> candidates;
    if (language.empty() || language == "C" || language == "POSIX") return candidates;
    const auto add = [&](std::string_view countryPart, std::string_view modifierPart) {
        std::string candidate = language;
        candidate += countryPart;
        candidate += modifierPart;
        if (std::find(candidates.begin(), candidates.end(), candidate) == candidates.end())
            candidates.push_back(std::move(candidate));
    };
    add(country, modifier);
    add(country, "");
    add("", modifier);
    add("", "");
    return candidates;
}

std::optional<DesktopEntry> parseDesktopEntry(std::string_view text,
                                              std::span<const std::string> locales) {
    DesktopEntry entry;
    std::size_t bestName = locales.size();
    std::string command, tryCommand;
    bool inEntry = false, isApplication = false;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::string_view line = trimmed(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        if (line.starts_with('[')) {
            if (inEntry) break; // what follows are the entry's actions
            inEntry = line == "[Desktop Entry]";
            continue;
        }
        const std::size_t equals = line.find('=');
        if (!inEntry || line.starts_with('#') || equals == line.npos) continue;
        const std::string_view key = trimmed(line.substr(0, equals));
        const std::string_view value = trimmed(line.substr(equals + 1));
        if (key == "Type") isApplication = value == "Application";
        if (key == "Hidden" && isTrue(value)) return std::nullopt;
        if (key == "NoDisplay") entry.isShown = !isTrue(value);
        if (key == "Terminal") entry.inTerminal = isTrue(value);
        if (const auto rank = nameRank(key, locales); rank && *rank <= bestName && !value.empty()) {
            bestName = *rank;
            entry.name = unescaped(value);
        }
        if (key == "Icon") entry.icon = unescaped(value);
        if (key == "Exec") command = unescaped(value);
        if (key == "TryExec") tryCommand = unescaped(value);
        if (key == "X-SnapInstanceName") entry.snap = unescaped(value);
        if (key == "Categories")
            entry.isLauncher =
                contains(value, "TerminalEmulator") || contains(value, "FileManager");
    }
    if (!isApplication) return std::nullopt;
    setProgram(entry, command);
    // An Exec line that hides the program may come with a TryExec that tells it.
    if (entry.program.empty() && !isInterpreter(fileName(tryCommand)) &&
        !isStarter(fileName(tryCommand)))
        entry.program = tryCommand;
    return entry;
}

} // namespace tavero
