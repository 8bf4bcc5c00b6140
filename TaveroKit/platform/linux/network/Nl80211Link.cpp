#include "platform/linux/network/Nl80211Link.h"

#include <linux/genetlink.h>
#include <linux/nl80211.h>

#include <algorithm>
#include <limits>
#include <string_view>
#include <vector>

namespace tavero {

namespace {

constexpr std::string_view familyName{NL80211_GENL_NAME, sizeof NL80211_GENL_NAME}; // with its 0
constexpr std::size_t mostInterfaces = 16;
constexpr std::uint32_t mostSpeed = 1'000'000; // no radio sends 100 gigabits per second

// The band of Wi-Fi 6E, in MHz.
constexpr std::uint32_t sixGigahertzStart = 5925;
constexpr std::uint32_t sixGigahertzEnd = 7250;

// What came when, in rising order.
enum class Generation { old, four, five, six, seven };

struct Rate {
    std::optional<std::uint32_t> speed; // in tenths of a megabit per second
    Generation generation = Generation::old;
};

NetlinkBytes attributes(NetlinkBytes body) { return netlinkRest(body, GENL_HDRLEN); }

Rate parseRate(NetlinkBytes bytes) {
    Rate rate;
    visitNetlinkAttributes(bytes, [&](int type, NetlinkBytes value) {
        const auto atLeast = [&](Generation generation) {
            rate.generation = std::max(rate.generation, generation);
        };
        if (type == NL80211_RATE_INFO_BITRATE32) rate.speed = netlinkValue<std::uint32_t>(value);
        // The older form, for rates that fit.
        if (type == NL80211_RATE_INFO_BITRATE && !rate.speed)
            rate.speed = netlinkValue<std::uint16_t>(value);
        if (type == NL80211_RATE_INFO_MCS) atLeast(Generation::four);
        if (type == NL80211_RATE_INFO_VHT_MCS) atLeast(Generation::five);
        if (type == NL80211_RATE_INFO_HE_MCS) atLeast(Generation::six);
        if (type == NL80211_RATE_INFO_EHT_MCS) atLeast(Generation::seven);
    });
    if (rate.speed.value_or(0) > mostSpeed) rate.speed.reset();
    return rate;
}

std::string_view standard(Generation generation, std::uint32_t frequency) {
    switch (generation) {
    case Generation::old:
        return "Wi-Fi";
    case Generation::four:
        return "Wi-Fi 4";
    case Generation::five:
        return "Wi-Fi 5";
    case Generation::six:
        return frequency >= sixGigahertzStart && frequency < sixGigahertzEnd ? "Wi-Fi 6E"
                                                                             : "Wi-Fi 6";
    case Generation::seven:
        return "Wi-Fi 7";
    }
    return "Wi-Fi";
}

struct Station {
    std::optional<std::int8_t> signal; // dBm
    std::optional<Rate> sent;
    std::optional<Rate> received;
};

Station parseStationInfo(NetlinkBytes bytes) {
    Station station;
    visitNetlinkAttributes(bytes, [&](int type, NetlinkBytes value) {
        if (type == NL80211_STA_INFO_SIGNAL) station.signal = netlinkValue<std::int8_t>(value);
        if (type == NL80211_STA_INFO_SIGNAL_AVG && !station.signal)
            station.signal = netlinkValue<std::int8_t>(value);
        if (type == NL80211_STA_INFO_TX_BITRATE) station.sent = parseRate(value);
        if (type == NL80211_STA_INFO_RX_BITRATE) station.received = parseRate(value);
    });
    return station;
}

// The sequence numbers of one look.
enum Sequence : std::uint32_t { askFamily = 1, askInterfaces, askFirstStation };

std::optional<std::uint16_t> readFamily(NetlinkChannel& channel) {
    NetlinkWriter request(GENL_ID_CTRL, NLM_F_REQUEST | NLM_F_ACK, askFamily);
    request.record(genlmsghdr{.cmd = CTRL_CMD_GETFAMILY, .version = 1});
    request.attribute(CTRL_ATTR_FAMILY_NAME, std::as_bytes(std::span(familyName)));
    std::optional<std::uint16_t> family;
    askNetlink(channel, request, [&](const NetlinkMessage& message) {
        if (message.type == GENL_ID_CTRL && !family) family = parseFamily(message.body);
    });
    return family;
}

std::vector<WiFiInterface> readInterfaces(NetlinkChannel& channel, std::uint16_t family) {
    NetlinkWriter request(family, NLM_F_REQUEST | NLM_F_DUMP, askInterfaces);
    request.record(genlmsghdr{.cmd = NL80211_CMD_GET_INTERFACE});
    std::vector<WiFiInterface> interfaces;
    askNetlink(channel, request, [&](const NetlinkMessage& message) {
        if (message.type != family || interfaces.size() == mostInterfaces) return;
        if (const auto interface = parseInterface(message.body)) interfaces.push_back(*interface);
    });
    std::sort(interfaces.begin(), interfaces.end(),
              [](const WiFiInterface& a, const WiFiInterface& b) { return a.number < b.number; });
    return interfaces;
}

std::optional<WiFiLink> readStation(NetlinkChannel& channel, std::uint16_t family,
                                    const WiFiInterface& interface, std::uint32_t sequence) {
    NetlinkWriter request(family, NLM_F_REQUEST | NLM_F_DUMP, sequence);
    request.record(genlmsghdr{.cmd = NL80211_CMD_GET_STATION});
    request.attribute(NL80211_ATTR_IFINDEX, interface.number);
    std::optional<WiFiLink> link;
    askNetlink(channel, request, [&](const NetlinkMessage& message) {
        if (message.type == family && !link) link = parseStation(message.body, interface.frequency);
    });
    return link;
}

} // namespace

std::optional<std::uint16_t> parseFamily(NetlinkBytes body) {
    std::optional<std::uint16_t> family;
    visitNetlinkAttributes(attributes(body), [&](int type, NetlinkBytes value) {
        if (type == CTRL_ATTR_FAMILY_ID) family = netlinkValue<std::uint16_t>(value);
    });
    return family;
}

std::optional<WiFiInterface> parseInterface(NetlinkBytes body) {
    WiFiInterface interface;
    std::uint32_t kind = NL80211_IFTYPE_UNSPECIFIED;
    visitNetlinkAttributes(attributes(body), [&](int type, NetlinkBytes bytes) {
        const auto value = netlinkValue<std::uint32_t>(bytes);
        if (type == NL80211_ATTR_IFINDEX) interface.number = value.value_or(0);
        if (type == NL80211_ATTR_WIPHY_FREQ) interface.frequency = value.value_or(0);
        if (type == NL80211_ATTR_IFTYPE) kind = value.value_or(NL80211_IFTYPE_UNSPECIFIED);
    });
    const bool joins = kind == NL80211_IFTYPE_STATION || kind == NL80211_IFTYPE_P2P_CLIENT;
    return joins && interface.number > 0 ? std::optional(interface) : std::nullopt;
}

std::optional<WiFiLink> parseStation(NetlinkBytes body, std::uint32_t frequency) {
    Station station;
    visitNetlinkAttributes(attributes(body), [&](int type, NetlinkBytes value) {
        if (type == NL80211_ATTR_STA_INFO) station = parseStationInfo(value);
    });
    // 0 is no association; above it the driver counts in a unit of its own.
    if (station.signal.value_or(0) >= 0) return std::nullopt;
    WiFiLink link{.rssi = *station.signal};
    if (station.sent && station.sent->speed) link.linkSpeed = *station.sent->speed / 10.0;
    if (station.sent || station.received) {
        const Generation newest = std::max(station.sent.value_or(Rate{}).generation,
                                           station.received.value_or(Rate{}).generation);
        link.standard = standard(newest, frequency);
    }
    return link;
}

std::optional<WiFiLink> readWiFiLink(NetlinkChannel& channel) {
    const std::optional<std::uint16_t> family = readFamily(channel);
    if (!family) return std::nullopt;
    std::uint32_t sequence = askFirstStation;
    for (const WiFiInterface& interface : readInterfaces(channel, *family))
        if (auto link = readStation(channel, *family, interface, sequence++)) return link;
    return std::nullopt;
}

} // namespace tavero
