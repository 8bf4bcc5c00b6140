#include "window/test/TestMachine.h"

#include <filesystem>

namespace tavero {

CPUSnapshot TestMachine::quietCpu() {
    return {.user = 0.09,
            .system = 0.03,
            .idle = 0.88,
            .perCore = {0.31, 0.22, 0.17, 0.09, 0.05, 0.04, 0.02, 0.01},
            .loadAverage = {.one = 1.42, .five = 1.2, .fifteen = 1.1},
            .performanceCores = 4,
            .efficiencyCores = 4};
}

MemorySnapshot TestMachine::halfFullMemory() {
    constexpr std::uint64_t mebibyte = std::uint64_t{1} << 20;
    return {.total = 16384 * mebibyte,
            .app = 5100 * mebibyte,
            .wired = 1900 * mebibyte,
            .compressed = 800 * mebibyte,
            .cached = 4300 * mebibyte,
            .pressure = MemoryPressure::normal};
}

ProcessSample TestMachine::app(const std::string& name, double cpu, std::uint64_t memory) {
    return {.name = name,
            .path = "/Applications/" + name + ".app/" + name,
            .cpu = cpu,
            .memory = memory << 20,
            .hasUsage = true,
            .app = {AppIdentity::Kind::app, "/Applications/" + name + ".app"}};
}

Monitor& TestMachine::start() {
    monitor.emplace(readers(), nullptr, time.worker(), time, settings, services);
    monitor->start();
    return *monitor;
}

Readers TestMachine::readers() {
    Readers readers;
    readers.cpu = [this] {
        passes += wasFull_ ? 'F' : 'l'; // read on every pass, after the processes of a full one
        wasFull_ = false;
        return cpu;
    };
    readers.processes = [this](bool) -> std::span<const ProcessSample> {
        wasFull_ = true;
        return processes;
    };
    readers.unusualActivity = [this](std::span<const ProcessSample>) { return systemActivity; };
    readers.displayName = [](const AppIdentity& app) {
        return app.kind == AppIdentity::Kind::app ? std::filesystem::path(app.id).stem().string()
                                                  : app.id;
    };
    readers.memory = [this] { return memory; };
    if (gpu) readers.gpu = [this] { return gpu; };
    if (battery) readers.battery = [this] { return battery; };
    if (disk) readers.disk = [this](bool) { return *disk; };
    if (network) readers.network = [this] { return network; };
    return readers;
}

} // namespace tavero
