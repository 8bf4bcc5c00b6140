#include "platform/linux/network/LinuxInterfaceKind.h"
#include "platform/linux/network/NetlinkChannel.h"
#include "platform/linux/network/RtNetlinkRoutes.h"

#include "platform/linux/TemporaryTree.h"

#include <gtest/gtest.h>

#include <net/if.h>
#include <sched.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <linux/rtnetlink.h>

#include <iostream>
#include <memory>

namespace tavero {
namespace {

constexpr std::uint32_t loopback = 1; // its number in every network of its own
constexpr std::uint32_t groups = RTMGRP_LINK | RTMGRP_IPV4_ROUTE | RTMGRP_IPV6_ROUTE;

enum Outcome : int { allRight, refused, notSilent, noNotice, wrongWays, notDone };

// Asks for a change, and whether the kernel made it.
bool change(const NetlinkWriter& request) {
    const auto channel = openNetlink(NETLINK_ROUTE, 0);
    return channel && askNetlink(*channel, request, [](const NetlinkMessage&) {});
}

bool bringUpLoopback() {
    ifinfomsg link{};
    link.ifi_index = loopback;
    link.ifi_flags = link.ifi_change = IFF_UP;
    return change(NetlinkWriter(RTM_NEWLINK, NLM_F_REQUEST | NLM_F_ACK, 1).record(link));
}

bool changeDefaultRoute(std::uint16_t type, std::uint16_t flags) {
    rtmsg route{};
    route.rtm_family = AF_INET;
    route.rtm_table = RT_TABLE_MAIN;
    route.rtm_protocol = RTPROT_STATIC;
    route.rtm_scope = RT_SCOPE_LINK;
    route.rtm_type = RTN_UNICAST;
    NetlinkWriter request(type, static_cast<std::uint16_t>(NLM_F_REQUEST | NLM_F_ACK | flags), 1);
    request.record(route).attribute(RTA_OIF, loopback);
    return change(request);
}

std::optional<WaysOut> waysOut() {
    const auto channel = openNetlink(NETLINK_ROUTE, 0);
    return channel ? readWaysOut(*channel) : std::nullopt;
}

// In a network of its own, where routes can be made and lost.
Outcome inAnotherNetwork() {
    if (::unshare(CLONE_NEWNET) != 0 && ::unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0)
        return refused;
    const auto notices = openNetlink(NETLINK_ROUTE, groups);
    if (!notices) return refused;
    if (notices->drain()) return notSilent;
    if (waysOut() != WaysOut{}) return wrongWays;
    if (!bringUpLoopback() || !changeDefaultRoute(RTM_NEWROUTE, NLM_F_CREATE)) return notDone;
    if (!notices->drain()) return noNotice;
    if (waysOut() != WaysOut{.defaults = {loopback}}) return wrongWays;
    if (notices->drain()) return notSilent;
    if (!changeDefaultRoute(RTM_DELROUTE, 0)) return notDone;
    if (!notices->drain()) return noNotice;
    return waysOut() == WaysOut{} ? allRight : wrongWays;
}

TEST(RtNetlink, ARouteThatComesAndGoesIsNoticedOnThisMachine) {
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) ::_exit(inAnotherNetwork());
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    const int outcome = WEXITSTATUS(status);
    if (outcome == refused)
        std::cout << "no network of its own allowed here: only this machine's routes are read\n";
    else
        EXPECT_EQ(outcome, allRight);
}

TEST(RtNetlink, ReadsTheRoutesOnThisMachine) {
    const auto channel = openNetlink(NETLINK_ROUTE, 0);
    if (!channel) {
        EXPECT_EQ(waysOut(), std::nullopt);
        return;
    }
    const auto ways = readWaysOut(*channel);
    ASSERT_TRUE(ways);
    EXPECT_EQ(ways->defaults.empty(),
              connectionKind(*ways, "/sys/class/net") == ConnectionKind::offline);
    for (const std::uint32_t interface : ways->defaults) EXPECT_GT(interface, 0u);
}

} // namespace
} // namespace tavero
