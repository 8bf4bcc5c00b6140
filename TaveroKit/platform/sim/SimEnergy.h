#pragma once

#include "platform/sim/Scenario.h"
#include "platform/sim/SimTasks.h"

#include <functional>
#include <vector>

namespace tavero {

// The watts that go into the simulated Mac's battery while it charges.
constexpr double simChargingWatts = 38;

// What the simulated Mac has used since its scenario began, given what its CPUs and its GPU have
// worked in this time.
double simJoules(const std::vector<SimTasks::CpuTime>& cpus, double gpuSeconds, double seconds);

// The charge of its battery at a moment, as a fraction. `joulesAt` tells what the machine has used
// up to any moment; so the charge is known without stepping through the time before.
double simCharge(const Scenario::Battery& battery, double time,
                 const std::function<double(double)>& joulesAt);

} // namespace tavero
