#include "platform/linux/processes/UnitNames.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace tavero {

namespace {

using namespace std::string_view_literals;

constexpr std::size_t mostCandidates = 8;
constexpr std::size_t containerIdLength = 64;
constexpr std::size_t shortIdLength = 12;

int hexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

bool isHex(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return hexDigit(c) >= 0; });
}

bool drop(std::string_view& text, std::string_view prefix) {
    if (!text.starts_with(prefix)) return false;
    text.remove_prefix(prefix.size());
    return true;
}

bool dropEnd(std::string_view& text, std::string_view suffix) {
    if (!text.ends_with(suffix)) return false;
    text.remove_suffix(suffix.size());
    return true;
}

// "-3b241101-e2bb-4255-8caf-4136c566a962": a name may hold "-" too, so its form is checked whole.
bool dropUuid(std::string_view& text) {
    constexpr std::size_t length = 37;
    if (text.size() < length) return false;
    const std::string_view uuid = text.substr(text.size() - length);
    for (std::size_t i = 0; i < length; ++i) {
        const bool isDash = i == 0 || i == 9 || i == 14 || i == 19 || i == 24;
        if (isDash ? uuid[i] != '-' : hexDigit(uuid[i]) < 0) return false;
    }
    text.remove_suffix(length);
    return true;
}

void addCandidate(std::vector<std::string>& candidates, std::string_view name) {
    std::string id = unescapeUnitName(name);
    if (id.ends_with(".desktop")) id.resize(id.size() - ".desktop"sv.size());
    if (id.empty() || candidates.size() >= mostCandidates) return;
    if (std::find(candidates.begin(), candidates.end(), id) == candidates.end())
        candidates.push_back(std::move(id));
}

// The name itself, then without the first word of it, and so on: the words may be a launcher's.
void addCandidates(std::vector<std::string>& candidates, std::string_view name) {
    addCandidate(candidates, name);
    while (candidates.size() < mostCandidates && name.find('-') != name.npos) {
        name.remove_prefix(name.find('-') + 1);
        addCandidate(candidates, name);
    }
}

std::string_view withoutLastWord(std::string_view name) {
    return name.substr(0, std::min(name.rfind('-'), name.size()));
}

} // namespace

std::string unescapeUnitName(std::string_view name) {
    std::string result;
    result.reserve(name.size());
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (name.substr(i).starts_with("\\x") && i + 3 < name.size()) {
            const int high = hexDigit(name[i + 2]), low = hexDigit(name[i + 3]);
            if (high >= 0 && low >= 0) {
                result += static_cast<char>(high * 16 + low);
                i += 3;
                continue;
            }
        }
        result += name[i];
    }
    return result;
}

std::vector<std::string> appIdCandidates(std::string_view unit) {
    std::vector<std::string> candidates;
    std::string_view name = unit;
    const bool isScope = dropEnd(name, ".scope");
    const bool isService = !isScope && dropEnd(name, ".service");
    if (!isScope && !isService && !dropEnd(name, ".slice")) return candidates;

    if (drop(name, "dbus-")) {
        // After the bus address of whoever asked for it.
        if (name.starts_with(':'))
            name = name.substr(std::min(name.find('-'), name.size() - 1) + 1);
        addCandidate(candidates, name.substr(0, name.find('@')));
        return candidates;
    }
    if (!drop(name, "app-") && !drop(name, "apps-") && !drop(name, "gnome-launched-") &&
        !drop(name, "flatpak-"))
        return candidates;
    if (isService && name.find('@') != name.npos)
        addCandidates(candidates, name.substr(0, name.find('@')));
    else if (isScope && name.find('-') != name.npos)
        addCandidates(candidates, withoutLastWord(name));
    else
        addCandidates(candidates, name);
    // Some launchers put a number behind the name of a service too.
    if (isService) addCandidates(candidates, withoutLastWord(name.substr(0, name.find('@'))));
    return candidates;
}

SnapUnit snapUnit(std::string_view unit) {
    std::string_view name = unit;
    if (!drop(name, "snap.")) return {};
    if (dropEnd(name, ".scope"))
        dropUuid(name);
    else if (!dropEnd(name, ".service"))
        return {};
    const std::size_t dot = name.find('.');
    if (dot == name.npos) return {};
    return {unescapeUnitName(name.substr(0, dot)), unescapeUnitName(name.substr(dot + 1))};
}

std::string flatpakOfControlGroup(std::string_view path) {
    while (!path.empty()) {
        const std::size_t end = std::min(path.find('/'), path.size());
        std::string_view unit = path.substr(0, end);
        path.remove_prefix(std::min(end + 1, path.size()));
        if (!drop(unit, "app-flatpak-") || !dropEnd(unit, ".scope")) continue;
        const std::size_t dash = unit.rfind('-');
        if (dash != unit.npos && dash > 0) return unescapeUnitName(unit.substr(0, dash));
    }
    return {};
}

std::string containerName(std::string_view part, std::string_view parent) {
    std::string_view name = part;
    const bool isScope = dropEnd(name, ".scope");
    for (const std::string_view engine :
         {"docker-"sv, "libpod-"sv, "crio-"sv, "cri-containerd-"sv, "nerdctl-"sv})
        if (std::string_view id = name;
            isScope && drop(id, engine) && id.size() == containerIdLength && isHex(id))
            return std::string(id.substr(0, shortIdLength));
    if (isScope && drop(name, "machine-")) return unescapeUnitName(name);
    if (isScope) return {};
    if (drop(name, "lxc.payload.")) return std::string(name);
    if (parent == "lxc" || parent == "lxc.payload") return std::string(name);
    if (name.size() == containerIdLength && isHex(name))
        return std::string(name.substr(0, shortIdLength));
    return {};
}

} // namespace tavero
