#pragma once

#include "platform/sim/Scenario.h"
#include "platform/sim/SimState.h"
#include "records/NetworkSnapshot.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tavero {

// Seconds that the simulated Mac ran before its scenario begins.
constexpr double simUptime = 2 * 24 * 60 * 60;
// Of its clock.
constexpr double simTicksPerSecond = 24'000'000;

// The processes of a scenario: who runs at a moment and what each has used. A process can be made
// to end before its time; what it would have used after that, the machine doesn't use either.
class SimTasks {
  public:
    explicit SimTasks(std::vector<Scenario::Process> processes);

    // Whoever runs at `time` and isn't in this list has ended at that moment.
    void endMissing(const std::vector<SimProcess>& listed, double time);

    // Those that run, the youngest first.
    std::vector<SimProcess> running(double time) const;

    // What all of them together have used since the scenario began.
    struct CpuTime {
        double user = 0; // seconds
        double system = 0;
    };
    struct DiskBytes {
        double read = 0;
        double written = 0;
    };
    std::vector<CpuTime> cpuTime(std::size_t cpuCount, double time) const; // one entry a CPU
    DiskBytes diskBytes(double time) const;
    struct NetworkFlow {
        double in = 0; // bytes
        double out = 0;
    };
    NetworkFlow networkFlow(double time) const;
    double gpuTime(double time) const; // seconds

    // Those that run and use the GPU, the youngest first.
    std::vector<SimGPUClient> gpuClients(double time) const;

    // The connections of those that run, opened at `since` or when their process began.
    struct Connection {
        std::int32_t pid;
        std::string name;
        NetworkBytes bytes;
    };
    std::vector<Connection> connections(double since, double time) const;

    // The memory that those would hold now that were made to end, in bytes.
    double freed(double time) const;

  private:
    struct Ending {
        double at;
        double until; // when its life would have ended by itself
    };
    struct Task {
        Scenario::Process process;
        std::vector<Ending> endings;

        bool wasEnded(double time) const;
        bool isRunning(double time) const;
        double used(const Curve& curve, double time) const;
    };

    std::vector<Task> tasks_;
};

} // namespace tavero
