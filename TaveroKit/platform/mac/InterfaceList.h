#pragma once

#include "platform/NetworkSource.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace tavero {

// What the kernel tells of one network interface.
struct InterfaceMessage {
    std::uint32_t index = 0;
    InterfaceCounters counters;

    bool operator==(const InterfaceMessage&) const = default;
};

// The interfaces in the answer of sysctl {CTL_NET, PF_ROUTE, 0, 0, NET_RT_IFLIST2, 0}: the messages
// of type RTM_IFINFO2, in their order. The kernel cuts their byte counters to 32 bits and rounds
// them down to 1024 for programs that are not the system's own.
std::vector<InterfaceMessage> parseInterfaceList(std::span<const std::byte> list);

// The byte counters in the answer of sysctl {CTL_NET, PF_LINK, NETLINK_GENERIC, IFMIB_IFDATA,
// index, IFDATA_GENERAL}, which nobody cuts. Absent if it is too short to hold them.
std::optional<InterfaceCounters> parseInterfaceData(std::span<const std::byte> data);

} // namespace tavero
