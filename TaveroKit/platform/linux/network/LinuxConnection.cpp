#include "platform/linux/network/LinuxConnection.h"

#include "platform/linux/network/LinuxInterfaceKind.h"
#include "platform/linux/network/RtNetlinkRoutes.h"

#include <sys/socket.h>

#include <linux/rtnetlink.h>

#include <optional>
#include <utility>

namespace tavero {

namespace {

constexpr std::uint32_t noticeGroups = RTMGRP_LINK | RTMGRP_IPV4_ROUTE | RTMGRP_IPV6_ROUTE;

} // namespace

// Belongs to the call that goes on, whatever becomes of the source.
struct LinuxConnection::Look {
    std::filesystem::path net;
    OpenNetlink open;
    std::optional<ConnectionKind> kind;

    // A channel of its own, so that an answer left unread is never taken for the next one's.
    void read() {
        const std::unique_ptr<NetlinkChannel> channel = open(NETLINK_ROUTE, 0);
        const auto ways = channel ? readWaysOut(*channel) : std::nullopt;
        kind = ways ? std::optional(connectionKind(*ways, net)) : std::nullopt;
    }
};

LinuxConnection::LinuxConnection(const std::filesystem::path& root, OpenNetlink open,
                                 std::chrono::milliseconds limit)
    : look_(std::make_shared<Look>(Look{.net = root / "sys/class/net", .open = std::move(open)})),
      notices_(look_->open(NETLINK_ROUTE, noticeGroups)), calls_(limit) {}

LinuxConnection::~LinuxConnection() = default;

ConnectionKind LinuxConnection::current() {
    if (!notices_) notices_ = look_->open(NETLINK_ROUTE, noticeGroups);
    if (!notices_) return kind_;
    // Before the routes are read, so that a change during the read is noticed the next time.
    if (notices_->drain()) isStale_ = true;
    if (isStale_ && calls_.run([look = look_] { look->read(); }) && look_->kind) {
        kind_ = *look_->kind;
        isStale_ = false;
    }
    return kind_;
}

} // namespace tavero
