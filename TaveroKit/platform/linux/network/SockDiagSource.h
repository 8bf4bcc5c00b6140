#pragma once

#include "records/NetworkSnapshot.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace tavero {

// A TCP connection as the kernel tells it.
struct TcpConnection {
    std::uint64_t cookie = 0; // its identity: no other one gets the same until the next start
    std::uint64_t inode = 0;  // as in /proc/PID/fd; 0 while no process has it, and after it closed
    std::uint64_t cgroup = 0; // the inode of the folder of its control group; 0 if it isn't told
    bool isLocal = false;     // both ends are on this machine
    // What it moved since it was opened: payload, and what was sent again. The end of the other
    // side's stream counts as one byte. Absent if the kernel doesn't tell.
    std::optional<NetworkBytes> bytes;

    bool operator==(const TcpConnection&) const = default;
};

// The connections of this network namespace.
struct TcpConnections {
    std::vector<TcpConnection> open;
    std::vector<TcpConnection> closed; // since the previous time, with their final counts
    bool isComplete = false;           // false if `open` may lack some

    bool operator==(const TcpConnections&) const = default;
};

// Where they come from.
class SockDiagSource {
  public:
    virtual ~SockDiagSource() = default;

    // Replaces what `connections` holds. Never takes longer than half a second.
    virtual void read(TcpConnections& connections) = 0;
};

} // namespace tavero
