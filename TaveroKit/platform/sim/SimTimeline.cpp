#include "platform/sim/SimTimeline.h"

#include "platform/sim/SimAudioScript.h"
#include "platform/sim/SimEnergy.h"

#include <algorithm>
#include <chrono>
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

// Seconds that a figure of the hardware looks back.
constexpr double shortly = 2;
constexpr double minute = 60;

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
    for (const Scenario::Bluetooth& device : scenario_->bluetooth)
        state_.bluetooth.devices.push_back({.name = device.name,
                                            .kind = device.kind,
                                            .address = device.address,
                                            .isNearby = false});
    state_.audio = simAudio();
    state_.setBootTime(start_ - std::chrono::seconds(static_cast<std::int64_t>(simUptime)));
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
    const Work now = work(elapsed);
    const Work minuteAgo = work(elapsed - minute);
    moveCpus(now, minuteAgo);
    moveMemory();
    moveDevices();
    moveNetwork();
    state_.processes = tasks_.running(elapsed);
    state_.absoluteTime = static_cast<std::uint64_t>(simTicksPerSecond * (simUptime + elapsed));
    moveHardware(now, minuteAgo);
    moveBluetooth();
    moveAudio(state_, *scenario_, elapsed_);
}

// What the machine has done since the scenario began.
SimTimeline::Work SimTimeline::work(double time) const {
    Work work{.cpus = cpuTime(time), .gpu = tasks_.gpuTime(time)};
    work.joules = simJoules(work.cpus, work.gpu, time);
    return work;
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

void SimTimeline::moveCpus(const Work& now, const Work& minuteAgo) {
    std::vector<CpuTicks> counters;
    counters.reserve(now.cpus.size());
    for (const auto& [user, system] : now.cpus)
        counters.push_back(
            {.user = ticks(userBefore, user),
             .system = ticks(systemBefore, system),
             .idle = ticks(1 - userBefore - systemBefore, elapsed_ - user - system)});
    state_.setTicks(counters);

    // As many tasks run or wait as CPUs are busy.
    const auto load = [&](double seconds, const std::vector<SimTasks::CpuTime>& before) {
        return (sum(now.cpus) - sum(before)) / seconds;
    };
    const auto loadSince = [&](double seconds) {
        return load(seconds, cpuTime(elapsed_ - seconds));
    };
    state_.loadAverage = {.one = load(minute, minuteAgo.cpus),
                          .five = loadSince(5 * minute),
                          .fifteen = loadSince(15 * minute)};
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
    state_.setDisks(
        {{.bytesRead = counter(bytesReadBefore, disk.read, elapsed_, used.read),
          .bytesWritten = counter(bytesWrittenBefore, disk.written, elapsed_, used.written)}});
}

// What has gone over the network since the scenario began, had there been no outage.
SimTasks::NetworkFlow SimTimeline::networkFlow(double time) const {
    const auto [in, out] = tasks_.networkFlow(time);
    return {.in = in + scenario_->network.in.integral(time),
            .out = out + scenario_->network.out.integral(time)};
}

void SimTimeline::moveNetwork() {
    const double outageBegins = scenario_->outage.begins;
    const double outageEnds = outageBegins + scenario_->outage.lasts;
    const bool isWireless = elapsed_ < outageBegins;
    const bool isWired = elapsed_ >= outageEnds;

    const auto [in, out] = networkFlow(std::min(elapsed_, outageBegins));
    std::vector<SimInterface> interfaces{
        {.index = 1, .name = "lo0", .counters = {.bytesIn = 51'200, .bytesOut = 51'200}},
        {.index = 4,
         .name = "en0",
         .counters = {.bytesIn = bytesInBefore + static_cast<std::uint64_t>(in),
                      .bytesOut = bytesOutBefore + static_cast<std::uint64_t>(out)}}};
    if (isWired) {
        const SimTasks::NetworkFlow now = networkFlow(elapsed_);
        const SimTasks::NetworkFlow before = networkFlow(outageEnds);
        interfaces.push_back(
            {.index = 11,
             .name = "en7",
             .counters = {.bytesIn = static_cast<std::uint64_t>(now.in - before.in),
                          .bytesOut = static_cast<std::uint64_t>(now.out - before.out)}});
    }
    state_.setInterfaces(interfaces);

    SimConnections& connections = state_.connections;
    connections.path = {
        .isSatisfied = isWireless || isWired, .usesWiFi = isWireless, .usesWiredEthernet = isWired};
    connections.setSignal(isWireless ? std::lround(scenario_->signal.at(elapsed_)) : 0);
    connections.open.clear();
    if (!connections.path.isSatisfied) return;
    // Those of before the outage are not those of after it.
    constexpr std::uint64_t afterOutage = 1ull << 32;
    for (const auto& [pid, name, bytes] :
         tasks_.connections(isWired ? outageEnds : -simUptime, elapsed_))
        connections.set(static_cast<std::uint64_t>(pid) + (isWired ? afterOutage : 0), pid, name,
                        bytes);
}

void SimTimeline::watchPath(std::function<void(const PathState&)> changed) {
    const std::lock_guard lock(mutex_);
    const PathState path = now().connections.path;
    changed(path);
    pathWatchers_.push_back({std::move(changed), path});
}

void SimTimeline::tellPath(const PathState& path) {
    for (PathWatcher& watcher : pathWatchers_)
        if (std::exchange(watcher.told, path) != path) watcher.changed(path);
}

void SimTimeline::moveHardware(const Work& now, const Work& minuteAgo) {
    const Work before = work(elapsed_ - shortly);
    const Scenario::Battery& battery = scenario_->battery;
    SimLoad load{
        .watts = (now.joules - before.joules) / shortly,
        .warmth = (now.joules - minuteAgo.joules) / minute,
        .gpu = (now.gpu - before.gpu) / shortly,
        .onExternalPower = !battery.unplugged.isAlive(elapsed_),
        .charge = simCharge(
            battery, elapsed_,
            [&](double time) { return time == elapsed_ ? now.joules : work(time).joules; }),
        .gpuClients = tasks_.gpuClients(elapsed_),
    };
    if (load.onExternalPower && load.charge < battery.charge) load.chargingWatts = simChargingWatts;
    for (std::size_t cpu = 0; cpu < now.cpus.size(); ++cpu)
        load.cores.push_back((now.cpus[cpu].user + now.cpus[cpu].system - before.cpus[cpu].user -
                              before.cpus[cpu].system) /
                             shortly);
    state_.setHardware(load);
}

// Whether a device that is near is connected is up to its user.
void SimTimeline::moveBluetooth() {
    for (SimBluetoothDevice& device : state_.bluetooth.devices) {
        const std::vector<Scenario::Bluetooth>& scripts = scenario_->bluetooth;
        const auto script =
            std::find_if(scripts.begin(), scripts.end(), [&](const auto& candidate) {
                return candidate.address == device.address;
            });
        if (script == scripts.end()) continue;
        device.setNearby(script->near.isAlive(elapsed_));
        device.rawRSSI = std::lround(script->signal.at(elapsed_));
        device.batteries.clear();
        for (const auto& [key, percent] : script->batteries)
            device.batteries.push_back(
                {.key = key, .percent = std::lround(std::clamp(percent.at(elapsed_), 0.0, 100.0))});
    }
}

} // namespace tavero
