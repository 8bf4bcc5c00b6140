#include "platform/linux/network/LinuxInterfaceKind.h"

#include "platform/linux/TemporaryTree.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tavero {
namespace {

// A machine with one interface of each sort, numbered as they stand here.
class InterfaceKind : public testing::Test {
  protected:
    InterfaceKind() {
        add("lo", 1, "772");
        add("wlan0", 2, "1", "DEVTYPE=wlan\n");
        device("wlan0");
        tree_.folder("wlan0/phy80211");
        add("eth0", 3, "1");
        device("eth0");
        add("wwan0", 4, "65534", "INTERFACE=wwan0\nDEVTYPE=wwan\n");
        device("wwan0");
        add("tun0", 5, "65534");
        add("ib0", 6, "32");
        device("ib0");
        add("br0", 7, "1", "DEVTYPE=bridge\n");
        below("br0", "eth0");
        below("br0", "tun0");
        add("br0.12", 8, "1", "DEVTYPE=vlan\n");
        below("br0.12", "br0");
        add("eth0@host", 9, "1"); // a container's end
    }

    void add(const std::string& name, int number, const std::string& type,
             const std::string& uevent = "") {
        tree_.write(name + "/ifindex", std::to_string(number) + "\n");
        tree_.write(name + "/type", type + "\n");
        tree_.write(name + "/uevent", uevent);
        tree_.write(name + "/operstate", "up\n");
    }
    void device(const std::string& name) { tree_.link(name + "/device", "../../nowhere"); }
    void below(const std::string& upper, const std::string& lower) {
        tree_.link(upper + "/lower_" + lower, "../" + lower);
    }
    ConnectionKind kind(const std::string& name) { return interfaceKind(tree_.root() / name); }
    ConnectionKind kind(const WaysOut& ways) { return connectionKind(ways, tree_.root()); }

    TemporaryTree tree_;
};

TEST_F(InterfaceKind, OfAnInterfaceWithADevice) {
    EXPECT_EQ(kind("wlan0"), ConnectionKind::wifi);
    EXPECT_EQ(kind("eth0"), ConnectionKind::wired);
    EXPECT_EQ(kind("wwan0"), ConnectionKind::cellular);
    EXPECT_EQ(kind("ib0"), ConnectionKind::other);
}

TEST_F(InterfaceKind, OfAnOldWiFiDriverIsToldByItsFolder) {
    add("eth1", 20, "1");
    device("eth1");
    tree_.folder("eth1/wireless");
    EXPECT_EQ(kind("eth1"), ConnectionKind::wifi);
}

TEST_F(InterfaceKind, OfOneMadeInTheKernelIsThatOfTheBestBelow) {
    EXPECT_EQ(kind("br0"), ConnectionKind::wired);
    EXPECT_EQ(kind("br0.12"), ConnectionKind::wired);
    EXPECT_EQ(kind("tun0"), ConnectionKind::other);
    EXPECT_EQ(kind("eth0@host"), ConnectionKind::other);
    EXPECT_EQ(kind("lo"), ConnectionKind::other);
    EXPECT_EQ(kind("none"), ConnectionKind::other);
}

TEST_F(InterfaceKind, OfABondIgnoresALinkThatIsDown) {
    add("bond0", 21, "1");
    below("bond0", "wlan0");
    below("bond0", "eth0");
    EXPECT_EQ(kind("bond0"), ConnectionKind::wifi);
    tree_.write("wlan0/operstate", "down\n");
    EXPECT_EQ(kind("bond0"), ConnectionKind::wired);
}

TEST_F(InterfaceKind, LinksInACircleEnd) {
    add("loop", 22, "1");
    below("loop", "loop");
    EXPECT_EQ(kind("loop"), ConnectionKind::other);
}

TEST_F(InterfaceKind, WithoutADefaultRouteTheMachineIsOffline) {
    EXPECT_EQ(kind(WaysOut{}), ConnectionKind::offline);
    EXPECT_EQ(kind(WaysOut{.gateways = {2}}), ConnectionKind::offline);
}

TEST_F(InterfaceKind, WiFiWinsOverWiredOverCellularOverOther) {
    EXPECT_EQ(kind(WaysOut{.defaults = {5, 4, 3, 2}}), ConnectionKind::wifi);
    EXPECT_EQ(kind(WaysOut{.defaults = {5, 4, 3}}), ConnectionKind::wired);
    EXPECT_EQ(kind(WaysOut{.defaults = {5, 4}}), ConnectionKind::cellular);
    EXPECT_EQ(kind(WaysOut{.defaults = {5}}), ConnectionKind::other);
    EXPECT_EQ(kind(WaysOut{.defaults = {77}}), ConnectionKind::other);
}

TEST_F(InterfaceKind, ATunnelThatTookAllTrafficGoesOverTheRouterBesideIt) {
    EXPECT_EQ(kind(WaysOut{.defaults = {5}, .gateways = {2}}), ConnectionKind::wifi);
    EXPECT_EQ(kind(WaysOut{.defaults = {3}, .gateways = {2}}), ConnectionKind::wired);
}

} // namespace
} // namespace tavero
