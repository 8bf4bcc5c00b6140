#pragma once

#include "platform/sim/Curve.h"

#include <string>
#include <vector>

namespace tavero {

// What happens on the simulated Mac as time passes, told as curves over the seconds since it began.
struct Scenario {
    // Fractions of one CPU; together at most 1 at any time.
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

    std::string name;
    std::vector<Cpu> cpus; // efficiency cores first, as the Mac counts them
    Memory memory;
    Disk disk;
    Network wifi;
    Curve onBattery; // runs on battery while above 0
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
