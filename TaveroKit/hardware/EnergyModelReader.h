#pragma once

#include "platform/EnergySource.h"
#include "records/Date.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace tavero {

// What the parts of the processor drew between two samples.
struct ComponentPower {
    std::map<std::string, double, std::less<>> watts; // by the counter's name

    // The parts by what they are; absent if no counter belongs to one.
    std::optional<double> cpu() const;
    std::optional<double> gpu() const;
    std::optional<double> neuralEngine() const;
    std::optional<double> memory() const;

    bool operator==(const ComponentPower&) const = default;
};

// Turns the processor's energy counters into watts. Ready for use; no pass asks it yet.
class EnergyModelReader {
  public:
    // Absent on the first call, if the counters can't be read, and if no time has passed by this
    // clock. A counter that did not grow is left out, so one that was reset gives no false spike.
    std::optional<ComponentPower> sample(EnergySource& source, Date now);

  private:
    using Joules = std::map<std::string, double, std::less<>>;
    struct Reading {
        Joules joules;
        Date at;
    };

    std::optional<Reading> previous_;
};

} // namespace tavero
