#include "platform/linux/network/Nl80211Link.h"

#include "platform/linux/network/FakeNetlink.h"

#include <gtest/gtest.h>

#include <linux/genetlink.h>
#include <linux/nl80211.h>

#include <cstring>
#include <string>
#include <vector>

namespace tavero {
namespace {

using Bytes = std::vector<std::byte>;

constexpr std::uint16_t family = 31;
constexpr std::uint32_t fiveGigahertz = 5180;
constexpr std::uint32_t sixGigahertz = 5975;

// What follows the header of a message: the family's own and the attributes.
Bytes body(std::initializer_list<Bytes> attributes) {
    return joined({Bytes(GENL_HDRLEN), joined(attributes)});
}

Bytes rate(std::uint32_t speed, int flag) {
    Bytes bytes = netlinkAttribute(NL80211_RATE_INFO_BITRATE32, speed);
    if (flag)
        bytes =
            joined({bytes, netlinkAttribute(static_cast<std::uint16_t>(flag), std::uint8_t{9})});
    return bytes;
}

Bytes signal(int dBm) {
    return netlinkAttribute(NL80211_STA_INFO_SIGNAL, static_cast<std::int8_t>(dBm));
}

Bytes sent(const Bytes& rate) {
    return netlinkAttribute(NLA_F_NESTED | NL80211_STA_INFO_TX_BITRATE, NetlinkBytes(rate));
}

Bytes received(const Bytes& rate) {
    return netlinkAttribute(NLA_F_NESTED | NL80211_STA_INFO_RX_BITRATE, NetlinkBytes(rate));
}

Bytes station(std::initializer_list<Bytes> info) {
    const Bytes inside = joined(info);
    return body({netlinkAttribute(NLA_F_NESTED | NL80211_ATTR_STA_INFO, NetlinkBytes(inside))});
}

std::string standard(int flag, std::uint32_t frequency) {
    const auto link = parseStation(station({signal(-50), sent(rate(10, flag))}), frequency);
    return link && link->standard ? *link->standard : "absent";
}

TEST(ParseStation, ReadsSignalSpeedAndStandard) {
    const auto link = parseStation(
        station({signal(-54), sent(rate(12010, NL80211_RATE_INFO_HE_MCS))}), fiveGigahertz);
    EXPECT_EQ(link, (WiFiLink{.rssi = -54, .linkSpeed = 1201, .standard = "Wi-Fi 6"}));
}

TEST(ParseStation, NamesTheStandardByTheKindOfRate) {
    EXPECT_EQ(standard(0, 2412), "Wi-Fi");
    EXPECT_EQ(standard(NL80211_RATE_INFO_MCS, 2437), "Wi-Fi 4");
    EXPECT_EQ(standard(NL80211_RATE_INFO_VHT_MCS, fiveGigahertz), "Wi-Fi 5");
    EXPECT_EQ(standard(NL80211_RATE_INFO_HE_MCS, fiveGigahertz), "Wi-Fi 6");
    EXPECT_EQ(standard(NL80211_RATE_INFO_HE_MCS, 0), "Wi-Fi 6"); // no channel told
    EXPECT_EQ(standard(NL80211_RATE_INFO_HE_MCS, sixGigahertz), "Wi-Fi 6E");
    EXPECT_EQ(standard(NL80211_RATE_INFO_HE_MCS, 58320), "Wi-Fi 6");
    EXPECT_EQ(standard(NL80211_RATE_INFO_EHT_MCS, sixGigahertz), "Wi-Fi 7");
    EXPECT_EQ(standard(NL80211_RATE_INFO_320_MHZ_WIDTH, sixGigahertz), "Wi-Fi"); // a mere width
}

TEST(ParseStation, AnIdleLinksOldRateIsNotItsStandard) {
    const auto link = parseStation(
        station({signal(-50), sent(rate(60, 0)), received(rate(8660, NL80211_RATE_INFO_VHT_MCS))}),
        fiveGigahertz);
    EXPECT_EQ(link->standard, "Wi-Fi 5");
    EXPECT_EQ(link->linkSpeed, 6);
}

TEST(ParseStation, WithoutARateTheStandardIsAbsent) {
    EXPECT_EQ(parseStation(station({signal(-50)}), fiveGigahertz), (WiFiLink{.rssi = -50}));
}

TEST(ParseStation, ASignalOfZeroOrAboveIsNoLink) {
    const Bytes fast = sent(rate(12010, NL80211_RATE_INFO_HE_MCS));
    for (const int dBm : {0, 1, 70, 127})
        EXPECT_EQ(parseStation(station({signal(dBm), fast}), fiveGigahertz), std::nullopt) << dBm;
    EXPECT_EQ(parseStation(station({fast}), fiveGigahertz), std::nullopt);
    EXPECT_EQ(parseStation(station({}), fiveGigahertz), std::nullopt);
    EXPECT_EQ(parseStation({}, fiveGigahertz), std::nullopt);
}

TEST(ParseStation, TheMeanSignalServesWhereTheLastOneIsMissing) {
    const Bytes mean = netlinkAttribute(NL80211_STA_INFO_SIGNAL_AVG, std::int8_t{-61});
    EXPECT_EQ(parseStation(station({mean}), 0)->rssi, -61);
    EXPECT_EQ(parseStation(station({mean, signal(-50)}), 0)->rssi, -50);
    EXPECT_EQ(parseStation(station({signal(-50), mean}), 0)->rssi, -50);
}

TEST(ParseStation, TheOlderFormOfASpeedServesToo) {
    const Bytes old = netlinkAttribute(NL80211_RATE_INFO_BITRATE, std::uint16_t{540});
    EXPECT_EQ(parseStation(station({signal(-50), sent(old)}), 0)->linkSpeed, 54);
    EXPECT_EQ(
        parseStation(station({signal(-50), sent(joined({old, rate(9000, 0)}))}), 0)->linkSpeed,
        900);
    EXPECT_EQ(parseStation(station({signal(-50), sent(rate(0xFFFFFFFFu, 0))}), 0)->linkSpeed, 0);
}

TEST(ParseStation, CutAnywhereItReadsNothingBeyondTheEnd) {
    const Bytes whole =
        station({signal(-54), sent(rate(12010, NL80211_RATE_INFO_HE_MCS)), received(rate(60, 0))});
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
        EXPECT_EQ(parseStation(cut, sixGigahertz), std::nullopt) << length;
    }
}

Bytes interface(std::uint32_t number, std::uint32_t kind, std::uint32_t frequency) {
    return body({netlinkAttribute(NL80211_ATTR_IFINDEX, number),
                 netlinkAttribute(NL80211_ATTR_IFTYPE, kind),
                 netlinkAttribute(NL80211_ATTR_WIPHY_FREQ, frequency)});
}

TEST(ParseInterface, TakesOneThatJoinsNetworks) {
    EXPECT_EQ(parseInterface(interface(3, NL80211_IFTYPE_STATION, sixGigahertz)),
              (WiFiInterface{.number = 3, .frequency = sixGigahertz}));
    EXPECT_TRUE(parseInterface(interface(3, NL80211_IFTYPE_P2P_CLIENT, 0)));
    for (const std::uint32_t kind : {NL80211_IFTYPE_AP, NL80211_IFTYPE_MONITOR})
        EXPECT_EQ(parseInterface(interface(3, kind, 0)), std::nullopt) << kind;
    EXPECT_EQ(parseInterface(interface(0, NL80211_IFTYPE_STATION, 0)), std::nullopt);
    EXPECT_EQ(parseInterface({}), std::nullopt);
}

// A kernel whose second interface is associated.
class ReadWiFiLink : public testing::Test {
  protected:
    ReadWiFiLink() {
        kernel_.answer = [this](const NetlinkMessage& request) { return answer(request); };
    }

    FakeNetlink::Answer answer(const NetlinkMessage& request) {
        const auto header = netlinkValue<genlmsghdr>(request.body);
        if (request.type == GENL_ID_CTRL) return familyAnswer(request);
        if (request.type != family || !header) return {ending(request, -22)};
        if (header->cmd == NL80211_CMD_GET_INTERFACE)
            return {message(request, interface(7, NL80211_IFTYPE_STATION, sixGigahertz)),
                    message(request, interface(4, NL80211_IFTYPE_STATION, fiveGigahertz)),
                    message(request, interface(5, NL80211_IFTYPE_AP, fiveGigahertz)),
                    ending(request)};
        std::uint32_t number = 0;
        visitNetlinkAttributes(request.body.subspan(GENL_HDRLEN),
                               [&](int type, NetlinkBytes value) {
                                   if (type == NL80211_ATTR_IFINDEX)
                                       number = netlinkValue<std::uint32_t>(value).value_or(0);
                               });
        asked_.push_back(number);
        if (number != associated_) return {ending(request)};
        return {
            message(request, station({signal(-48), sent(rate(24020, NL80211_RATE_INFO_HE_MCS))})),
            ending(request)};
    }

    FakeNetlink::Answer familyAnswer(const NetlinkMessage& request) const {
        if (!hasWiFi_) return {ending(request, -2)};
        NetlinkWriter acknowledgement(NLMSG_ERROR, 0, request.sequence);
        acknowledgement.record(std::int32_t{0});
        NetlinkWriter answer(GENL_ID_CTRL, 0, request.sequence);
        answer.record(genlmsghdr{.cmd = CTRL_CMD_NEWFAMILY}).attribute(CTRL_ATTR_FAMILY_ID, family);
        return {datagram(answer), datagram(acknowledgement)};
    }

    static FakeNetlink::Datagram message(const NetlinkMessage& request, const Bytes& body) {
        NetlinkWriter header(family, 0, request.sequence);
        Bytes bytes = joined({datagram(header), body});
        const auto length = static_cast<std::uint32_t>(bytes.size());
        std::memcpy(bytes.data(), &length, sizeof length);
        return bytes;
    }

    std::optional<WiFiLink> read() { return readWiFiLink(*kernel_.opener()(NETLINK_GENERIC, 0)); }

    FakeNetlink kernel_;
    bool hasWiFi_ = true;
    std::uint32_t associated_ = 7;
    std::vector<std::uint32_t> asked_;
};

TEST_F(ReadWiFiLink, FindsTheInterfaceThatIsAssociated) {
    EXPECT_EQ(read(), (WiFiLink{.rssi = -48, .linkSpeed = 2402, .standard = "Wi-Fi 6E"}));
    EXPECT_EQ(asked_, (std::vector<std::uint32_t>{4, 7}));
}

TEST_F(ReadWiFiLink, WithoutAnAssociationThereIsNoLink) {
    associated_ = 0;
    EXPECT_EQ(read(), std::nullopt);
}

TEST_F(ReadWiFiLink, AKernelWithoutWiFiHasNoLink) {
    hasWiFi_ = false;
    EXPECT_EQ(read(), std::nullopt);
    kernel_.answer = nullptr;
    EXPECT_EQ(read(), std::nullopt);
}

TEST(Nl80211, OnThisMachine) {
    const auto channel = openNetlink(NETLINK_GENERIC, 0);
    const auto link = channel ? readWiFiLink(*channel) : std::nullopt;
    if (!link) return;
    EXPECT_LT(link->rssi, 0);
    EXPECT_GE(link->linkSpeed, 0);
}

} // namespace
} // namespace tavero
