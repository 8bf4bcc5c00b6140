#pragma once

#include "platform/linux/network/SockDiagSource.h"

#include <cstddef>
#include <span>
#include <vector>

namespace tavero {

// What a datagram of the kernel's socket diagnosis (sock_diag(7)) says of its dump.
struct SockDiagPart {
    bool isLast = false;
    bool isInterrupted = false; // the dump may lack some
    int error = 0;              // an errno; nothing more comes

    bool operator==(const SockDiagPart&) const = default;
};

// Adds the connections that a datagram holds: struct inet_diag_msg, each with its attributes
// INET_DIAG_INFO (struct tcp_info, as long as the kernel makes it) and INET_DIAG_CGROUP_ID. What is
// cut short or lies about its length ends the datagram with EBADMSG.
SockDiagPart parseSockDiag(std::span<const std::byte> datagram,
                           std::vector<TcpConnection>& connections);

} // namespace tavero
