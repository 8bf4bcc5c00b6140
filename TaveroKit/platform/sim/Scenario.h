#pragma once

#include "platform/BundleSource.h"
#include "platform/sim/Curve.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <string>
#include <vector>

namespace tavero {

// What happens on the simulated Mac as time passes, told as curves over the seconds since it began.
struct Scenario {
    // Fractions of one CPU; with the processes on it at most 1 at any time.
    struct Cpu {
        Curve user;
        Curve system;
    };
    // Bytes.
    struct Memory {
        Curve internal; // of apps, `purgeable` included
        Curve purgeable;
        Curve wired;
        Curve compressor;
        Curve external; // of files
        Curve swapUsed;
    };

    // Bytes a second.
    struct Disk {
        Curve read;
        Curve written;
    };
    struct Network {
        Curve in;
        Curve out;
    };

    // When a process runs, in seconds.
    struct Life {
        static constexpr double endless = std::numeric_limits<double>::infinity();

        double begins = 0;
        double lasts = endless;
        double every = endless; // it begins again after this time, under the same pid
    };
    // Its CPU and disk use are part of the machine's, and 0 while it doesn't run.
    struct Process {
        std::int32_t pid = 0;
        std::string path;       // empty if the system doesn't tell it
        bool isRefused = false; // another user's: the system doesn't tell its usage
        std::int32_t threads = 1;
        std::size_t core = 0; // the CPU that it runs on
        Curve cpu;            // cores
        double system = 0.25; // the share of `cpu` that the kernel spends for it
        Curve memory;         // bytes
        Disk disk;
        Life life;
    };

    std::string name;
    // Efficiency cores first, as the Mac counts them. What the kernel does beside the processes.
    std::vector<Cpu> cpus;
    Memory memory;
    Disk disk; // likewise beside the processes
    Network wifi;
    std::vector<Process> processes;             // those that began first come first
    std::map<std::string, BundleNames> bundles; // by path
    Curve onBattery;                            // runs on battery while above 0
};

// A Mac that somebody reads mail on: mostly idle, a burst now and then, unplugged after a while.
Scenario idleAfternoon();
// The same, and after a minute one app keeps a core busy and does not stop.
Scenario runawayApp();
// The same, and over eight minutes an app takes more memory than there is.
Scenario memoryPressure();

// All of them.
std::vector<Scenario> scenarios();

} // namespace tavero
