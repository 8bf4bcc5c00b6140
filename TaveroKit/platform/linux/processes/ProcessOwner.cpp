#include "platform/linux/processes/ProcessOwner.h"

#include "platform/linux/KeptFile.h"
#include "platform/linux/processes/LinuxAppIdentity.h"
#include "platform/linux/processes/ProcFiles.h"

#include <functional>
#include <utility>

namespace tavero {

namespace {

constexpr std::size_t mostText = 4096;
constexpr std::size_t mostArguments = 16 << 10;
constexpr std::size_t mostEnvironment = 256 << 10;

std::string inBrackets(std::string_view name) {
    std::string result(1, '[');
    result += name;
    result += ']';
    return result;
}

// What a file holds, no more than so much of it; empty if it can't be read.
std::string text(ProcFolder& proc, std::int32_t pid, std::string_view name, std::size_t most) {
    std::string result(most, '\0');
    result.resize(proc.read(pid, name, result).value_or("").size());
    return result;
}

} // namespace

std::optional<std::string> executablePath(ProcFolder& proc, std::int32_t pid, std::string_view comm,
                                          bool isKernelThread) {
    constexpr std::string_view deleted = " (deleted)";
    if (isKernelThread) return inBrackets(comm.substr(0, comm.find('/')));

    std::optional<std::string> target = proc.link(pid, "exe");
    if (!target && !proc.wasRefused()) return std::nullopt;
    // A program that runs from memory has no path; what stands there changes from run to run.
    if (target && !target->starts_with("/memfd:")) {
        if (target->ends_with(deleted)) target->resize(target->size() - deleted.size());
        return target;
    }
    const std::string arguments = text(proc, pid, "cmdline", mostArguments);
    const std::string_view program = argument(arguments, 0);
    if (program.starts_with('/')) return std::string(program);
    if (comm.empty()) return std::nullopt;
    return std::string(comm);
}

std::string ownControlGroup(const std::filesystem::path& root) {
    return std::string(parseCgroup(readFile(root / "proc/self/cgroup").value_or("")));
}

ProcessOwner::ProcessOwner(ProcFolder& proc, std::int32_t pid, std::string path,
                           bool isKernelThread)
    : path_(std::move(path)), isKernelThread_(isKernelThread) {
    if (!isKernelThread) controlGroup_ = text(proc, pid, "cgroup", mostText);
    if (isInterpreter(fileName(path_))) arguments_ = text(proc, pid, "cmdline", mostArguments);
    if (path_.find("/.mount_") != path_.npos)
        environment_ = text(proc, pid, "environ", mostEnvironment);
    if (path_.starts_with("/app/")) flatpakInfo_ = text(proc, pid, "root/.flatpak-info", mostText);
}

std::size_t ProcessOwner::controlGroupHash() const {
    return std::hash<std::string_view>{}(controlGroup_);
}

AppIdentity ProcessOwner::identity(const DesktopApps& apps, std::optional<AppIdentity> parent,
                                   std::string_view ownControlGroup) const {
    return linuxAppIdentity({.path = path_,
                             .isKernelThread = isKernelThread_,
                             .cgroup = parseCgroup(controlGroup_),
                             .script = scriptOf(arguments_),
                             .appImage = variable(environment_, "APPIMAGE").value_or(""),
                             .flatpak = parseFlatpakId(flatpakInfo_),
                             .parent = std::move(parent),
                             .ownCgroup = ownControlGroup},
                            apps);
}

} // namespace tavero
