#include "platform/linux/network/LinuxConnection.h"

#include "platform/linux/TemporaryTree.h"
#include "platform/linux/network/FakeNetlink.h"

#include <gtest/gtest.h>

#include <linux/rtnetlink.h>

#include <chrono>
#include <future>
#include <memory>
#include <string>
#include <vector>

namespace tavero {
namespace {

constexpr std::chrono::minutes plenty{5};

class Connection : public testing::Test {
  protected:
    Connection() {
        tree_.write("sys/class/net/wlan0/ifindex", "2\n");
        tree_.write("sys/class/net/wlan0/uevent", "DEVTYPE=wlan\n");
        tree_.write("sys/class/net/tun0/ifindex", "3\n");
        kernel_.answer = [this](const NetlinkMessage& request) { return answer(request); };
    }

    FakeNetlink::Answer answer(const NetlinkMessage& request) {
        if (refuses_) return {ending(request, -1)};
        FakeNetlink::Answer datagrams;
        for (const std::uint32_t interface : defaults_) {
            rtmsg route{};
            route.rtm_table = RT_TABLE_MAIN;
            route.rtm_type = RTN_UNICAST;
            NetlinkWriter message(RTM_NEWROUTE, 0, request.sequence);
            message.record(route).attribute(RTA_OIF, interface);
            datagrams.push_back(datagram(message));
        }
        datagrams.push_back(ending(request));
        return datagrams;
    }

    // What the routes are now; the kernel gives notice.
    void change(std::vector<std::uint32_t> defaults) {
        defaults_ = std::move(defaults);
        kernel_.hasNotices = true;
    }

    TemporaryTree tree_;
    FakeNetlink kernel_;
    std::vector<std::uint32_t> defaults_;
    bool refuses_ = false;
};

TEST_F(Connection, FollowsTheKernelsNotices) {
    LinuxConnection connection(tree_.root(), kernel_.opener(), plenty);
    EXPECT_EQ(connection.current(), ConnectionKind::offline);
    change({2});
    EXPECT_EQ(connection.current(), ConnectionKind::wifi);
    change({3});
    EXPECT_EQ(connection.current(), ConnectionKind::other);
    change({});
    EXPECT_EQ(connection.current(), ConnectionKind::offline);
}

TEST_F(Connection, WithoutANoticeNothingIsAskedAgain) {
    LinuxConnection connection(tree_.root(), kernel_.opener(), plenty);
    connection.current();
    const int asked = kernel_.requests;
    EXPECT_EQ(connection.current(), ConnectionKind::offline);
    EXPECT_EQ(kernel_.requests, asked);
}

TEST_F(Connection, BeforeAnythingIsKnownItIsOther) {
    kernel_.refusesToOpen = true;
    LinuxConnection connection(tree_.root(), kernel_.opener(), plenty);
    EXPECT_EQ(connection.current(), ConnectionKind::other);
    kernel_.refusesToOpen = false;
    defaults_ = {2};
    EXPECT_EQ(connection.current(), ConnectionKind::wifi);
}

TEST_F(Connection, ARefusalLeavesItAsItWasAndIsAskedAgain) {
    LinuxConnection connection(tree_.root(), kernel_.opener(), plenty);
    change({2});
    EXPECT_EQ(connection.current(), ConnectionKind::wifi);
    refuses_ = true;
    change({});
    EXPECT_EQ(connection.current(), ConnectionKind::wifi);
    refuses_ = false;
    EXPECT_EQ(connection.current(), ConnectionKind::offline);
}

TEST_F(Connection, AKernelThatHoldsItsLockHoldsUpNobody) {
    std::promise<void> release;
    const auto over = std::make_shared<std::promise<void>>();
    {
        const auto open = [notices = kernel_.opener(), held = release.get_future().share(),
                           over](int protocol, std::uint32_t groups) {
            if (groups != 0) return notices(protocol, groups);
            held.wait(); // the question
            over->set_value();
            return std::unique_ptr<NetlinkChannel>();
        };
        LinuxConnection connection(tree_.root(), open, std::chrono::milliseconds(1));
        EXPECT_EQ(connection.current(), ConnectionKind::other);
        EXPECT_EQ(connection.current(), ConnectionKind::other);
    }
    release.set_value();
    over->get_future().wait();
}

TEST(LinuxConnection, OnThisMachine) {
    LinuxConnection connection("/", openNetlink, plenty);
    const ConnectionKind kind = connection.current();
    const auto channel = openNetlink(NETLINK_ROUTE, 0);
    if (!channel) {
        EXPECT_EQ(kind, ConnectionKind::other);
    }
    EXPECT_EQ(connection.current(), kind);
}

} // namespace
} // namespace tavero
