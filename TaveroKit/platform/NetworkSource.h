#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace tavero {

// The bytes that went through one network interface, cumulative.
struct InterfaceCounters {
    std::uint64_t bytesIn = 0;
    std::uint64_t bytesOut = 0;

    bool operator==(const InterfaceCounters&) const = default;
};

// Where interface counters come from.
class NetworkSource {
  public:
    virtual ~NetworkSource() = default;

    // One entry a physical interface: no loopback, tunnel or bridge, whose bytes pass through a
    // physical one or never leave the machine. Empty if there is none, absent if the host refuses.
    virtual std::optional<std::vector<InterfaceCounters>> interfaces() = 0;
};

} // namespace tavero
