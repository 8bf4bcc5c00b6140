#pragma once

#include "platform/sim/Scenario.h"
#include "platform/sim/SimState.h"
#include "platform/sim/SimTasks.h"
#include "records/Date.h"

#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace tavero {

// The simulated Mac's state, moved by its scenario to the moment of each read. Without a scenario
// it stays as it is set.
class SimTimeline {
  public:
    SimTimeline() = default;
    // The scenario begins now.
    SimTimeline(Scenario scenario, std::function<Date()> now);

    // What a scenario tells is written anew whenever time has passed; the rest stays as it is set.
    // A process that is missing from the list by then has ended. For whoever sets it, before the
    // machine is read from another thread.
    SimState& now();

    // What `read` answers of the state of this moment. From any thread.
    template <typename Read>
    auto read(Read read) {
        const std::lock_guard lock(mutex_);
        SimState& state = now();
        tellPath(state.connections.path);
        return read(state);
    }

    // Calls `changed` with the path of this moment, and then with every other that a read finds.
    // It must not read. From any thread.
    void watchPath(std::function<void(const PathState&)> changed);

    // SimState::quit() at this moment. From any thread.
    void quit(const std::string& bundlePath) {
        const std::lock_guard lock(mutex_);
        now().quit(bundlePath);
    }

  private:
    struct Work {
        std::vector<SimTasks::CpuTime> cpus;
        double gpu = 0; // seconds
        double joules = 0;
    };
    struct PathWatcher {
        std::function<void(const PathState&)> changed;
        PathState told;
    };

    void move(double elapsed);
    std::vector<SimTasks::CpuTime> cpuTime(double time) const;
    Work work(double time) const;
    void moveCpus(const Work& now, const Work& minuteAgo);
    void moveMemory();
    void moveDevices();
    void moveNetwork();
    SimTasks::NetworkFlow networkFlow(double time) const;
    void tellPath(const PathState& path);
    void moveHardware(const Work& now, const Work& minuteAgo);
    void moveBluetooth();

    std::mutex mutex_;
    std::vector<PathWatcher> pathWatchers_;

    SimState state_ = simLaptop();
    std::optional<Scenario> scenario_;
    SimTasks tasks_{{}};
    std::function<Date()> now_;
    Date start_{};
    double elapsed_ = 0; // seconds, at the last move
};

} // namespace tavero
