#include "platform/sim/SimEnergy.h"

#include "platform/sim/SimHardware.h"

#include <algorithm>
#include <cstddef>

namespace tavero {

namespace {

constexpr double baseWatts = 3.1; // display, memory, radio
constexpr std::size_t efficiencyCores = 4;
constexpr double efficiencyCoreWatts = 0.45; // of one that is busy
constexpr double performanceCoreWatts = 4.2;
constexpr double gpuWatts = 11;
constexpr double lowestCharge = 0.01; // what the battery keeps for itself

} // namespace

double simJoules(const std::vector<SimTasks::CpuTime>& cpus, double gpuSeconds, double seconds) {
    double joules = baseWatts * seconds + gpuWatts * gpuSeconds;
    for (std::size_t cpu = 0; cpu < cpus.size(); ++cpu)
        joules += (cpu < efficiencyCores ? efficiencyCoreWatts : performanceCoreWatts) *
                  (cpus[cpu].user + cpus[cpu].system);
    return joules;
}

double simCharge(const Scenario::Battery& battery, double time,
                 const std::function<double(double)>& joulesAt) {
    const double unplugged = battery.unplugged.birth(time);
    if (time <= unplugged) return battery.charge;
    const double pluggedIn = std::min(time, unplugged + battery.unplugged.lasts);
    const double drained = (joulesAt(pluggedIn) - joulesAt(unplugged)) / simBatteryJoules;
    const double lowest = std::max(battery.charge - drained, lowestCharge);
    const double charged = simChargingWatts * (time - pluggedIn) / simBatteryJoules;
    return std::min(lowest + charged, battery.charge);
}

} // namespace tavero
