#pragma once

#include "MonitorEngine.h"
#include "Readers.h"
#include "components/Theme.h"
#include "desktop/Appearance.h"
#include "monitor/Monitor.h"
#include "settings/Settings.h"
#include "time/VirtualTime.h"

#include <QTemporaryDir>

#include <chrono>
#include <optional>
#include <string>

namespace tavero {

// Everything a surface stands on, in virtual time, over a machine that has what is set here. What
// is absent when the monitor starts is a reader that this machine lacks.
struct TestMachine {
    std::optional<CPUSnapshot> cpu;
    std::optional<MemorySnapshot> memory;
    std::optional<GPUSnapshot> gpu;
    std::optional<BatterySnapshot> battery;
    std::optional<DiskSnapshot> disk;
    std::optional<NetworkSnapshot> network;
    std::vector<ProcessSample> processes;
    std::optional<SystemActivity> systemActivity;
    MonitorServices services;

    std::string passes; // taken so far: "F" a full one, "l" a light one

    QTemporaryDir directory;
    Settings settings{directory.filePath("Tavero.conf")};
    Appearance appearance;
    Theme theme{settings, appearance};
    VirtualTime time;
    std::optional<Monitor> monitor;

    // A laptop of everyday size.
    static CPUSnapshot quietCpu();
    static MemorySnapshot halfFullMemory();
    // An app of one process, at "/Applications/NAME.app". `cpu` in cores, `memory` in MB.
    static ProcessSample app(const std::string& name, double cpu, std::uint64_t memory);

    Monitor& start();
    // Lets so many seconds pass.
    void run(std::chrono::seconds duration) { time.advance(duration); }

  private:
    Readers readers();

    bool wasFull_ = false;
};

} // namespace tavero
