#include "platform/sim/Scenario.h"

#include "platform/sim/IdleProcesses.h"

#include <algorithm>
#include <cmath>
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
            .gpu = Curve::ramp(0.2, begins, begins),
            .life = {.begins = begins}};
}

// The process of the same app that writes the film.
Scenario::Process filmEncoder(double begins) {
    return {.pid = 5311,
            .path =
                videoEditor + "/Contents/XPCServices/FilmEncoder.xpc/Contents/MacOS/FilmEncoder",
            .threads = 9,
            .core = 7,
            .cpu = Curve::ramp(0.9, begins, begins),
            .system = 0.1,
            .memory = 0.3 * gigabyte,
            .disk = {.read = Curve::ramp(1e6, begins, begins),
                     .written = Curve::ramp(3e6, begins, begins)},
            .gpu = Curve::ramp(0.3, begins, begins),
            .life = {.begins = begins}};
}

// One of the two is always a little lower.
Scenario::Bluetooth earbuds(const Curve& percent) {
    return {.name = "Anna’s Earbuds",
            .kind = "Headphones",
            .address = "0C:11:22:33:44:55",
            .batteries = {{"device_batteryLevelLeft", percent + 3},
                          {"device_batteryLevelRight", percent},
                          {"device_batteryLevelCase", 64}},
            .signal = -47 + Curve::wave(6, 47),
            .isOutput = true};
}

Scenario::Bluetooth keyboard() {
    return {.name = "Desk Keyboard",
            .kind = "Keyboard",
            .address = "0C:11:22:33:44:66",
            .batteries = {{"device_batteryLevelMain", 86}},
            .signal = -58 + Curve::wave(2, 71)};
}

// In another room, and off.
Scenario::Bluetooth kitchenSpeaker() {
    return {.name = "Kitchen Speaker",
            .kind = "Speaker",
            .address = "0C:11:22:33:44:77",
            .near = {.begins = Scenario::Life::endless},
            .isOutput = true};
}

} // namespace

double Scenario::Life::birth(double time) const {
    const double livesBefore = std::floor((time - begins) / every);
    return livesBefore > 0 ? begins + livesBefore * every : begins;
}

bool Scenario::Life::isAlive(double time) const {
    const double born = birth(time);
    return born <= time && time < born + lasts;
}

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
    // The frames around what the apps send, and what the neighbours call out.
    scenario.network = {.in = 1.5e3 + Curve::wave(1e3, 37), .out = 0.5e3 + Curve::wave(0.3e3, 23)};
    scenario.signal = -53 + Curve::wave(3, 83) + Curve::wave(2, 19);
    scenario.processes = idleProcesses();
    scenario.bundles = idleBundles();
    process(scenario, "/WindowServer").gpu =
        0.025 + Curve::wave(0.01, 19) + Curve::pulses(0.08, 130, 9, 25);
    scenario.battery.unplugged = {.begins = 20 * minute, .lasts = 4 * hour, .every = day};
    scenario.bluetooth = {earbuds(78 + Curve::ramp(-50, 0, 5 * hour)), keyboard(),
                          kitchenSpeaker()};
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

Scenario onBattery() {
    constexpr double begins = minute;
    Scenario scenario = idleAfternoon();
    scenario.name = "on battery";
    scenario.battery = {.unplugged = {.begins = 0}, .charge = 0.42};
    scenario.processes.push_back(videoExport(begins, 0.5 * gigabyte));
    scenario.processes.push_back(filmEncoder(begins));
    scenario.bundles[videoEditor] = {.displayName = "Fieldcut", .name = "Fieldcut"};
    scenario.memory.internal += Curve::ramp(0.8 * gigabyte, begins, begins);
    return scenario;
}

Scenario offline() {
    Scenario scenario = idleAfternoon();
    scenario.name = "offline";
    scenario.outage = {.begins = minute, .lasts = 4 * minute};
    return scenario;
}

Scenario earbudsRunningLow() {
    constexpr double backInCase = 36 * minute;
    constexpr double charged = backInCase + 45 * minute;
    Scenario scenario = idleAfternoon();
    scenario.name = "earbuds running low";
    // They are worn again at once, and the report has no level while they are away.
    Scenario::Bluetooth worn =
        earbuds(22 + Curve::ramp(-18, 0, backInCase) + Curve::ramp(93, backInCase, charged) +
                Curve::ramp(-40, charged, charged + 3 * hour));
    worn.near = {.begins = charged - day, .lasts = day - (charged - backInCase), .every = day};
    worn.becomesDefault = true;
    scenario.bluetooth.front() = worn;
    return scenario;
}

std::vector<Scenario> scenarios() {
    return {idleAfternoon(), runawayApp(), memoryPressure(),
            onBattery(),     offline(),    earbudsRunningLow()};
}

} // namespace tavero
