#include "platform/linux/processes/LinuxAppIdentity.h"

#include "platform/linux/processes/UnitNames.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>

namespace tavero {

namespace {

using namespace std::string_view_literals;
using Kind = AppIdentity::Kind;

const AppIdentity namedByPath{Kind::tool, ""};

AppIdentity app(const DesktopEntry& entry) { return {Kind::app, entry.file}; }

std::vector<std::string_view> parts(std::string_view path) {
    std::vector<std::string_view> result;
    while (!path.empty()) {
        const std::size_t end = std::min(path.find('/'), path.size());
        if (end > 0) result.push_back(path.substr(0, end));
        path.remove_prefix(std::min(end + 1, path.size()));
    }
    return result;
}

bool startsWithAny(std::string_view path, std::initializer_list<std::string_view> folders) {
    return std::any_of(folders.begin(), folders.end(),
                       [&](std::string_view folder) { return path.starts_with(folder); });
}

// What a distribution installs, tools and apps included; also what doesn't tell its path, since the
// user's own programs do.
bool isInstalled(std::string_view path) {
    if (!path.starts_with('/')) return true;
    return startsWithAny(
               path, {"/usr/", "/bin/", "/sbin/", "/lib/", "/lib64/", "/nix/store/", "/snap/"}) &&
           !path.starts_with("/usr/local/");
}

// Of that, what nobody starts by hand: daemons and helpers.
bool isHelper(std::string_view path) {
    return !isInterpreter(fileName(path)) &&
           startsWithAny(path, {"/usr/lib/", "/usr/lib64/", "/usr/libexec/", "/usr/sbin/", "/sbin/",
                                "/lib/", "/lib64/"});
}

bool isShell(std::string_view path) {
    constexpr std::array shells{"bash"sv, "zsh"sv,  "fish"sv, "sh"sv,  "dash"sv,
                                "ksh"sv,  "tcsh"sv, "nu"sv,   "ash"sv, "mksh"sv};
    return std::find(shells.begin(), shells.end(), fileName(path)) != shells.end();
}

// One process against the rules, in their order. Each gives an answer or leaves it to the next.
class Rules {
  public:
    Rules(const ProcessFacts& process, const DesktopApps& apps)
        : process_(process), apps_(apps), cgroup_(parts(process.cgroup)) {}

    AppIdentity answer() const {
        if (process_.isKernelThread) return AppIdentity::system;
        for (const auto rule : {&Rules::flatpak, &Rules::snap, &Rules::desktopUnit,
                                &Rules::appImage, &Rules::container, &Rules::service,
                                &Rules::executable, &Rules::parent, &Rules::helper})
            if (std::optional<AppIdentity> owner = (this->*rule)()) return *owner;
        return namedByPath;
    }

  private:
    using Answer = std::optional<AppIdentity>;

    Answer flatpak() const {
        std::string id(process_.flatpak);
        if (id.empty()) id = flatpakOfControlGroup(process_.cgroup);
        return id.empty() ? std::nullopt : Answer(appOrTool(apps_.withId(id), id));
    }

    Answer snap() const {
        for (const std::string_view part : cgroup_)
            if (const SnapUnit unit = snapUnit(part); !unit.name.empty())
                return snap(unit.name, unit.app);
        constexpr std::string_view mount = "/snap/";
        if (!process_.path.starts_with(mount)) return std::nullopt;
        const std::string_view name = process_.path.substr(mount.size());
        return snap(std::string(name.substr(0, name.find('/'))), "");
    }

    // The service that runs the snaps is a snap itself, and the system's.
    Answer snap(const std::string& name, const std::string& part) const {
        if (name == "snapd" || name == "bin" || name.starts_with("core")) return std::nullopt;
        const DesktopEntry* entry = apps_.withId(name + "_" + part);
        if (!entry) entry = apps_.withId(name + "_" + name);
        return appOrTool(entry ? entry : apps_.fromSnap(name), name);
    }

    // The innermost unit that was started for a known app.
    Answer desktopUnit() const {
        for (std::size_t i = cgroup_.size(); i-- > 0;)
            for (const std::string& id : appIdCandidates(cgroup_[i]))
                if (const DesktopEntry* entry = apps_.withId(id))
                    return entry->isLauncher ? inUnitOf(*entry) : app(*entry);
        return std::nullopt;
    }

    // A terminal's or file manager's unit also holds what was started from it.
    Answer inUnitOf(const DesktopEntry& launcher) const {
        const AppIdentity itself = app(launcher);
        if (const DesktopEntry* own = ownEntry()) return app(*own);
        if (Answer image = appImage()) return image;
        if (!process_.parent || process_.parent->kind == Kind::system)
            return itself; // the unit's first
        if (process_.parent == itself && isHelper(process_.path)) return itself;
        return parent().value_or(namedByPath);
    }

    Answer appImage() const {
        constexpr std::string_view mount = "/.mount_";
        constexpr std::size_t randomLength = 6;
        const std::size_t start = process_.path.find(mount);
        if (start == process_.path.npos) return std::nullopt;
        if (process_.appImage.starts_with('/')) {
            const DesktopEntry* entry = apps_.withProgram(process_.appImage);
            return entry ? app(*entry) : AppIdentity{Kind::app, std::string(process_.appImage)};
        }
        // Another user's: the mount's name begins with the app's.
        std::string_view name = process_.path.substr(start + mount.size());
        name = name.substr(0, name.find('/'));
        if (name.size() <= randomLength) return std::nullopt;
        return AppIdentity{Kind::tool, std::string(name.substr(0, name.size() - randomLength))};
    }

    // Unless Tavero runs in the same one, where everything else does too.
    Answer container() const {
        std::string_view before;
        for (const std::string_view part : cgroup_) {
            const std::string name = containerName(part, before);
            before = part;
            if (name.empty()) continue;
            const auto own = parts(process_.ownCgroup);
            if (std::find(own.begin(), own.end(), part) != own.end()) return std::nullopt;
            return AppIdentity{Kind::tool, "Container " + name};
        }
        return std::nullopt;
    }

    // What the service manager runs for the machine or for the session is the system's, if it came
    // with the system.
    Answer service() const {
        if (cgroup_.empty() || !isInstalled(process_.path)) return std::nullopt;
        const auto isIn = [&](std::string_view part) {
            return std::find(cgroup_.begin(), cgroup_.end(), part) != cgroup_.end();
        };
        if (cgroup_.front() == "system.slice" || isIn("init.scope") || isIn("session.slice") ||
            isIn("background.slice"))
            return AppIdentity::system;
        // Started for whoever asked for it on the bus, and no app.
        if (cgroup_.back().starts_with("dbus-") && cgroup_.back().ends_with(".service"))
            return AppIdentity::system;
        return std::nullopt;
    }

    Answer executable() const {
        const DesktopEntry* entry = ownEntry();
        return entry ? Answer(app(*entry)) : std::nullopt;
    }

    // Helpers of an app. A terminal's shells belong to it, but not what is typed into them.
    Answer parent() const {
        if (!process_.parent || process_.parent->kind != Kind::app) return std::nullopt;
        const DesktopEntry* entry = apps_.withFile(process_.parent->id);
        if (entry && entry->isLauncher && !isShell(process_.path)) return std::nullopt;
        return process_.parent;
    }

    // A tool's helper does the tool's work: a compiler's, say.
    Answer helper() const {
        if (process_.parent && process_.parent->kind == Kind::tool) return std::nullopt;
        return isHelper(process_.path) ? Answer(AppIdentity::system) : std::nullopt;
    }

    const DesktopEntry* ownEntry() const {
        if (!process_.script.starts_with('/')) return apps_.withProgram(process_.path);
        if (const DesktopEntry* entry = apps_.withProgram(process_.script)) return entry;
        return apps_.withProgram(process_.path);
    }

    static AppIdentity appOrTool(const DesktopEntry* entry, const std::string& name) {
        return entry ? app(*entry) : AppIdentity{Kind::tool, name};
    }

    const ProcessFacts& process_;
    const DesktopApps& apps_;
    std::vector<std::string_view> cgroup_;
};

} // namespace

AppIdentity linuxAppIdentity(const ProcessFacts& process, const DesktopApps& apps) {
    return Rules(process, apps).answer();
}

} // namespace tavero
