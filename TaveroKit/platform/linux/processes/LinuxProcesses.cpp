#include "platform/linux/processes/LinuxProcesses.h"

#include "platform/linux/processes/LinuxVocabulary.h"
#include "platform/linux/processes/ProcessOwner.h"
#include "records/SaturatingSum.h"

#include <algorithm>
#include <functional>
#include <utility>

#include <time.h>
#include <unistd.h>

namespace tavero {

namespace {

constexpr std::uint64_t second = 1'000'000'000;
// In case the count of forks is not to be trusted, as in some sandboxes.
constexpr std::uint64_t longestUnlisted = 10 * second;
// A process is started first and put into its unit then.
constexpr std::uint64_t settlingTime = 5 * second;

// How old the memory of a quiet process may be: 6 to 13 s, so that they take turns.
std::uint64_t quietTime(std::int32_t pid) {
    return (6 + static_cast<std::uint64_t>(pid) % 8) * second;
}

std::uint64_t pageSize() {
    static const auto size = static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));
    return size;
}

std::uint64_t tickLength() {
    static const auto length = second / static_cast<std::uint64_t>(::sysconf(_SC_CLK_TCK));
    return length;
}

std::optional<std::uint64_t> read(clockid_t clock) {
    timespec time = {};
    if (::clock_gettime(clock, &time) != 0) return std::nullopt;
    return static_cast<std::uint64_t>(time.tv_sec) * second +
           static_cast<std::uint64_t>(time.tv_nsec);
}

// The clock id that clock_getcpuclockid(3) gives for a pid, without its system call: the pid
// inverted, and 2 for the scheduler's own clock.
std::optional<std::uint64_t> cpuClock(std::int32_t pid) {
    return read(static_cast<clockid_t>(~static_cast<std::uint32_t>(pid) << 3 | 2u));
}

std::string_view trimmed(const std::array<char, 16>& comm) {
    return {comm.begin(), std::find(comm.begin(), comm.end(), '\0')};
}

} // namespace

ProcessClocks ProcessClocks::host() {
    return {.cpu = cpuClock, .now = [] { return read(CLOCK_MONOTONIC).value_or(0); }};
}

ProcessClocks ProcessClocks::recorded() {
    return {.cpu = [](std::int32_t) -> std::optional<std::uint64_t> { return std::nullopt; },
            .now = host().now};
}

void LinuxProcesses::Table::clear() {
    counters.clear();
    kept.clear();
}

void LinuxProcesses::Table::add(const ProcessCounters& process, Kept&& state) {
    counters.push_back(process);
    kept.push_back(std::move(state));
}

LinuxProcesses::LinuxProcesses(const std::filesystem::path& root,
                               std::shared_ptr<DesktopFolders> desktop, ProcessClocks clocks)
    : proc_(root / "proc"), stat_(root / "proc/stat"), desktop_(std::move(desktop)),
      clocks_(std::move(clocks)), ownCgroup_(ownControlGroup(root)) {}

std::span<const ProcessCounters> LinuxProcesses::processes(bool threads) {
    const std::uint64_t now = clocks_.now();
    isDesktopFresh_ = false;
    if (mayHaveForked(now)) list(now);

    std::size_t alive = 0;
    for (std::size_t i = 0; i < table_.counters.size(); ++i) {
        if (!update(table_.counters[i], table_.kept[i], now)) continue;
        table_.counters[i].threads = threads ? table_.kept[i].threads : 0;
        if (alive != i) {
            table_.counters[alive] = table_.counters[i];
            table_.kept[alive] = std::move(table_.kept[i]);
        }
        ++alive;
    }
    table_.counters.resize(alive);
    table_.kept.resize(alive);
    return table_.counters;
}

bool LinuxProcesses::mayHaveForked(std::uint64_t now) {
    const auto text = stat_.read(statText_);
    const auto forks = text ? parseForks(*text) : std::nullopt;
    const bool isSame = forks && forks == std::exchange(forks_, forks);
    return !isSame || now - listed_ >= longestUnlisted;
}

// Takes those over who are still there. Both the list and the table are sorted.
void LinuxProcesses::list(std::uint64_t now) {
    const bool isFirst = listed_ == 0;
    if (!proc_.list(pids_)) forks_.reset(); // and is tried again
    listed_ = now;
    std::swap(table_, previous_);
    table_.clear();
    table_.counters.reserve(pids_.size());
    table_.kept.reserve(pids_.size());
    std::size_t old = 0;
    for (const std::int32_t pid : pids_) {
        while (old < previous_.counters.size() && previous_.counters[old].pid < pid) ++old;
        if (old < previous_.counters.size() && previous_.counters[old].pid == pid)
            table_.add(previous_.counters[old], std::move(previous_.kept[old]));
        else
            table_.add({.pid = pid}, Kept{.firstSeen = now, .isSettled = isFirst});
    }
}

// False if the process is gone.
bool LinuxProcesses::update(ProcessCounters& counters, Kept& kept, std::uint64_t now) {
    const std::optional<std::uint64_t> clock = clocks_.cpu(counters.pid);
    if (!clock || !counters.hasUsage || *clock != kept.clock)
        if (!readFiles(counters, kept, clock, now)) return false;
    if (kept.isMemoryDue || now - kept.memoryRead >= quietTime(counters.pid))
        readMemory(counters, kept, now);
    if (!kept.isSettled && now - kept.firstSeen >= settlingTime) settle(counters, kept);
    return true;
}

// Asks anew whose a process is if it was moved to another control group. If it wasn't, the answer
// stands even when whoever started it is gone by now.
void LinuxProcesses::settle(ProcessCounters& counters, Kept& kept) {
    kept.isSettled = true;
    const auto cgroup = proc_.read(counters.pid, "cgroup", buffer_);
    if (!kept.owner || !cgroup || std::hash<std::string_view>{}(*cgroup) == kept.cgroupHash) return;
    kept.owner.reset();
    ++counters.revision;
}

bool LinuxProcesses::readFiles(ProcessCounters& counters, Kept& kept,
                               std::optional<std::uint64_t> clock, std::uint64_t now) {
    const auto text = proc_.read(counters.pid, "stat", buffer_);
    const auto stat = text ? parseStat(*text) : std::nullopt;
    if (!stat && !clock) return false;
    kept.clock = clock.value_or(0);
    if (stat) {
        takeStat(*stat, counters, kept, now);
        counters.hasUsage = true;
        readDisk(counters, kept);
    }
    // Of one whose files can't be opened right now, the clock alone is news.
    counters.cpuTime = clock ? *clock : saturatingProduct(stat->cpuTicks, tickLength());
    return true;
}

void LinuxProcesses::takeStat(const StatLine& stat, ProcessCounters& counters, Kept& kept,
                              std::uint64_t now) {
    const bool isOther = counters.hasUsage && counters.start != stat.start;
    // A program that replaces itself by another takes its name; so do some that only rename
    // themselves, and then nothing is found to have changed.
    const bool isRenamed =
        stat.comm.substr(0, kept.comm.size()) != trimmed(kept.comm) && !stat.isKernelThread;
    if (isOther) {
        kept = Kept{.firstSeen = now, .clock = kept.clock};
        counters = {.pid = counters.pid, .revision = counters.revision};
    } else if (counters.hasUsage && isRenamed) {
        ++counters.revision;
        kept.owner.reset();
        kept.isIORefused = false;
    }
    kept.comm = {};
    const std::string_view comm = stat.comm.substr(0, kept.comm.size());
    std::copy(comm.begin(), comm.end(), kept.comm.begin());
    kept.isKernelThread = stat.isKernelThread;
    kept.parent = stat.parent;
    kept.threads = stat.threads;
    // As long as stat counts as many pages, statm has no news either.
    kept.isMemoryDue |= kept.resident != stat.resident;
    kept.resident = stat.resident;
    counters.start = stat.start;
}

void LinuxProcesses::readMemory(ProcessCounters& counters, Kept& kept, std::uint64_t now) {
    kept.isMemoryDue = false;
    kept.memoryRead = now;
    if (kept.isKernelThread) return; // it has none of its own
    const auto text = proc_.read(counters.pid, "statm", buffer_);
    if (const auto pages = text ? parseOwnPages(*text) : std::nullopt)
        counters.memory = saturatingProduct(*pages, pageSize());
}

void LinuxProcesses::readDisk(ProcessCounters& counters, Kept& kept) {
    if (kept.isIORefused) return;
    const auto text = proc_.read(counters.pid, "io", buffer_);
    const auto bytes = text ? parseDiskBytes(*text) : std::nullopt;
    kept.isIORefused = !text && proc_.wasRefused();
    if (!bytes) return;
    counters.diskRead = bytes->read;
    counters.diskWritten = bytes->written;
}

LinuxProcesses::Kept* LinuxProcesses::find(std::int32_t pid) {
    const auto& counters = table_.counters;
    const auto place = std::lower_bound(
        counters.begin(), counters.end(), pid,
        [](const ProcessCounters& c, std::int32_t value) { return c.pid < value; });
    if (place == counters.end() || place->pid != pid) return nullptr;
    return &table_.kept[static_cast<std::size_t>(place - counters.begin())];
}

std::optional<std::string> LinuxProcesses::path(std::int32_t pid) {
    const Kept* kept = find(pid);
    if (!kept) return std::nullopt;
    return executablePath(proc_, pid, trimmed(kept->comm), kept->isKernelThread);
}

std::optional<AppIdentity> LinuxProcesses::owner(std::int32_t pid, const std::string& path) {
    Kept* kept = find(pid);
    if (!kept) return std::nullopt;
    return ownerOf(pid, *kept, path, 0);
}

AppIdentity LinuxProcesses::ownerOf(std::int32_t pid, Kept& kept, const std::string& path,
                                    int generation) {
    if (kept.owner) return *kept.owner;
    if (!std::exchange(isDesktopFresh_, true)) desktop_->refresh();
    const ProcessOwner owner(proc_, pid, path, kept.isKernelThread);
    kept.cgroupHash = owner.controlGroupHash();
    kept.owner = owner.identity(desktop_->apps(), parentOf(kept, generation), ownCgroup_);
    return *kept.owner;
}

// A parent is as a rule older and known, but after the pids started over it may come later.
std::optional<AppIdentity> LinuxProcesses::parentOf(const Kept& kept, int generation) {
    Kept* parent = kept.parent > 0 ? find(kept.parent) : nullptr;
    if (!parent || generation >= mostGenerations) return std::nullopt;
    if (parent->owner) return parent->owner;
    const std::optional<std::string> parentPath = path(kept.parent);
    if (!parentPath) return std::nullopt;
    return ownerOf(kept.parent, *parent, *parentPath, generation + 1);
}

SystemVocabulary LinuxProcesses::vocabulary() { return linuxVocabulary(); }

} // namespace tavero
