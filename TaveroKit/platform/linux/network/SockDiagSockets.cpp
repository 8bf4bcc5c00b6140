#include "platform/linux/network/SockDiagSockets.h"

#include "platform/linux/network/SockDiagMessages.h"

#include <cerrno>
#include <span>

#include <linux/inet_diag.h>
#include <linux/netlink.h>
#include <linux/sock_diag.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <time.h>

namespace tavero {

namespace {

constexpr std::uint64_t millisecond = 1'000'000;
constexpr std::uint64_t longestDump = 300 * millisecond;
// The kernel makes its answers as large as the buffer allows, up to 32 KiB.
constexpr std::size_t bufferSize = 32 << 10;
// Room for the news between two reads, some kilobytes each; the kernel may grant less.
constexpr int newsRoom = 4 << 20;
constexpr int mostNews = 20'000;

// A listener moves nothing, and a connection in TIME_WAIT or half made has no counts.
constexpr std::uint32_t statesWithData =
    1u << TCP_ESTABLISHED | 1u << TCP_SYN_SENT | 1u << TCP_FIN_WAIT1 | 1u << TCP_FIN_WAIT2 |
    1u << TCP_CLOSE_WAIT | 1u << TCP_LAST_ACK | 1u << TCP_CLOSING;

std::uint64_t now() {
    timespec time = {};
    ::clock_gettime(CLOCK_MONOTONIC, &time);
    return static_cast<std::uint64_t>(time.tv_sec) * 1000 * millisecond +
           static_cast<std::uint64_t>(time.tv_nsec);
}

// Receiving never waits: the kernel writes the next part of its answer while one is being taken.
FileDescriptor netlinkSocket() {
    return FileDescriptor(
        ::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | SOCK_NONBLOCK, NETLINK_SOCK_DIAG));
}

// The groups can only be joined as the socket is bound.
bool joinNews(int socket) {
    sockaddr_nl address = {};
    address.nl_family = AF_NETLINK;
    address.nl_groups =
        1u << (SKNLGRP_INET_TCP_DESTROY - 1) | 1u << (SKNLGRP_INET6_TCP_DESTROY - 1);
    if (::setsockopt(socket, SOL_SOCKET, SO_RCVBUFFORCE, &newsRoom, sizeof newsRoom) != 0)
        ::setsockopt(socket, SOL_SOCKET, SO_RCVBUF, &newsRoom, sizeof newsRoom);
    return ::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

bool ask(int socket, std::uint8_t family) {
    struct {
        nlmsghdr header;
        inet_diag_req_v2 request;
    } question = {};
    question.header.nlmsg_len = sizeof question;
    question.header.nlmsg_type = SOCK_DIAG_BY_FAMILY;
    question.header.nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
    question.request.sdiag_family = family;
    question.request.sdiag_protocol = IPPROTO_TCP;
    question.request.idiag_ext = 1 << (INET_DIAG_INFO - 1);
    question.request.idiag_states = statesWithData;
    return ::send(socket, &question, sizeof question, MSG_NOSIGNAL) ==
           static_cast<ssize_t>(sizeof question);
}

// The bytes of the next datagram, or -1 with errno: EAGAIN if there is none, EMSGSIZE if it was
// cut. A program that isn't the kernel may send one too; it counts as empty.
ssize_t receive(int socket, std::vector<std::byte>& buffer) {
    sockaddr_nl sender = {};
    iovec room{.iov_base = buffer.data(), .iov_len = buffer.size()};
    msghdr message = {};
    message.msg_name = &sender;
    message.msg_namelen = sizeof sender;
    message.msg_iov = &room;
    message.msg_iovlen = 1;
    ssize_t length = 0;
    do {
        length = ::recvmsg(socket, &message, 0);
    } while (length < 0 && errno == EINTR);
    if (length > 0 && (message.msg_flags & MSG_TRUNC) != 0) {
        errno = EMSGSIZE;
        return -1;
    }
    return sender.nl_pid == 0 ? length : 0;
}

} // namespace

SockDiagSockets::SockDiagSockets() : buffer_(bufferSize) { open(); }

bool SockDiagSockets::open() {
    if (!questions_.isOpen()) questions_ = netlinkSocket();
    if (!news_.isOpen()) {
        news_ = netlinkSocket();
        if (news_.isOpen() && !joinNews(news_.number())) news_.close();
    }
    return questions_.isOpen();
}

bool SockDiagSockets::isAvailable() {
    std::vector<TcpConnection> ignored;
    return open() && dump(AF_INET, now() + longestDump, ignored) == Answer::all;
}

void SockDiagSockets::read(TcpConnections& connections) {
    connections.open.clear();
    connections.closed.clear();
    connections.isComplete = false;
    if (!open()) return;
    const std::uint64_t deadline = now() + longestDump;
    // A kernel without IPv6 has no such connections to tell of.
    connections.isComplete = dump(AF_INET, deadline, connections.open) == Answer::all &&
                             dump(AF_INET6, deadline, connections.open) != Answer::incomplete;
    takeClosed(connections.closed);
}

SockDiagSockets::Answer SockDiagSockets::dump(std::uint8_t family, std::uint64_t deadline,
                                              std::vector<TcpConnection>& found) {
    SockDiagPart part;
    bool isInterrupted = false;
    bool isWhole = ask(questions_.number(), family);
    while (isWhole && !part.isLast && part.error == 0) {
        const ssize_t length = receive(questions_.number(), buffer_);
        isWhole = length >= 0 && now() < deadline;
        if (!isWhole) break;
        part = parseSockDiag(std::span(buffer_).first(static_cast<std::size_t>(length)), found);
        isInterrupted |= part.isInterrupted;
    }
    if (isWhole && part.isLast && part.error == 0)
        return isInterrupted ? Answer::incomplete : Answer::all;
    // What is left of this answer must not be taken for the next one.
    questions_.close();
    const bool isRefused = part.error == ENOENT || part.error == EAFNOSUPPORT ||
                           part.error == EOPNOTSUPP || part.error == EPROTONOSUPPORT;
    return isRefused ? Answer::refused : Answer::incomplete;
}

void SockDiagSockets::takeClosed(std::vector<TcpConnection>& closed) {
    if (!news_.isOpen()) return;
    for (int count = 0; count < mostNews; ++count) {
        const ssize_t length = receive(news_.number(), buffer_);
        // More closed than there was room for: those end with the counts of the last dump.
        if (length < 0 && (errno == ENOBUFS || errno == EMSGSIZE)) continue;
        if (length < 0) return;
        parseSockDiag(std::span(buffer_).first(static_cast<std::size_t>(length)), closed);
    }
}

} // namespace tavero
