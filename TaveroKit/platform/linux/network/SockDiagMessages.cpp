#include "platform/linux/network/SockDiagMessages.h"

#include "platform/linux/network/NetlinkMessage.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <limits>

#include <linux/inet_diag.h>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <linux/sock_diag.h>
#include <linux/tcp.h>
#include <sys/socket.h>

namespace tavero {

namespace {

using Bytes = NetlinkBytes;

std::optional<NetworkBytes> bytesOf(Bytes info) {
    constexpr std::size_t throughReceived = offsetof(tcp_info, tcpi_segs_out);
    constexpr std::size_t throughSent = offsetof(tcp_info, tcpi_bytes_retrans);
    if (info.size() < throughReceived) return std::nullopt;
    tcp_info told = {};
    std::memcpy(&told, info.data(), std::min(info.size(), sizeof told));
    // Kernels before 4.19 count only what was acknowledged.
    const bool tellsSent = info.size() >= throughSent;
    return NetworkBytes{.received = told.tcpi_bytes_received,
                        .sent = tellsSent ? told.tcpi_bytes_sent : told.tcpi_bytes_acked};
}

using Address = std::array<std::uint8_t, 16>;

bool isLoopback(std::uint8_t family, const Address& address) {
    constexpr std::uint8_t loopbackNetwork = 127;
    constexpr Address loopback6{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1};
    constexpr std::array<std::uint8_t, 12> mapped{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF};
    if (family == AF_INET) return address[0] == loopbackNetwork;
    if (address == loopback6) return true;
    return std::equal(mapped.begin(), mapped.end(), address.begin()) &&
           address[mapped.size()] == loopbackNetwork;
}

// A connection to an address of the machine itself comes from that same address.
bool isLocal(std::uint8_t family, const inet_diag_sockid& ends) {
    Address source, destination;
    static_assert(sizeof ends.idiag_src == sizeof source);
    std::memcpy(source.data(), ends.idiag_src, sizeof source);
    std::memcpy(destination.data(), ends.idiag_dst, sizeof destination);
    const std::size_t length = family == AF_INET ? 4 : source.size();
    return isLoopback(family, source) || isLoopback(family, destination) ||
           std::equal(source.begin(), source.begin() + length, destination.begin());
}

// False if the attributes lie about their length.
bool takeAttributes(Bytes attributes, TcpConnection& connection) {
    while (attributes.size() >= sizeof(rtattr)) {
        const std::size_t length = netlinkValue<rtattr>(attributes)->rta_len;
        const auto type = netlinkValue<rtattr>(attributes)->rta_type & NLA_TYPE_MASK;
        if (length < sizeof(rtattr) || length > attributes.size()) return false;
        const Bytes payload = attributes.first(length).subspan(sizeof(rtattr));
        if (type == INET_DIAG_INFO) connection.bytes = bytesOf(payload);
        if (type == INET_DIAG_CGROUP_ID)
            connection.cgroup = netlinkValue<std::uint64_t>(payload).value_or(0);
        attributes = netlinkRest(attributes, length);
    }
    return true;
}

std::optional<TcpConnection> connectionOf(Bytes body) {
    const auto message = netlinkValue<inet_diag_msg>(body);
    if (!message || (message->idiag_family != AF_INET && message->idiag_family != AF_INET6))
        return std::nullopt;
    const auto& cookie = message->id.idiag_cookie;
    TcpConnection connection{.cookie = std::uint64_t{cookie[1]} << 32 | cookie[0],
                             .inode = message->idiag_inode,
                             .isLocal = isLocal(message->idiag_family, message->id)};
    if (!takeAttributes(body.subspan(sizeof *message), connection)) return std::nullopt;
    return connection;
}

// A message of type NLMSG_ERROR and the end of a dump carry an errno, negated.
int errorOf(Bytes body) {
    const int told = netlinkValue<int>(body).value_or(0);
    return told == std::numeric_limits<int>::min() ? EBADMSG : std::abs(told);
}

} // namespace

SockDiagPart parseSockDiag(std::span<const std::byte> datagram,
                           std::vector<TcpConnection>& connections) {
    SockDiagPart part;
    while (!datagram.empty()) {
        const auto header = netlinkValue<nlmsghdr>(datagram);
        if (!header || header->nlmsg_len < sizeof *header || header->nlmsg_len > datagram.size())
            return {.isLast = part.isLast, .isInterrupted = part.isInterrupted, .error = EBADMSG};
        const Bytes body = datagram.first(header->nlmsg_len).subspan(sizeof *header);
        part.isInterrupted |= (header->nlmsg_flags & NLM_F_DUMP_INTR) != 0;
        if (header->nlmsg_type == NLMSG_DONE || header->nlmsg_type == NLMSG_ERROR) {
            part.isLast = true;
            part.error = errorOf(body);
            return part;
        }
        if (header->nlmsg_type == SOCK_DIAG_BY_FAMILY) {
            const auto connection = connectionOf(body);
            if (connection)
                connections.push_back(*connection);
            else
                part.error = EBADMSG;
        }
        datagram = netlinkRest(datagram, header->nlmsg_len);
    }
    return part;
}

} // namespace tavero
