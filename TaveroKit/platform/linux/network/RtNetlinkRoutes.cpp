#include "platform/linux/network/RtNetlinkRoutes.h"

#include <sys/socket.h>

#include <linux/rtnetlink.h>

#include <algorithm>

namespace tavero {

namespace {

constexpr std::size_t mostInterfaces = 64;

struct NextHop {
    std::optional<std::uint32_t> interface;
    bool hasGateway = false;
};

void addHop(WaysOut& ways, bool isDefault, const NextHop& hop) {
    if (!hop.interface || (!isDefault && !hop.hasGateway)) return;
    std::vector<std::uint32_t>& interfaces = isDefault ? ways.defaults : ways.gateways;
    const bool isKnown =
        std::find(interfaces.begin(), interfaces.end(), *hop.interface) != interfaces.end();
    if (!isKnown && interfaces.size() < mostInterfaces) interfaces.push_back(*hop.interface);
}

bool isDead(unsigned flags) { return (flags & (RTNH_F_DEAD | RTNH_F_LINKDOWN)) != 0; }

bool isGateway(int attribute) { return attribute == RTA_GATEWAY || attribute == RTA_VIA; }

// A route that shares its traffic among several hops.
void addHops(WaysOut& ways, bool isDefault, NetlinkBytes hops) {
    while (const auto header = netlinkValue<rtnexthop>(hops)) {
        if (header->rtnh_len < sizeof *header || header->rtnh_len > hops.size()) return;
        NextHop hop{.interface = static_cast<std::uint32_t>(header->rtnh_ifindex)};
        visitNetlinkAttributes(hops.first(header->rtnh_len).subspan(sizeof *header),
                               [&](int type, NetlinkBytes) { hop.hasGateway |= isGateway(type); });
        if (!isDead(header->rtnh_flags)) addHop(ways, isDefault, hop);
        hops = netlinkRest(hops, header->rtnh_len);
    }
}

bool askForRoutes(NetlinkChannel& channel, unsigned char family, std::uint32_t sequence,
                  WaysOut& ways) {
    rtmsg about{};
    about.rtm_family = family;
    NetlinkWriter request(RTM_GETROUTE, NLM_F_REQUEST | NLM_F_DUMP, sequence);
    request.record(about);
    return askNetlink(channel, request, [&](const NetlinkMessage& message) {
        if (message.type == RTM_NEWROUTE) addRoute(ways, message.body);
    });
}

} // namespace

void addRoute(WaysOut& ways, NetlinkBytes body) {
    const auto route = netlinkValue<rtmsg>(body);
    if (!route || route->rtm_type != RTN_UNICAST || route->rtm_table == RT_TABLE_LOCAL) return;
    if ((route->rtm_flags & RTM_F_CLONED) != 0 || isDead(route->rtm_flags)) return;
    const bool isDefault = route->rtm_dst_len == 0;
    NextHop hop;
    visitNetlinkAttributes(netlinkRest(body, sizeof *route), [&](int type, NetlinkBytes bytes) {
        if (type == RTA_OIF) hop.interface = netlinkValue<std::uint32_t>(bytes);
        if (type == RTA_MULTIPATH) addHops(ways, isDefault, bytes);
        hop.hasGateway |= isGateway(type);
    });
    addHop(ways, isDefault, hop);
}

std::optional<WaysOut> readWaysOut(NetlinkChannel& channel) {
    WaysOut ways;
    const bool hasOld = askForRoutes(channel, AF_INET, 1, ways);
    const bool hasNew = askForRoutes(channel, AF_INET6, 2, ways);
    return hasOld || hasNew ? std::optional(ways) : std::nullopt;
}

} // namespace tavero
