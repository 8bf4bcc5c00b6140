#include "platform/sim/SimProcessTable.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace tavero {

namespace {

constexpr std::size_t listHeadroom = 20; // what the kernel adds when it only tells the size
constexpr int taskInfoSize = 96;

} // namespace

SimProcessTable::SimProcessTable(std::shared_ptr<SimTimeline> timeline)
    : timeline_(std::move(timeline)) {}

int SimProcessTable::listAllPids(std::span<std::int32_t> pids) {
    return timeline_->read([&](const SimState& state) {
        const std::vector<SimProcess>& all = state.processes;
        if (pids.empty()) return all.empty() ? 0 : static_cast<int>(all.size() + listHeadroom);
        const std::size_t count = std::min(all.size(), pids.size());
        std::transform(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(count), pids.begin(),
                       [](const SimProcess& process) { return process.pid; });
        return static_cast<int>(count);
    });
}

template <typename Answer>
int SimProcessTable::ask(std::int32_t pid, int failure, Answer answer) {
    return timeline_->read([&](const SimState& state) {
        const auto process = std::find_if(state.processes.begin(), state.processes.end(),
                                          [&](const SimProcess& p) { return p.pid == pid; });
        return process == state.processes.end() ? failure : answer(*process);
    });
}

int SimProcessTable::usage(std::int32_t pid, Usage& usage) {
    return ask(pid, -1, [&](const SimProcess& process) {
        if (!process.usage) return -1;
        usage = *process.usage;
        return 0;
    });
}

int SimProcessTable::path(std::int32_t pid, std::span<char> buffer) {
    return ask(pid, 0, [&](const SimProcess& process) {
        if (!process.path || process.path->size() >= buffer.size()) return 0;
        *std::copy(process.path->begin(), process.path->end(), buffer.begin()) = '\0';
        return static_cast<int>(process.path->size());
    });
}

int SimProcessTable::taskInfo(std::int32_t pid, TaskInfo& info) {
    return ask(pid, 0, [&](const SimProcess& process) {
        if (!process.usage) return 0;
        info.threads = process.threads;
        return taskInfoSize;
    });
}

std::uint64_t SimProcessTable::absoluteTime() {
    return timeline_->read([](const SimState& state) { return state.absoluteTime; });
}

Timebase SimProcessTable::timebase() {
    return timeline_->read([](const SimState& state) { return state.timebase; });
}

} // namespace tavero
