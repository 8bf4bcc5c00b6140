#include "platform/linux/network/LinuxNetworkUsage.h"

#include "platform/linux/TemporaryTree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <string>

namespace tavero {
namespace {

struct FakeSockDiag : SockDiagSource {
    explicit FakeSockDiag(TcpConnections& now) : now_(now) {}
    void read(TcpConnections& connections) override {
        connections = now_;
        now_.closed.clear();
    }
    TcpConnections& now_;
};

// A machine whose processes hold sockets.
class LinuxNetworkUsageTest : public testing::Test {
  protected:
    using Usage = std::unordered_map<std::int32_t, NetworkBytes>;

    void hold(int pid, int number, std::uint64_t inode) {
        tree.link(fd(pid, number), "socket:[" + std::to_string(inode) + "]");
    }
    void release(int pid, int number) { tree.remove(fd(pid, number)); }
    void open(std::uint64_t cookie, std::uint64_t inode, NetworkBytes bytes = {}) {
        now.open.push_back({.cookie = cookie, .inode = inode, .bytes = bytes});
    }
    TcpConnection& connection(std::uint64_t cookie) {
        return *std::find_if(now.open.begin(), now.open.end(),
                             [&](const TcpConnection& c) { return c.cookie == cookie; });
    }
    // The kernel names neither the socket nor its group then.
    void close(std::uint64_t cookie, NetworkBytes final) {
        std::erase_if(now.open, [&](const TcpConnection& c) { return c.cookie == cookie; });
        now.closed.push_back({.cookie = cookie, .bytes = final});
    }
    LinuxNetworkUsage usage(LinuxNetworkUsage::Local local = LinuxNetworkUsage::Local::isLeftOut) {
        return {std::make_unique<FakeSockDiag>(now),
                SocketOwners(tree.root(), std::make_shared<ProcessFiles>(tree.root())), local};
    }

    TemporaryTree tree;
    TcpConnections now{.open = {}, .closed = {}, .isComplete = true};

  private:
    static std::string fd(int pid, int number) {
        return "proc/" + std::to_string(pid) + "/fd/" + std::to_string(number);
    }
};

TEST_F(LinuxNetworkUsageTest, TheFirstReadIsEmptyAndTheSecondGivesTheGrowthOnly) {
    hold(100, 3, 77);
    open(1, 77, {1000, 500});
    LinuxNetworkUsage reader = usage();
    EXPECT_EQ(reader.read(), Usage{});
    connection(1).bytes = NetworkBytes{1010, 507};
    EXPECT_EQ(reader.read(), (Usage{{100, {10, 7}}}));
    EXPECT_EQ(reader.read(), Usage{});
}

TEST_F(LinuxNetworkUsageTest, AConnectionThatOpensAndClosesReportsItsFullBytesOnce) {
    LinuxNetworkUsage reader = usage();
    reader.read();
    hold(100, 3, 77);
    open(1, 77, {40, 20});
    EXPECT_EQ(reader.read(), (Usage{{100, {40, 20}}}));
    close(1, {100, 50});
    EXPECT_EQ(reader.read(), (Usage{{100, {60, 30}}}));
    now.closed.push_back({.cookie = 1, .bytes = NetworkBytes{100, 50}});
    EXPECT_EQ(reader.read(), Usage{});
}

TEST_F(LinuxNetworkUsageTest, AConnectionThatNoReadSawIsNobodys) {
    hold(100, 3, 77);
    LinuxNetworkUsage reader = usage();
    reader.read();
    close(1, {100, 50});
    EXPECT_EQ(reader.read(), Usage{});
}

TEST_F(LinuxNetworkUsageTest, TwoConnectionsOfOneProcessAddUp) {
    hold(100, 3, 77);
    hold(100, 4, 78);
    hold(200, 4, 79);
    open(1, 77);
    open(2, 78);
    open(3, 79);
    LinuxNetworkUsage reader = usage();
    reader.read();
    for (TcpConnection& c : now.open) c.bytes = NetworkBytes{10, 1};
    EXPECT_EQ(reader.read(), (Usage{{100, {20, 2}}, {200, {10, 1}}}));
}

TEST_F(LinuxNetworkUsageTest, AnOwnerFoundLaterGetsAllBytesThen) {
    LinuxNetworkUsage reader = usage();
    reader.read();
    open(1, 0, {30, 3}); // waits to be accepted
    EXPECT_EQ(reader.read(), Usage{});
    connection(1).bytes = NetworkBytes{40, 4};
    connection(1).inode = 77;
    hold(100, 3, 77);
    EXPECT_EQ(reader.read(), (Usage{{100, {40, 4}}}));
}

TEST_F(LinuxNetworkUsageTest, ASocketThatWasLookedForInVainIsFoundWithinAFewReads) {
    open(1, 77);
    LinuxNetworkUsage reader = usage();
    reader.read();
    connection(1).bytes = NetworkBytes{40, 4};
    EXPECT_EQ(reader.read(), Usage{});
    hold(100, 3, 77);
    Usage later;
    for (int reads = 0; reads < 4 && later.empty(); ++reads) later = reader.read();
    EXPECT_EQ(later, (Usage{{100, {40, 4}}}));
}

TEST_F(LinuxNetworkUsageTest, WhatNobodyIsFoundToHoldIsDroppedWhenItCloses) {
    LinuxNetworkUsage reader = usage();
    reader.read();
    open(1, 77, {40, 4});
    EXPECT_EQ(reader.read(), Usage{});
    close(1, {50, 5});
    EXPECT_EQ(reader.read(), Usage{});
    hold(100, 3, 77);
    EXPECT_EQ(reader.read(), Usage{});
}

TEST_F(LinuxNetworkUsageTest, ACounterThatFallsGivesZeroAndIsTheNewBaseline) {
    hold(100, 3, 77);
    open(1, 77, {1000, 1000});
    LinuxNetworkUsage reader = usage();
    reader.read();
    connection(1).bytes = NetworkBytes{400, 1001};
    EXPECT_EQ(reader.read(), (Usage{{100, {0, 1}}}));
    connection(1).bytes = NetworkBytes{500, 1001};
    EXPECT_EQ(reader.read(), (Usage{{100, {100, 0}}}));
}

TEST_F(LinuxNetworkUsageTest, ASumPast64BitsStaysAtTheLargest) {
    constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    hold(100, 3, 77);
    hold(100, 4, 78);
    LinuxNetworkUsage reader = usage();
    reader.read();
    open(1, 77, {most, std::uint64_t{1} << 63});
    open(2, 78, {5, std::uint64_t{1} << 63});
    EXPECT_EQ(reader.read(), (Usage{{100, {most, most}}}));
}

TEST_F(LinuxNetworkUsageTest, ASocketThatIsHandedOnCountsForItsNewHolder) {
    hold(100, 3, 77);
    open(1, 77);
    LinuxNetworkUsage reader = usage();
    reader.read();
    connection(1).bytes = NetworkBytes{10, 0};
    EXPECT_EQ(reader.read(), (Usage{{100, {10, 0}}}));
    release(100, 3);
    hold(200, 5, 77);
    connection(1).bytes = NetworkBytes{15, 0};
    EXPECT_EQ(reader.read(), (Usage{{200, {5, 0}}}));
}

TEST_F(LinuxNetworkUsageTest, ANumberThatIsUsedAgainIsNotTakenForTheOldSocket) {
    hold(100, 3, 77);
    open(1, 77);
    LinuxNetworkUsage reader = usage();
    reader.read();
    release(100, 3);
    hold(100, 3, 88);
    connection(1).bytes = NetworkBytes{10, 0};
    EXPECT_EQ(reader.read(), Usage{});
}

TEST_F(LinuxNetworkUsageTest, ConnectionsAreToldApartByTheirCookieNotTheirInode) {
    hold(100, 3, 77);
    open(1, 77, {1000, 0});
    LinuxNetworkUsage reader = usage();
    reader.read();
    close(1, {1000, 0});
    open(2, 77, {5, 0});
    EXPECT_EQ(reader.read(), (Usage{{100, {5, 0}}}));
}

TEST_F(LinuxNetworkUsageTest, AClosingConnectionKeepsItsOwner) {
    hold(100, 3, 77);
    open(1, 77);
    LinuxNetworkUsage reader = usage();
    reader.read();
    release(100, 3);
    connection(1).inode = 0; // the process is done with it, the kernel still sends
    connection(1).bytes = NetworkBytes{0, 9};
    EXPECT_EQ(reader.read(), (Usage{{100, {0, 9}}}));
}

TEST_F(LinuxNetworkUsageTest, ADumpThatLacksAConnectionForgetsNothing) {
    hold(100, 3, 77);
    open(1, 77, {1000, 0});
    LinuxNetworkUsage reader = usage();
    reader.read();
    const TcpConnections whole = now;
    now.open.clear();
    EXPECT_EQ(reader.read(), Usage{}); // passed over
    now.isComplete = false;
    for (int reads = 0; reads < 10; ++reads) EXPECT_EQ(reader.read(), Usage{}); // cut short
    now = whole;
    connection(1).bytes = NetworkBytes{1010, 0};
    EXPECT_EQ(reader.read(), (Usage{{100, {10, 0}}}));
}

TEST_F(LinuxNetworkUsageTest, TheBaselineWaitsForAWholeDump) {
    hold(100, 3, 77);
    now.isComplete = false;
    LinuxNetworkUsage reader = usage();
    EXPECT_EQ(reader.read(), Usage{});
    open(1, 77, {1000, 0});
    now.isComplete = true;
    EXPECT_EQ(reader.read(), Usage{});
    connection(1).bytes = NetworkBytes{1001, 0};
    EXPECT_EQ(reader.read(), (Usage{{100, {1, 0}}}));
}

TEST_F(LinuxNetworkUsageTest, BytesBetweenThisMachineAndItselfCountOnlyIfAskedFor) {
    hold(100, 3, 77);
    LinuxNetworkUsage usual = usage();
    LinuxNetworkUsage all = usage(LinuxNetworkUsage::Local::counts);
    usual.read();
    all.read();
    open(1, 77, {10, 10});
    connection(1).isLocal = true;
    EXPECT_EQ(usual.read(), Usage{});
    EXPECT_EQ(all.read(), (Usage{{100, {10, 10}}}));
}

} // namespace
} // namespace tavero
