#pragma once

#include "platform/BundleSource.h"
#include "platform/sim/Curve.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
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

        // When the life that `time` falls in began, or the first one that will.
        double birth(double time) const;
        bool isAlive(double time) const;
    };
    // What a process plays, to the default output.
    struct Sound {
        Curve loudness; // the amplitude of its tone, at most 1
        Life plays{.begins = Life::endless};
        bool isProtected = false; // from being captured
    };
    // Its CPU, disk, network and GPU use are part of the machine's, and 0 while it doesn't run.
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
        std::optional<Network> network; // absent if it has no connection
        Curve gpu;                      // the share of the GPU's time
        std::optional<Sound> sound;     // absent if it never touches the audio system
        Life life;
    };
    struct Battery {
        Life unplugged{.begins = Life::endless};
        double charge = 1; // when it is unplugged, each time; what it is charged to again
    };
    // A paired Bluetooth device. It connects by itself whenever it is near.
    struct Bluetooth {
        struct Battery {
            std::string key; // as the profiler calls it
            Curve percent;
        };
        std::string name;
        std::string kind;
        std::string address;
        std::vector<Battery> batteries;
        Curve signal; // dBm
        Life near{};
        bool isOutput = false;       // sound can go to it
        bool becomesDefault = false; // and does so as soon as it connects
    };

    std::string name;
    // Efficiency cores first, as the Mac counts them. What the kernel does beside the processes.
    std::vector<Cpu> cpus;
    Memory memory;
    Disk disk; // likewise beside the processes
    Network network;
    Curve signal;                         // of the Wi-Fi link, dBm
    Life outage{.begins = Life::endless}; // the Wi-Fi is gone; after that a cable serves instead
    std::vector<Process> processes;       // those that began first come first
    std::map<std::string, BundleNames> bundles; // by path
    Battery battery;
    std::vector<Bluetooth> bluetooth;
};

// A Mac that somebody reads mail on: mostly idle, a burst now and then, unplugged after a while.
Scenario idleAfternoon();
// The same, and after a minute one app keeps a core busy and does not stop.
Scenario runawayApp();
// The same, and over eight minutes an app takes more memory than there is.
Scenario memoryPressure();
// The same, unplugged, and after a while an app works on a film at the battery's cost.
Scenario onBattery();

// The same, and after a minute the Wi-Fi is gone; four minutes later somebody plugs a cable in.
Scenario offline();

// The same, but the earbuds are nearly empty: after a while they go back into their case, which
// charges them.
Scenario earbudsRunningLow();

// All of them.
std::vector<Scenario> scenarios();

} // namespace tavero
