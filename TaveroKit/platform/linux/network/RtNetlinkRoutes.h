#pragma once

#include "platform/linux/network/NetlinkChannel.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace tavero {

// The ways out of this machine, by the kernel's numbers of the interfaces that they lead through.
// Routes to nowhere, and those of an interface without a link, are no way out.
struct WaysOut {
    std::vector<std::uint32_t> defaults; // to anywhere
    std::vector<std::uint32_t> gateways; // to somewhere else, by way of a router: beside a tunnel's
                                         // default route, the one to the tunnel's other end

    bool operator==(const WaysOut&) const = default;
};

// Adds a route (RTM_NEWROUTE). An interface is not named twice.
void addRoute(WaysOut& ways, NetlinkBytes body);

// Of both protocols, from all tables: a system may route by rules and leave the main one empty.
// Absent if the kernel lists neither.
std::optional<WaysOut> readWaysOut(NetlinkChannel& channel);

} // namespace tavero
