#include "platform/linux/network/LinuxWiFi.h"

#include "platform/linux/TemporaryTree.h"
#include "platform/linux/network/FakeNetlink.h"

#include <gtest/gtest.h>

#include <chrono>

namespace tavero {
namespace {

constexpr std::chrono::minutes plenty{5};

TEST(LinuxWiFi, AMachineWithoutAWiFiInterfaceIsNotAsked) {
    const TemporaryTree tree{{"sys/class/net/eth0/type", "1\n"}};
    FakeNetlink kernel;
    LinuxWiFi wifi(tree.root(), kernel.opener(), plenty);
    EXPECT_EQ(wifi.link(), std::nullopt);
    EXPECT_EQ(kernel.requests, 0);
    tree.write("sys/class/net/wlan0/uevent", "DEVTYPE=wlan\n"); // a stick was plugged in
    EXPECT_EQ(wifi.link(), std::nullopt);
    EXPECT_EQ(kernel.requests, 1);
}

TEST(LinuxWiFi, ASystemThatRefusesTheQuestionHasNoLink) {
    const TemporaryTree tree{{"sys/class/net/wlan0/uevent", "DEVTYPE=wlan\n"}};
    FakeNetlink kernel;
    kernel.refusesToOpen = true;
    EXPECT_EQ(LinuxWiFi(tree.root(), kernel.opener(), plenty).link(), std::nullopt);
}

TEST(LinuxWiFi, OnThisMachine) {
    const auto link = LinuxWiFi("/", openNetlink, plenty).link();
    if (link) {
        EXPECT_LT(link->rssi, 0);
    }
}

} // namespace
} // namespace tavero
