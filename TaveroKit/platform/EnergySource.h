#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tavero {

// One counter of the energy that a part of the processor has used. It only grows, until the system
// starts it again.
struct EnergyChannel {
    std::optional<std::string> name; // absent if it has none
    std::string unit;                // "mJ", "uJ" or "nJ", blanks around it allowed
    std::int64_t value = 0;

    bool operator==(const EnergyChannel&) const = default;
};

// The energy counters of a processor.
class EnergySource {
  public:
    virtual ~EnergySource() = default;

    // All of them now. Absent if the system refuses.
    virtual std::optional<std::vector<EnergyChannel>> channels() = 0;
};

} // namespace tavero
