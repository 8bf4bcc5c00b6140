#include "desktop/linux/LinuxRunningApps.h"

#include "desktop/linux/ProcessHandle.h"
#include "desktop/linux/ProcessStatus.h"
#include "desktop/linux/QuitAction.h"
#include "platform/linux/KeptFile.h"

#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <set>
#include <system_error>
#include <utility>

namespace tavero {

namespace {

// The processes of an app that is asked to quit, held so that no other can be meant by it.
struct Request {
    std::vector<ProcessHandle> targets; // that get the signal
    std::vector<ProcessHandle> others;

    // Whether a signal went out.
    bool terminate() const {
        return std::count_if(targets.begin(), targets.end(),
                             std::mem_fn(&ProcessHandle::terminate)) > 0;
    }

    bool haveEnded() const {
        const auto ended = std::mem_fn(&ProcessHandle::hasEnded);
        return std::all_of(targets.begin(), targets.end(), ended) &&
               std::all_of(others.begin(), others.end(), ended);
    }
};

bool contains(const std::vector<std::int32_t>& pids, std::int32_t pid) {
    return std::find(pids.begin(), pids.end(), pid) != pids.end();
}

struct HeldProcess {
    std::int32_t pid = 0;
    ProcessHandle handle;
};

std::vector<HeldProcess> hold(const std::vector<std::int32_t>& pids) {
    std::vector<HeldProcess> held;
    for (const std::int32_t pid : pids) {
        if (pid <= 1) continue;
        if (auto handle = ProcessHandle::open(pid)) held.push_back({pid, std::move(*handle)});
    }
    return held;
}

} // namespace

LinuxRunningApps::LinuxRunningApps(AppProcesses processesOf, QDBusConnection bus,
                                   std::filesystem::path root)
    : processesOf_(std::move(processesOf)), bus_(std::move(bus)), root_(std::move(root)) {}

std::filesystem::path LinuxRunningApps::folderOf(std::int32_t pid) const {
    return root_ / "proc" / std::to_string(pid);
}

// Absent if it is another user's, or acts for one, or if that can't be told.
std::optional<AppProcess> LinuxRunningApps::ownProcess(std::int32_t pid) const {
    const std::string text = readFile(folderOf(pid) / "status").value_or("");
    const std::optional<ProcessStatus> status = parseProcessStatus(text);
    if (!status || status->user != getuid() || status->actsForUser != getuid()) return std::nullopt;
    std::error_code refused;
    return AppProcess{
        .pid = pid,
        .parent = status->parent,
        .program = std::filesystem::read_symlink(folderOf(pid) / "exe", refused).string(),
    };
}

// Whether Tavero or a process that it runs inside is among them.
bool LinuxRunningApps::holdsTavero(const std::vector<std::int32_t>& pids) const {
    std::set<std::int32_t> line;
    for (std::int32_t pid = getpid(); pid > 0 && line.insert(pid).second;) {
        const std::string text = readFile(folderOf(pid) / "status").value_or("");
        pid = parseProcessStatus(text).value_or(ProcessStatus{}).parent;
    }
    return std::any_of(pids.begin(), pids.end(),
                       [&](std::int32_t pid) { return line.contains(pid); });
}

std::optional<RunningApps::HaveEnded> LinuxRunningApps::askToQuit(const std::string& bundlePath) {
    std::vector<HeldProcess> held = hold(processesOf_(bundlePath));
    // Asked again now that they are held. One that still lives after this has had its number all
    // the while, so what is read by number here is about it.
    const std::vector<std::int32_t> pids = processesOf_(bundlePath);
    if (held.empty() || holdsTavero(pids)) return std::nullopt;

    std::vector<AppProcess> app;
    std::vector<ProcessHandle> handles; // of each
    for (auto& [pid, handle] : held) {
        std::optional<AppProcess> process = ownProcess(pid);
        if (!process || !contains(pids, pid) || handle.hasEnded()) continue;
        app.push_back(std::move(*process));
        handles.push_back(std::move(handle));
    }
    const std::vector<std::int32_t> targets = quitTargets(app);
    if (targets.empty()) return std::nullopt;

    const auto request = std::make_shared<Request>();
    for (std::size_t i = 0; i < app.size(); ++i)
        (contains(targets, app[i].pid) ? request->targets : request->others)
            .push_back(std::move(handles[i]));
    if (const std::optional<QString> name = busName(bundlePath); name && bus_.isConnected())
        activateQuit(bus_, *name, &calls_, [request] { request->terminate(); });
    else if (!request->terminate())
        return std::nullopt;
    return [request] { return request->haveEnded(); };
}

std::unique_ptr<RunningApps> hostRunningApps(AppProcesses processesOf) {
    return std::make_unique<LinuxRunningApps>(std::move(processesOf),
                                              QDBusConnection::sessionBus());
}

} // namespace tavero
