#include "platform/linux/network/NetlinkChannel.h"

#include "platform/linux/FileDescriptor.h"

#include <sys/socket.h>

#include <cerrno>
#include <utility>
#include <vector>

namespace tavero {

namespace {

constexpr std::size_t largestDatagram = 32'768; // the kernel fills no more at a time
constexpr int mostDatagrams = 256;

class NetlinkSocket : public NetlinkChannel {
  public:
    explicit NetlinkSocket(FileDescriptor socket) : socket_(std::move(socket)) {}

    bool send(NetlinkBytes message) override {
        sockaddr_nl kernel{};
        kernel.nl_family = AF_NETLINK;
        return ::sendto(socket_.number(), message.data(), message.size(), MSG_NOSIGNAL,
                        reinterpret_cast<const sockaddr*>(&kernel),
                        sizeof kernel) == static_cast<ssize_t>(message.size());
    }

    std::optional<NetlinkBytes> receive() override {
        buffer_.resize(largestDatagram);
        while (true) {
            sockaddr_nl sender{};
            socklen_t size = sizeof sender;
            const ssize_t length =
                ::recvfrom(socket_.number(), buffer_.data(), buffer_.size(), MSG_DONTWAIT,
                           reinterpret_cast<sockaddr*>(&sender), &size);
            if (length < 0 && errno == EINTR) continue;
            if (length < 0) return std::nullopt;
            // Any process may write to this socket; only the kernel has the port 0.
            if (sender.nl_pid == 0)
                return NetlinkBytes(buffer_).first(static_cast<std::size_t>(length));
        }
    }

    bool drain() override {
        bool hadAny = false;
        for (int i = 0; i < mostDatagrams; ++i) {
            std::byte first{};
            if (::recv(socket_.number(), &first, sizeof first, MSG_DONTWAIT) < 0 &&
                errno != ENOBUFS)
                break;
            hadAny = true;
        }
        return hadAny;
    }

  private:
    FileDescriptor socket_;
    std::vector<std::byte> buffer_;
};

// Absent unless the message ends the answer.
std::optional<bool> outcome(const NetlinkMessage& message) {
    if (message.type != NLMSG_DONE && message.type != NLMSG_ERROR) return std::nullopt;
    return netlinkValue<std::int32_t>(message.body).value_or(0) >= 0;
}

} // namespace

std::unique_ptr<NetlinkChannel> openNetlink(int protocol, std::uint32_t groups) {
    FileDescriptor socket(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, protocol));
    sockaddr_nl own{};
    own.nl_family = AF_NETLINK;
    own.nl_groups = groups;
    if (!socket.isOpen() ||
        ::bind(socket.number(), reinterpret_cast<const sockaddr*>(&own), sizeof own) != 0)
        return nullptr;
    return std::make_unique<NetlinkSocket>(std::move(socket));
}

bool askNetlink(NetlinkChannel& channel, const NetlinkWriter& request,
                const std::function<void(const NetlinkMessage&)>& visit) {
    const auto header = netlinkValue<nlmsghdr>(request.bytes());
    if (!header || !channel.send(request.bytes())) return false;
    std::optional<bool> ended;
    for (int i = 0; i < mostDatagrams && !ended; ++i) {
        const std::optional<NetlinkBytes> datagram = channel.receive();
        if (!datagram) return false;
        visitNetlinkMessages(*datagram, [&](const NetlinkMessage& message) {
            if (ended || message.sequence != header->nlmsg_seq) return;
            ended = outcome(message);
            if (!ended) visit(message);
        });
    }
    return ended.value_or(true);
}

} // namespace tavero
