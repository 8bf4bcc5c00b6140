#include "platform/linux/network/SockDiagMessages.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <string>

#include <arpa/inet.h>
#include <linux/inet_diag.h>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <linux/sock_diag.h>
#include <linux/tcp.h>

namespace tavero {
namespace {

// A datagram, put together as the kernel does.
class Datagram {
  public:
    template <typename Structure>
    Datagram& add(const Structure& structure) {
        const auto* bytes = reinterpret_cast<const std::byte*>(&structure);
        bytes_.insert(bytes_.end(), bytes, bytes + sizeof structure);
        return *this;
    }
    Datagram& begin(std::uint16_t type, std::uint16_t flags = 0) {
        start_ = bytes_.size();
        return add(nlmsghdr{.nlmsg_len = sizeof(nlmsghdr),
                            .nlmsg_type = type,
                            .nlmsg_flags = flags,
                            .nlmsg_seq = 0,
                            .nlmsg_pid = 0});
    }
    template <typename Structure>
    Datagram& attribute(std::uint16_t type, const Structure& value, std::size_t length) {
        add(rtattr{.rta_len = static_cast<unsigned short>(sizeof(rtattr) + length),
                   .rta_type = type});
        const auto* bytes = reinterpret_cast<const std::byte*>(&value);
        bytes_.insert(bytes_.end(), bytes, bytes + length);
        bytes_.resize((bytes_.size() + 3) / 4 * 4);
        return *this;
    }
    Datagram& end() {
        const auto length = static_cast<std::uint32_t>(bytes_.size() - start_);
        std::memcpy(&bytes_[start_], &length, sizeof length);
        return *this;
    }

    std::vector<std::byte> bytes_;

  private:
    std::size_t start_ = 0;
};

inet_diag_msg message(std::uint64_t cookie, std::uint32_t inode, const char* from = "192.0.2.1",
                      const char* to = "198.51.100.7") {
    inet_diag_msg m = {};
    const bool isNew = std::string(from).find(':') != std::string::npos;
    m.idiag_family = isNew ? AF_INET6 : AF_INET;
    ::inet_pton(m.idiag_family, from, m.id.idiag_src);
    ::inet_pton(m.idiag_family, to, m.id.idiag_dst);
    m.id.idiag_cookie[0] = static_cast<std::uint32_t>(cookie);
    m.id.idiag_cookie[1] = static_cast<std::uint32_t>(cookie >> 32);
    m.idiag_inode = inode;
    return m;
}

tcp_info info(std::uint64_t received, std::uint64_t sent, std::uint64_t acked) {
    tcp_info i = {};
    i.tcpi_bytes_received = received;
    i.tcpi_bytes_sent = sent;
    i.tcpi_bytes_acked = acked;
    return i;
}

Datagram oneConnection() {
    Datagram datagram;
    datagram.begin(SOCK_DIAG_BY_FAMILY)
        .add(message(0x100000002, 77))
        .attribute(INET_DIAG_INFO, info(1000, 500, 400), sizeof(tcp_info))
        .attribute(INET_DIAG_CGROUP_ID, std::uint64_t{4711}, sizeof(std::uint64_t))
        .end();
    return datagram;
}

const TcpConnection one{.cookie = 0x100000002,
                        .inode = 77,
                        .cgroup = 4711,
                        .isLocal = false,
                        .bytes = NetworkBytes{.received = 1000, .sent = 500}};

using Connections = std::vector<TcpConnection>;

TEST(SockDiagMessages, AConnectionIsToldWithItsBytesAndItsGroup) {
    Connections found;
    EXPECT_EQ(parseSockDiag(oneConnection().bytes_, found), SockDiagPart{});
    EXPECT_EQ(found, Connections{one});
}

TEST(SockDiagMessages, ADatagramHoldsManyAndTheEnd) {
    Datagram datagram = oneConnection();
    datagram.begin(SOCK_DIAG_BY_FAMILY, NLM_F_DUMP_INTR).add(message(9, 0)).end();
    datagram.begin(NLMSG_DONE).add(int{0}).end();
    Connections found;
    EXPECT_EQ(parseSockDiag(datagram.bytes_, found),
              (SockDiagPart{.isLast = true, .isInterrupted = true, .error = 0}));
    EXPECT_EQ(found, (Connections{one, {.cookie = 9}}));
}

TEST(SockDiagMessages, ARefusalIsAnError) {
    Datagram datagram;
    datagram.begin(NLMSG_ERROR).add(-ENOENT).add(nlmsghdr{}).end();
    Connections found;
    EXPECT_EQ(parseSockDiag(datagram.bytes_, found),
              (SockDiagPart{.isLast = true, .error = ENOENT}));
    EXPECT_TRUE(found.empty());
}

TEST(SockDiagMessages, AnOldKernelTellsWhatWasAcknowledged) {
    Datagram datagram;
    datagram.begin(SOCK_DIAG_BY_FAMILY)
        .add(message(1, 2))
        .attribute(INET_DIAG_INFO, info(1000, 500, 400), offsetof(tcp_info, tcpi_delivered))
        .end();
    Connections found;
    parseSockDiag(datagram.bytes_, found);
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].bytes, (NetworkBytes{.received = 1000, .sent = 400}));
}

TEST(SockDiagMessages, WithoutCountsTheBytesAreAbsent) {
    Datagram datagram;
    datagram.begin(SOCK_DIAG_BY_FAMILY)
        .add(message(1, 2))
        .attribute(INET_DIAG_INFO, info(1, 1, 1), 16)
        .end();
    Connections found;
    parseSockDiag(datagram.bytes_, found);
    EXPECT_EQ(found, (Connections{{.cookie = 1, .inode = 2}}));
}

TEST(SockDiagMessages, BothEndsOnThisMachineAreLocal) {
    const auto isLocal = [](const char* from, const char* to) {
        Datagram datagram;
        datagram.begin(SOCK_DIAG_BY_FAMILY).add(message(1, 2, from, to)).end();
        Connections found;
        parseSockDiag(datagram.bytes_, found);
        return found.at(0).isLocal;
    };
    EXPECT_TRUE(isLocal("127.0.0.1", "127.0.0.1"));
    EXPECT_TRUE(isLocal("127.0.0.1", "127.3.2.1"));
    EXPECT_TRUE(isLocal("::1", "::1"));
    EXPECT_TRUE(isLocal("::ffff:127.0.0.1", "::ffff:127.0.0.1"));
    EXPECT_TRUE(isLocal("192.0.2.1", "192.0.2.1"));
    EXPECT_TRUE(isLocal("2001:db8::1", "2001:db8::1"));
    EXPECT_FALSE(isLocal("192.0.2.1", "192.0.2.2"));
    EXPECT_FALSE(isLocal("2001:db8::1", "2001:db8::2"));
    EXPECT_FALSE(isLocal("::ffff:192.0.2.1", "::ffff:198.51.100.7"));
}

TEST(SockDiagMessages, EveryCutIsAnErrorOrJustFewerConnections) {
    const std::vector<std::byte> whole = oneConnection().bytes_;
    for (std::size_t length = 1; length < whole.size(); ++length) {
        Connections found;
        const SockDiagPart part = parseSockDiag(std::span(whole).first(length), found);
        EXPECT_EQ(part.error, EBADMSG) << length;
        EXPECT_TRUE(found.empty()) << length;
    }
}

TEST(SockDiagMessages, ALengthThatLiesEndsTheDatagram) {
    for (const std::uint32_t lie : {0u, 15u, 0xFFFFFFFFu, 100'000u}) {
        std::vector<std::byte> bytes = oneConnection().bytes_;
        std::memcpy(bytes.data(), &lie, sizeof lie);
        Connections found;
        EXPECT_EQ(parseSockDiag(bytes, found).error, EBADMSG) << lie;
        EXPECT_TRUE(found.empty());
    }
}

TEST(SockDiagMessages, AnAttributeThatLiesAboutItsLengthTakesItsConnectionWithIt) {
    for (const std::uint16_t lie : std::initializer_list<std::uint16_t>{0, 3, 0xFFFF}) {
        Datagram datagram = oneConnection();
        std::memcpy(&datagram.bytes_[sizeof(nlmsghdr) + sizeof(inet_diag_msg)], &lie, sizeof lie);
        Connections found;
        EXPECT_EQ(parseSockDiag(datagram.bytes_, found).error, EBADMSG) << lie;
        EXPECT_TRUE(found.empty());
    }
}

TEST(SockDiagMessages, TheLargestCountsAreTakenAsTheyAre) {
    constexpr std::uint64_t huge = ~std::uint64_t{0};
    Datagram datagram;
    datagram.begin(SOCK_DIAG_BY_FAMILY)
        .add(message(huge, ~0u))
        .attribute(INET_DIAG_INFO, info(huge, std::uint64_t{1} << 63, 0), sizeof(tcp_info))
        .end();
    Connections found;
    parseSockDiag(datagram.bytes_, found);
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].cookie, huge);
    EXPECT_EQ(found[0].bytes, (NetworkBytes{.received = huge, .sent = std::uint64_t{1} << 63}));
}

} // namespace
} // namespace tavero
