#include "platform/sim/SimTasks.h"

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <optional>
#include <unordered_set>
#include <utility>

namespace tavero {

namespace {

std::uint64_t whole(double amount) { return static_cast<std::uint64_t>(std::max(amount, 0.0)); }

// What a process used in the life it is in. One that is older than the scenario used as much a
// second before as when the scenario begins.
double usedInLife(const Curve& curve, double born, double time) {
    return born < 0 ? curve.integral(time) - born * std::max(curve.at(0), 0.0)
                    : curve.integral(time) - curve.integral(born);
}

MacProcessTable::Usage usage(const Scenario::Process& process, double time) {
    const double born = process.life.birth(time);
    const double cpuTicks = simTicksPerSecond * usedInLife(process.cpu, born, time);
    return {
        .userTime = whole(cpuTicks * (1 - process.system)),
        .systemTime = whole(cpuTicks * process.system),
        .footprint = whole(process.memory.at(time)),
        .start = whole(simTicksPerSecond * (simUptime + born)),
        .diskRead = whole(usedInLife(process.disk.read, born, time)),
        .diskWritten = whole(usedInLife(process.disk.written, born, time)),
    };
}

std::string fileName(const std::string& path) { return path.substr(path.rfind('/') + 1); }

// The GPU's time of a process that uses it at all.
std::optional<SimGPUClient> gpuClient(const Scenario::Process& process, double time) {
    const double used = usedInLife(process.gpu, process.life.birth(time), time);
    if (!(used > 0)) return std::nullopt;
    return SimGPUClient{
        .pid = process.pid, .name = fileName(process.path), .nanoseconds = whole(1e9 * used)};
}

SimProcess snapshot(const Scenario::Process& process, double time) {
    SimProcess snapshot{.pid = process.pid, .threads = process.threads};
    if (!process.path.empty()) snapshot.path = process.path;
    if (!process.isRefused) snapshot.usage = usage(process, time);
    return snapshot;
}

} // namespace

SimTasks::SimTasks(std::vector<Scenario::Process> processes) {
    for (Scenario::Process& process : processes) tasks_.push_back({std::move(process), {}});
}

bool SimTasks::Task::wasEnded(double time) const {
    return std::any_of(endings.begin(), endings.end(), [&](const Ending& ending) {
        return ending.at <= time && time < ending.until;
    });
}

bool SimTasks::Task::isRunning(double time) const {
    return process.life.isAlive(time) && !wasEnded(time);
}

double SimTasks::Task::used(const Curve& curve, double time) const {
    double used = curve.integral(time);
    for (const Ending& ending : endings)
        if (time > ending.at)
            used -= curve.integral(std::min(time, ending.until)) - curve.integral(ending.at);
    return used;
}

void SimTasks::endMissing(const std::vector<SimProcess>& listed, double time) {
    std::unordered_set<std::int32_t> pids;
    for (const SimProcess& process : listed) pids.insert(process.pid);
    for (Task& task : tasks_)
        if (task.isRunning(time) && !pids.contains(task.process.pid)) {
            const Scenario::Life& life = task.process.life;
            task.endings.push_back({.at = time, .until = life.birth(time) + life.lasts});
        }
}

std::vector<SimProcess> SimTasks::running(double time) const {
    std::vector<SimProcess> running;
    std::for_each(tasks_.rbegin(), tasks_.rend(), [&](const Task& task) {
        if (task.isRunning(time)) running.push_back(snapshot(task.process, time));
    });
    return running;
}

std::vector<SimTasks::CpuTime> SimTasks::cpuTime(std::size_t cpuCount, double time) const {
    std::vector<CpuTime> cpus(cpuCount);
    for (const Task& task : tasks_) {
        const Scenario::Process& process = task.process;
        if (process.core >= cpuCount) continue;
        const double used = task.used(process.cpu, time);
        cpus[process.core].user += used * (1 - process.system);
        cpus[process.core].system += used * process.system;
    }
    return cpus;
}

SimTasks::DiskBytes SimTasks::diskBytes(double time) const {
    DiskBytes bytes;
    for (const Task& task : tasks_) {
        bytes.read += task.used(task.process.disk.read, time);
        bytes.written += task.used(task.process.disk.written, time);
    }
    return bytes;
}

SimTasks::NetworkFlow SimTasks::networkFlow(double time) const {
    NetworkFlow flow;
    for (const Task& task : tasks_)
        if (const auto& network = task.process.network) {
            flow.in += task.used(network->in, time);
            flow.out += task.used(network->out, time);
        }
    return flow;
}

std::vector<SimTasks::Connection> SimTasks::connections(double since, double time) const {
    std::vector<Connection> connections;
    for (const Task& task : tasks_) {
        const Scenario::Process& process = task.process;
        if (!process.network || !task.isRunning(time)) continue;
        const double opened = std::max(process.life.birth(time), since);
        connections.push_back(
            {.pid = process.pid,
             .name = fileName(process.path),
             .bytes = {.received = whole(usedInLife(process.network->in, opened, time)),
                       .sent = whole(usedInLife(process.network->out, opened, time))}});
    }
    return connections;
}

double SimTasks::gpuTime(double time) const {
    return std::accumulate(tasks_.begin(), tasks_.end(), 0.0,
                           [&](double seconds, const Task& task) {
                               return seconds + task.used(task.process.gpu, time);
                           });
}

std::vector<SimGPUClient> SimTasks::gpuClients(double time) const {
    std::vector<SimGPUClient> clients;
    std::for_each(tasks_.rbegin(), tasks_.rend(), [&](const Task& task) {
        if (!task.isRunning(time)) return;
        if (std::optional<SimGPUClient> client = gpuClient(task.process, time))
            clients.push_back(std::move(*client));
    });
    return clients;
}

double SimTasks::freed(double time) const {
    double freed = 0;
    for (const Task& task : tasks_)
        if (task.wasEnded(time)) freed += std::max(task.process.memory.at(time), 0.0);
    return freed;
}

} // namespace tavero
