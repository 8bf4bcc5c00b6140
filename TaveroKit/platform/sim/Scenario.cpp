#include "platform/sim/Scenario.h"

#include "platform/sim/IdleProcesses.h"

#include <algorithm>
#include <string_view>

namespace tavero {

namespace {

constexpr double minute = 60;
constexpr double hour = 60 * minute;
constexpr double day = 24 * hour;
constexpr double gigabyte = 1024.0 * 1024 * 1024;

// The kernel's own work. The periods differ from core to core, so that the cores don't breathe
// together.
Scenario::Cpu efficiencyCore(int index) {
    return {.system = 0.03 + Curve::wave(0.01, 31 + 7 * index)};
}

Scenario::Cpu performanceCore(int index) {
    return {.system = 0.003 + Curve::wave(0.002, 53 + 11 * index)};
}

Scenario::Process& process(Scenario& scenario, std::string_view fileName) {
    return *std::find_if(
        scenario.processes.begin(), scenario.processes.end(),
        [&](const Scenario::Process& process) { return process.path.ends_with(fileName); });
}

const std::string videoEditor = "/Applications/Fieldcut.app";

// Holds ever more pictures in memory.
Scenario::Process videoExport(double begins, const Curve& memory) {
    return {.pid = 5307,
            .path = videoEditor + "/Contents/MacOS/Fieldcut",
            .threads = 27,
            .core = 6,
            .cpu = Curve::ramp(0.3, begins, begins),
            .memory = memory,
            .disk = {.read = Curve::ramp(6e6, begins, begins),
                     .written = Curve::ramp(1e6, begins, begins)},
            .life = {.begins = begins}};
}

} // namespace

Scenario idleAfternoon() {
    Scenario scenario{.name = "idle afternoon"};
    for (int index = 0; index < 4; ++index) scenario.cpus.push_back(efficiencyCore(index));
    for (int index = 0; index < 4; ++index) scenario.cpus.push_back(performanceCore(index));
    scenario.memory = {
        .internal = 5.6 * gigabyte + Curve::wave(0.35 * gigabyte, 11 * minute) +
                    Curve::wave(0.1 * gigabyte, 97),
        .purgeable = 0.3 * gigabyte + Curve::wave(0.1 * gigabyte, 5 * minute),
        .wired = 2.2 * gigabyte + Curve::wave(0.05 * gigabyte, 7 * minute),
        .compressor = 0.8 * gigabyte + Curve::wave(0.1 * gigabyte, 17 * minute),
        .external = 4.5 * gigabyte + Curve::wave(0.4 * gigabyte, 13 * minute),
        .swapUsed = 0,
    };
    // Files that are read ahead, and the journal.
    scenario.disk = {
        .read = 30e3 + Curve::wave(20e3, 41),
        .written = 50e3 + Curve::wave(40e3, 29),
    };
    // What the pages bring, and what mail fetches every ten minutes.
    scenario.wifi = {
        .in = 9e3 + Curve::wave(6e3, 37) + Curve::pulses(2.4e6, 130, 8, 25) +
              Curve::pulses(500e3, 600, 20, 90),
        .out = 4e3 + Curve::wave(2e3, 23) + Curve::pulses(160e3, 130, 8, 25),
    };
    scenario.processes = idleProcesses();
    scenario.bundles = idleBundles();
    scenario.onBattery = Curve::pulses(1, day, 4 * hour, 20 * minute);
    return scenario;
}

Scenario runawayApp() {
    Scenario scenario = idleAfternoon();
    scenario.name = "runaway app";
    process(scenario, "/extension-host").cpu += Curve::ramp(0.96, minute, minute + 2);
    return scenario;
}

Scenario memoryPressure() {
    constexpr double from = minute;
    constexpr double to = from + 8 * minute;
    Scenario scenario = idleAfternoon();
    scenario.name = "memory pressure";
    scenario.memory.internal += Curve::ramp(2.7 * gigabyte, from, to);
    scenario.memory.compressor += Curve::ramp(3.0 * gigabyte, from, to);
    scenario.memory.external += Curve::ramp(-3.9 * gigabyte, from, to);
    scenario.memory.swapUsed += Curve::ramp(4.2 * gigabyte, from + 3 * minute, to + 2 * minute);
    // What is compressed or swapped out takes half of its room.
    scenario.processes.push_back(
        videoExport(from, 0.3 * gigabyte + Curve::ramp((2.7 + 2 * 3.0) * gigabyte, from, to) +
                              Curve::ramp(2 * 4.2 * gigabyte, from + 3 * minute, to + 2 * minute)));
    scenario.bundles[videoEditor] = {.displayName = "Fieldcut", .name = "Fieldcut"};
    scenario.cpus[4].system += Curve::ramp(0.1, from, to); // the compressor at work
    scenario.disk.read += Curve::pulses(30e6, 20, 6, from) + Curve::ramp(2e6, from, to);
    scenario.disk.written += Curve::ramp(12e6, from + 3 * minute, to);
    return scenario;
}

std::vector<Scenario> scenarios() { return {idleAfternoon(), runawayApp(), memoryPressure()}; }

} // namespace tavero
