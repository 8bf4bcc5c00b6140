#include "platform/linux/network/RtNetlinkRoutes.h"

#include "platform/linux/network/FakeNetlink.h"

#include <gtest/gtest.h>

#include <sys/socket.h>

#include <linux/rtnetlink.h>

#include <vector>

namespace tavero {
namespace {

using Numbers = std::vector<std::uint32_t>;

rtmsg toAnywhere() {
    rtmsg route{};
    route.rtm_family = AF_INET;
    route.rtm_table = RT_TABLE_MAIN;
    route.rtm_type = RTN_UNICAST;
    return route;
}

std::vector<std::byte> through(std::uint32_t interface) {
    return netlinkAttribute(RTA_OIF, interface);
}

std::vector<std::byte> byGateway() { return netlinkAttribute(RTA_GATEWAY, std::uint32_t{1}); }

WaysOut ways(const rtmsg& route, const std::vector<std::byte>& attributes) {
    WaysOut ways;
    NetlinkWriter message(RTM_NEWROUTE, 0, 0);
    message.record(route);
    const auto body =
        joined({{message.bytes().begin() + sizeof(nlmsghdr), message.bytes().end()}, attributes});
    addRoute(ways, body);
    return ways;
}

TEST(AddRoute, TakesTheInterfaceOfADefaultRoute) {
    EXPECT_EQ(ways(toAnywhere(), joined({byGateway(), through(3)})), (WaysOut{.defaults = {3}}));
    EXPECT_EQ(ways(toAnywhere(), through(4)), (WaysOut{.defaults = {4}})); // a tunnel has none
}

TEST(AddRoute, TakesARouteByARouterAndNotOneToTheNeighbours) {
    rtmsg route = toAnywhere();
    route.rtm_dst_len = 32;
    EXPECT_EQ(ways(route, joined({byGateway(), through(3)})), (WaysOut{.gateways = {3}}));
    EXPECT_EQ(ways(route, through(3)), WaysOut{});
}

TEST(AddRoute, ARouteToNowhereIsNoWayOut) {
    for (const unsigned char type : {RTN_UNREACHABLE, RTN_BLACKHOLE, RTN_LOCAL, RTN_PROHIBIT}) {
        rtmsg route = toAnywhere();
        route.rtm_type = type;
        EXPECT_EQ(ways(route, through(1)), WaysOut{}) << int{type};
    }
    rtmsg local = toAnywhere();
    local.rtm_table = RT_TABLE_LOCAL;
    EXPECT_EQ(ways(local, through(1)), WaysOut{});
    EXPECT_EQ(ways(toAnywhere(), {}), WaysOut{});
}

TEST(AddRoute, AnInterfaceWithoutALinkIsNoWayOut) {
    for (const unsigned flag : {0u + RTNH_F_DEAD, 0u + RTNH_F_LINKDOWN}) {
        rtmsg route = toAnywhere();
        route.rtm_flags = flag;
        EXPECT_EQ(ways(route, through(3)), WaysOut{}) << flag;
    }
}

TEST(AddRoute, AnyTableCounts) {
    rtmsg route = toAnywhere();
    route.rtm_table = RT_TABLE_UNSPEC; // with the number of a larger one in an attribute
    EXPECT_EQ(ways(route, through(5)).defaults, Numbers{5});
}

TEST(AddRoute, SeveralHopsAreSeveralWays) {
    const auto hop = [](std::uint16_t length, unsigned char flags, int interface) {
        rtnexthop header{};
        header.rtnh_len = length;
        header.rtnh_flags = flags;
        header.rtnh_ifindex = interface;
        const auto bytes = std::as_bytes(std::span(&header, 1));
        return std::vector(bytes.begin(), bytes.end());
    };
    const auto size = static_cast<std::uint16_t>(sizeof(rtnexthop));
    const auto withGateway = static_cast<std::uint16_t>(size + byGateway().size());
    const auto hops =
        joined({hop(withGateway, 0, 2), byGateway(), hop(size, RTNH_F_DEAD, 3), hop(size, 0, 4)});
    const auto attribute = netlinkAttribute(RTA_MULTIPATH, NetlinkBytes(hops));
    EXPECT_EQ(ways(toAnywhere(), attribute).defaults, (Numbers{2, 4}));
    rtmsg route = toAnywhere();
    route.rtm_dst_len = 24;
    EXPECT_EQ(ways(route, attribute), (WaysOut{.gateways = {2}}));

    for (const int lie : {0, 7, 400, 0xFFFF}) {
        const auto broken = hop(static_cast<std::uint16_t>(lie), 0, 2);
        EXPECT_EQ(ways(toAnywhere(), netlinkAttribute(RTA_MULTIPATH, NetlinkBytes(broken))),
                  WaysOut{})
            << lie;
    }
}

TEST(AddRoute, AnInterfaceIsNamedOnceAndARouteCutShortNever) {
    WaysOut ways;
    NetlinkWriter message(RTM_NEWROUTE, 0, 0);
    message.record(toAnywhere()).attribute(RTA_OIF, std::uint32_t{3});
    const NetlinkBytes body = message.bytes().subspan(sizeof(nlmsghdr));
    addRoute(ways, body.first(body.size() - 1));
    EXPECT_EQ(ways, WaysOut{});
    addRoute(ways, body);
    addRoute(ways, body);
    EXPECT_EQ(ways.defaults, Numbers{3});
}

FakeNetlink::Datagram route(const NetlinkMessage& request, std::uint32_t interface) {
    NetlinkWriter message(RTM_NEWROUTE, 0, request.sequence);
    message.record(toAnywhere()).attribute(RTA_OIF, interface);
    return datagram(message);
}

TEST(ReadWaysOut, AsksForBothProtocols) {
    FakeNetlink kernel;
    kernel.answer = [](const NetlinkMessage& request) {
        const bool isOld = netlinkValue<rtmsg>(request.body)->rtm_family == AF_INET;
        return FakeNetlink::Answer{route(request, isOld ? 2 : 5), ending(request)};
    };
    EXPECT_EQ(readWaysOut(*kernel.opener()(NETLINK_ROUTE, 0))->defaults, (Numbers{2, 5}));
}

TEST(ReadWaysOut, OneProtocolIsEnoughAndNoneIsNoAnswer) {
    FakeNetlink kernel;
    kernel.answer = [](const NetlinkMessage& request) {
        const bool isOld = netlinkValue<rtmsg>(request.body)->rtm_family == AF_INET;
        if (!isOld) return FakeNetlink::Answer{ending(request, -95)};
        return FakeNetlink::Answer{route(request, 2), ending(request)};
    };
    EXPECT_EQ(readWaysOut(*kernel.opener()(NETLINK_ROUTE, 0))->defaults, Numbers{2});
    kernel.answer = nullptr;
    EXPECT_EQ(readWaysOut(*kernel.opener()(NETLINK_ROUTE, 0)), std::nullopt);
}

} // namespace
} // namespace tavero
