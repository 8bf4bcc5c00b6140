#pragma once

#include "platform/linux/network/NetlinkMessage.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace tavero {

// A conversation with the kernel over netlink. Receiving never waits: the kernel answers while the
// request is being sent, which is what may take long.
class NetlinkChannel {
  public:
    virtual ~NetlinkChannel() = default;

    // False if the kernel doesn't take it.
    virtual bool send(NetlinkBytes message) = 0;

    // The next datagram that has come, valid until the next call. Absent if there is none.
    virtual std::optional<NetlinkBytes> receive() = 0;

    // Throws away what has come. True if there was anything, also if it was more than could be
    // kept.
    virtual bool drain() = 0;
};

// Opens a channel of a protocol that hears these groups' notices. Null if the system refuses.
using OpenNetlink =
    std::function<std::unique_ptr<NetlinkChannel>(int protocol, std::uint32_t groups)>;
std::unique_ptr<NetlinkChannel> openNetlink(int protocol, std::uint32_t groups);

// Sends the request, whose sequence number no other on this channel has, and visits the answers to
// it. True once the kernel says that this was all; an answer of endless length ends early.
bool askNetlink(NetlinkChannel& channel, const NetlinkWriter& request,
                const std::function<void(const NetlinkMessage&)>& visit);

} // namespace tavero
