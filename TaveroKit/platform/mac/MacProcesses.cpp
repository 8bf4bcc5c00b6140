#include "platform/mac/MacProcesses.h"

#include "records/SaturatingSum.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace tavero {

namespace {

// For the processes that are born between asking how many there are and listing them.
constexpr std::size_t headroom = 64;
// The Mac's pids end below this, so a longer list is none.
constexpr std::size_t mostPids = 100'000;
constexpr std::size_t longestPath = 4096; // PROC_PIDPATHINFO_MAXSIZE

} // namespace

MacProcesses::MacProcesses(std::shared_ptr<MacProcessTable> table)
    : table_(std::move(table)), timebase_(table_->timebase()) {}

std::span<const ProcessCounters> MacProcesses::processes(bool threads) {
    listPids();
    processes_.clear();
    for (const std::int32_t pid : pids_)
        if (pid >= 1) processes_.push_back(counters(pid, threads));
    return processes_;
}

void MacProcesses::listPids() {
    pids_.clear();
    const int expected = table_->listAllPids({});
    if (expected < 1) return;
    pids_.resize(std::min(static_cast<std::size_t>(expected), mostPids) + headroom);
    const auto listed = static_cast<std::size_t>(std::max(table_->listAllPids(pids_), 0));
    pids_.resize(std::min(listed, pids_.size()));
}

ProcessCounters MacProcesses::counters(std::int32_t pid, bool threads) {
    MacProcessTable::Usage usage;
    if (table_->usage(pid, usage) != 0) return {.pid = pid};
    MacProcessTable::TaskInfo info;
    const bool hasInfo = threads && table_->taskInfo(pid, info) >= 1;
    return {
        .pid = pid,
        .start = usage.start,
        .hasUsage = true,
        .cpuTime = saturatingSum(usage.userTime, usage.systemTime),
        .memory = usage.footprint,
        .diskRead = usage.diskRead,
        .diskWritten = usage.diskWritten,
        .threads = hasInfo ? std::max(info.threads, 0) : 0,
    };
}

std::optional<std::string> MacProcesses::path(std::int32_t pid) {
    std::array<char, longestPath> buffer{};
    if (table_->path(pid, buffer) < 1) return std::nullopt;
    std::string path(buffer.begin(), std::find(buffer.begin(), buffer.end(), '\0'));
    return path.empty() ? std::nullopt : std::optional(std::move(path));
}

} // namespace tavero
