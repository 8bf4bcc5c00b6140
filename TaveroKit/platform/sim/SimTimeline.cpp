#include "platform/sim/SimTimeline.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <utility>

namespace tavero {

namespace {

constexpr double ticksPerSecond = 100;
constexpr double userBefore = 0.05; // shares of each CPU before the scenario began
constexpr double systemBefore = 0.03;

constexpr std::uint64_t bytesReadBefore = 412'000'000'000;
constexpr std::uint64_t bytesWrittenBefore = 298'000'000'000;
constexpr std::uint64_t bytesInBefore = 6'300'000'000; // more than 32 bits hold
constexpr std::uint64_t bytesOutBefore = 840'000'000;

constexpr double installed = static_cast<double>(simMemory);
constexpr double swapFile = 1024.0 * 1024 * 1024;
// Below these percentages of free memory the kernel warns, and then kills.
constexpr std::int64_t warningLevel = 30;
constexpr std::int64_t criticalLevel = 18;
constexpr double compression = 2; // bytes that the compressor holds in one

// The kernel's counter is 32 bits wide and wraps.
std::uint32_t ticks(double before, double seconds) {
    return static_cast<std::uint32_t>(
        static_cast<std::uint64_t>(ticksPerSecond * (before * simUptime + seconds)));
}

double sum(const std::vector<SimTasks::CpuTime>& cpus) {
    return std::accumulate(cpus.begin(), cpus.end(), 0.0,
                           [](double sum, const auto& cpu) { return sum + cpu.user + cpu.system; });
}

std::uint64_t counter(std::uint64_t before, const Curve& rate, double elapsed, double more = 0) {
    return before + static_cast<std::uint64_t>(rate.integral(elapsed) + more);
}

} // namespace

SimTimeline::SimTimeline(Scenario scenario, std::function<Date()> now)
    : scenario_(std::move(scenario)), tasks_(scenario_->processes), now_(std::move(now)),
      start_(now_()) {
    for (const auto& [path, names] : scenario_->bundles) state_.setBundle(path, names);
    move(0);
}

SimState& SimTimeline::now() {
    if (!scenario_) return state_;
    // A wall clock may step back; counters don't. Nothing changes from one tick to the next, so
    // that all calls of one pass tell of the same moment.
    const double passed = secondsBetween(start_, now_());
    const double elapsed = std::max(std::floor(passed * ticksPerSecond) / ticksPerSecond, elapsed_);
    if (elapsed != elapsed_) {
        tasks_.endMissing(state_.processes, elapsed_);
        move(elapsed);
    }
    return state_;
}

void SimTimeline::move(double elapsed) {
    elapsed_ = elapsed;
    moveCpus();
    moveMemory();
    moveDevices();
    state_.processes = tasks_.running(elapsed);
    state_.absoluteTime = static_cast<std::uint64_t>(simTicksPerSecond * (simUptime + elapsed));
    state_.onExternalPower = !(scenario_->onBattery.at(elapsed) > 0);
}

// What each CPU has worked since the scenario began.
std::vector<SimTasks::CpuTime> SimTimeline::cpuTime(double time) const {
    const std::vector<Scenario::Cpu>& cpus = scenario_->cpus;
    std::vector<SimTasks::CpuTime> worked = tasks_.cpuTime(cpus.size(), time);
    for (std::size_t cpu = 0; cpu < cpus.size(); ++cpu) {
        worked[cpu].user += cpus[cpu].user.integral(time);
        worked[cpu].system += cpus[cpu].system.integral(time);
    }
    return worked;
}

void SimTimeline::moveCpus() {
    const std::vector<SimTasks::CpuTime> worked = cpuTime(elapsed_);
    std::vector<CpuTicks> counters;
    counters.reserve(worked.size());
    for (const auto& [user, system] : worked)
        counters.push_back(
            {.user = ticks(userBefore, user),
             .system = ticks(systemBefore, system),
             .idle = ticks(1 - userBefore - systemBefore, elapsed_ - user - system)});
    state_.setTicks(counters);

    // As many tasks run or wait as CPUs are busy.
    const auto load = [&](double seconds) {
        return (sum(worked) - sum(cpuTime(elapsed_ - seconds))) / seconds;
    };
    state_.loadAverage = {.one = load(60), .five = load(300), .fifteen = load(900)};
}

void SimTimeline::moveMemory() {
    const Scenario::Memory& memory = scenario_->memory;
    const auto bytes = [&](const Curve& curve) { return std::max(curve.at(elapsed_), 0.0); };
    // What a process that was made to end held is free again, in all places in proportion.
    const double purgeable = bytes(memory.purgeable);
    const double resident = std::max(bytes(memory.internal) - purgeable, 0.0);
    const double held =
        resident + compression * (bytes(memory.compressor) + bytes(memory.swapUsed));
    const double kept = held > 0 ? std::max(1 - tasks_.freed(elapsed_) / held, 0.0) : 1;
    const double internal = purgeable + kept * resident;
    const double compressor = kept * bytes(memory.compressor);
    const double swapUsed = kept * bytes(memory.swapUsed);
    const double wired = bytes(memory.wired);

    const double used = internal - purgeable + wired + compressor;
    const auto freeLevel =
        static_cast<std::int64_t>(100 * std::clamp((installed - used) / installed, 0.0, 1.0));
    const auto pages = [](double amount) {
        return static_cast<std::uint64_t>(amount) / simPageSize;
    };
    state_.setMemory({
        .pageSize = simPageSize,
        .internal = pages(internal),
        .purgeable = pages(purgeable),
        .wired = pages(wired),
        .compressor = pages(compressor),
        .external = pages(bytes(memory.external)),
        .swapUsed = static_cast<std::uint64_t>(swapUsed),
        .swapTotal = static_cast<std::uint64_t>(std::ceil(swapUsed / swapFile) * swapFile),
        .total = simMemory,
        .pressureLevel = freeLevel < criticalLevel  ? 4
                         : freeLevel < warningLevel ? 2
                                                    : 1,
        .freeLevel = freeLevel,
    });
}

void SimTimeline::moveDevices() {
    const SimTasks::DiskBytes used = tasks_.diskBytes(elapsed_);
    const Scenario::Disk& disk = scenario_->disk;
    const Scenario::Network& wifi = scenario_->wifi;
    state_.setDisks(
        {{.bytesRead = counter(bytesReadBefore, disk.read, elapsed_, used.read),
          .bytesWritten = counter(bytesWrittenBefore, disk.written, elapsed_, used.written)}});
    state_.setInterfaces(
        {{.index = 1, .name = "lo0", .counters = {.bytesIn = 51'200, .bytesOut = 51'200}},
         {.index = 4,
          .name = "en0",
          .counters = {.bytesIn = counter(bytesInBefore, wifi.in, elapsed_),
                       .bytesOut = counter(bytesOutBefore, wifi.out, elapsed_)}}});
}

} // namespace tavero
