#pragma once

#include "platform/linux/network/RtNetlinkRoutes.h"
#include "records/NetworkSnapshot.h"

#include <filesystem>

namespace tavero {

// Whether this entry of /sys/class/net is a Wi-Fi interface.
bool isWiFi(const std::filesystem::path& interface);

// What an interface sends by. Wired needs a device: one that only exists in the kernel is what the
// best interface below it is (a bridge, a bond, a VLAN), and `other` with none (a tunnel, the end
// of a container).
ConnectionKind interfaceKind(const std::filesystem::path& interface);

// What the machine reaches the network by: Wi-Fi before wired before cellular, whichever the
// kernel prefers at the moment. Where every default route is a tunnel's, it is what the routes by
// way of a router go through. `net` is the folder /sys/class/net.
ConnectionKind connectionKind(const WaysOut& ways, const std::filesystem::path& net);

} // namespace tavero
