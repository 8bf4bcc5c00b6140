#include "platform/sim/Scenario.h"

namespace tavero {

namespace {

constexpr double minute = 60;
constexpr double hour = 60 * minute;
constexpr double day = 24 * hour;
constexpr double gigabyte = 1024.0 * 1024 * 1024;

// The periods differ from core to core, so that the cores don't breathe together.
Scenario::Cpu efficiencyCore(int index) {
    return {.user = 0.08 + Curve::wave(0.03, 47 + 13 * index) + Curve::wave(0.02, 7 + 3 * index),
            .system = 0.05 + Curve::wave(0.015, 31 + 7 * index)};
}

Scenario::Cpu performanceCore(int index) {
    return {.user = 0.012 + Curve::wave(0.008, 61 + 17 * index),
            .system = 0.006 + Curve::wave(0.004, 53 + 11 * index)};
}

} // namespace

Scenario idleAfternoon() {
    Scenario scenario{.name = "idle afternoon"};
    for (int index = 0; index < 4; ++index) scenario.cpus.push_back(efficiencyCore(index));
    for (int index = 0; index < 4; ++index) scenario.cpus.push_back(performanceCore(index));
    // A page loads every couple of minutes, and a mail search now and then.
    scenario.cpus[4].user += Curve::pulses(0.6, 130, 9, 25);
    scenario.cpus[4].system += Curve::pulses(0.12, 130, 9, 25);
    scenario.cpus[5].user += Curve::pulses(0.45, 130, 5, 27);
    scenario.cpus[6].user += Curve::pulses(0.35, 410, 12, 200);
    scenario.memory = {
        .internal = 5.6 * gigabyte + Curve::wave(0.35 * gigabyte, 11 * minute) +
                    Curve::wave(0.1 * gigabyte, 97),
        .purgeable = 0.3 * gigabyte + Curve::wave(0.1 * gigabyte, 5 * minute),
        .wired = 2.2 * gigabyte + Curve::wave(0.05 * gigabyte, 7 * minute),
        .compressor = 0.8 * gigabyte + Curve::wave(0.1 * gigabyte, 17 * minute),
        .external = 4.5 * gigabyte + Curve::wave(0.4 * gigabyte, 13 * minute),
        .swapUsed = 0,
    };
    // What the page loads, and what mail fetches every ten minutes.
    scenario.disk = {
        .read = 120e3 + Curve::wave(80e3, 41) + Curve::pulses(18e6, 130, 6, 26),
        .written = 200e3 + Curve::wave(150e3, 29) + Curve::pulses(9e6, 130, 4, 30),
    };
    scenario.wifi = {
        .in = 9e3 + Curve::wave(6e3, 37) + Curve::pulses(2.4e6, 130, 8, 25) +
              Curve::pulses(500e3, 600, 20, 90),
        .out = 4e3 + Curve::wave(2e3, 23) + Curve::pulses(160e3, 130, 8, 25),
    };
    scenario.onBattery = Curve::pulses(1, day, 4 * hour, 20 * minute);
    return scenario;
}

Scenario runawayApp() {
    Scenario scenario = idleAfternoon();
    scenario.name = "runaway app";
    scenario.cpus[7].user += Curve::ramp(0.93, minute, minute + 2);
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
    scenario.cpus[4].system += Curve::ramp(0.1, from, to); // the compressor at work
    scenario.disk.read += Curve::pulses(30e6, 20, 6, from) + Curve::ramp(2e6, from, to);
    scenario.disk.written += Curve::ramp(12e6, from + 3 * minute, to);
    return scenario;
}

std::vector<Scenario> scenarios() { return {idleAfternoon(), runawayApp(), memoryPressure()}; }

} // namespace tavero
