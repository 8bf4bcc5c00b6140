#include "desktop/linux/QuitTargets.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace tavero {

namespace {

using namespace std::string_view_literals;

// What a process is to its app.
enum class Part {
    itself,
    shell, // passes no signal on, but would start the script's next command: asked as well
    around // passes no signal on, and the app would break without it: it ends after the app
};

Part partOf(const AppProcess& process) {
    // An executable that was replaced on disk keeps its name, with this behind it.
    constexpr std::string_view deleted = " (deleted)";
    constexpr std::array shells{"sh"sv, "bash"sv, "dash"sv, "zsh"sv};
    constexpr std::array sandboxes{"bwrap"sv, "xdg-dbus-proxy"sv};

    std::string_view name = process.program;
    if (name.ends_with(deleted)) name.remove_suffix(deleted.size());
    name.remove_prefix(name.rfind('/') + 1); // npos + 1 is 0
    if (std::find(shells.begin(), shells.end(), name) != shells.end()) return Part::shell;
    if (std::find(sandboxes.begin(), sandboxes.end(), name) != sandboxes.end()) return Part::around;
    // It serves the files of the app, or waits for it to remove them.
    return name.ends_with(".AppImage") ? Part::around : Part::itself;
}

const AppProcess* find(const std::vector<AppProcess>& app, std::int32_t pid) {
    const auto found = std::find_if(app.begin(), app.end(),
                                    [&](const AppProcess& process) { return process.pid == pid; });
    return found == app.end() ? nullptr : &*found;
}

// Whether a process above it will hand the request down.
bool isHelper(const AppProcess& process, const std::vector<AppProcess>& app) {
    const AppProcess* above = find(app, process.parent);
    for (std::size_t steps = 0; above != nullptr && steps < app.size(); ++steps) {
        if (partOf(*above) == Part::itself) return true;
        above = find(app, above->parent);
    }
    return false;
}

} // namespace

std::vector<std::int32_t> quitTargets(const std::vector<AppProcess>& app) {
    std::vector<std::int32_t> targets;
    for (const AppProcess& process : app)
        if (partOf(process) != Part::around && !isHelper(process, app))
            targets.push_back(process.pid);
    if (!targets.empty()) return targets;
    for (const AppProcess& process : app) // nothing but what is around an app
        if (find(app, process.parent) == nullptr) targets.push_back(process.pid);
    return targets;
}

} // namespace tavero
