#include "platform/sim/SimTimeline.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

namespace tavero {

namespace {

constexpr double ticksPerSecond = 100;
constexpr double uptime = 2 * 24 * 60 * 60; // seconds before the scenario began
constexpr double userBefore = 0.05;         // shares of each CPU in that time
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

// The kernel's counter is 32 bits wide and wraps.
std::uint32_t ticks(double before, double seconds) {
    return static_cast<std::uint32_t>(
        static_cast<std::uint64_t>(ticksPerSecond * (before * uptime + seconds)));
}

void applyCpus(const std::vector<Scenario::Cpu>& cpus, double elapsed, SimState& state) {
    std::vector<CpuTicks> counters;
    for (const Scenario::Cpu& cpu : cpus) {
        const double user = cpu.user.integral(elapsed);
        const double system = cpu.system.integral(elapsed);
        counters.push_back({.user = ticks(userBefore, user),
                            .system = ticks(systemBefore, system),
                            .idle = ticks(1 - userBefore - systemBefore, elapsed - user - system)});
    }
    state.setTicks(counters);

    // As many tasks run or wait as CPUs are busy.
    const auto load = [&](double seconds) {
        double sum = 0;
        for (const Scenario::Cpu& cpu : cpus)
            sum += cpu.user.mean(elapsed - seconds, elapsed) +
                   cpu.system.mean(elapsed - seconds, elapsed);
        return sum;
    };
    state.loadAverage = {.one = load(60), .five = load(300), .fifteen = load(900)};
}

void applyMemory(const Scenario::Memory& memory, double elapsed, SimState& state) {
    const auto bytes = [&](const Curve& curve) { return std::max(curve.at(elapsed), 0.0); };
    const auto pages = [&](const Curve& curve) {
        return static_cast<std::uint64_t>(bytes(curve)) / simPageSize;
    };
    const double used = bytes(memory.internal) - bytes(memory.purgeable) + bytes(memory.wired) +
                        bytes(memory.compressor);
    const auto freeLevel =
        static_cast<std::int64_t>(100 * std::clamp((installed - used) / installed, 0.0, 1.0));
    const double swapUsed = bytes(memory.swapUsed);
    state.setMemory({
        .pageSize = simPageSize,
        .internal = pages(memory.internal),
        .purgeable = pages(memory.purgeable),
        .wired = pages(memory.wired),
        .compressor = pages(memory.compressor),
        .external = pages(memory.external),
        .swapUsed = static_cast<std::uint64_t>(swapUsed),
        .swapTotal = static_cast<std::uint64_t>(std::ceil(swapUsed / swapFile) * swapFile),
        .total = simMemory,
        .pressureLevel = freeLevel < criticalLevel  ? 4
                         : freeLevel < warningLevel ? 2
                                                    : 1,
        .freeLevel = freeLevel,
    });
}

std::uint64_t counter(std::uint64_t before, const Curve& rate, double elapsed) {
    return before + static_cast<std::uint64_t>(rate.integral(elapsed));
}

} // namespace

SimTimeline::SimTimeline(Scenario scenario, std::function<Date()> now)
    : scenario_(std::move(scenario)), now_(std::move(now)), start_(now_()) {
    move(0);
}

SimState& SimTimeline::now() {
    if (!scenario_) return state_;
    // A wall clock may step back; counters don't.
    const double elapsed = std::max(secondsBetween(start_, now_()), elapsed_);
    if (elapsed != elapsed_) move(elapsed);
    return state_;
}

void SimTimeline::move(double elapsed) {
    elapsed_ = elapsed;
    applyCpus(scenario_->cpus, elapsed, state_);
    applyMemory(scenario_->memory, elapsed, state_);
    state_.setDisks(
        {{.bytesRead = counter(bytesReadBefore, scenario_->disk.read, elapsed),
          .bytesWritten = counter(bytesWrittenBefore, scenario_->disk.written, elapsed)}});
    state_.setInterfaces(
        {{.index = 1, .name = "lo0", .counters = {.bytesIn = 51'200, .bytesOut = 51'200}},
         {.index = 4,
          .name = "en0",
          .counters = {.bytesIn = counter(bytesInBefore, scenario_->wifi.in, elapsed),
                       .bytesOut = counter(bytesOutBefore, scenario_->wifi.out, elapsed)}}});
    state_.onExternalPower = !(scenario_->onBattery.at(elapsed) > 0);
}

} // namespace tavero
