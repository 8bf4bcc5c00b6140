#include "platform/linux/LinuxNetwork.h"

#include "counters/NetworkReader.h"
#include "platform/linux/TemporaryTree.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <random>
#include <string>

namespace tavero {
namespace {

// A machine whose interfaces can be changed.
struct Interfaces {
    TemporaryTree tree{{"sys/class/net/bonding_masters", "\n"}};
    int lastIndex = 1;

    void attach(const std::string& name, std::uint64_t in, std::uint64_t out) {
        attach(name, ++lastIndex, in, out);
    }
    void attach(const std::string& name, int index, std::uint64_t in, std::uint64_t out) {
        tree.remove("sys/devices/" + name);
        tree.write("sys/devices/" + name + "/ifindex", std::to_string(index) + "\n");
        tree.link("sys/devices/" + name + "/device", "../card");
        set(name, in, out);
        tree.link("sys/class/net/" + name, "../../devices/" + name);
    }
    void attachVirtual(const std::string& name, std::uint64_t in, std::uint64_t out) {
        attach(name, in, out);
        tree.remove("sys/devices/" + name + "/device");
    }
    void detach(const std::string& name) { tree.remove("sys/class/net/" + name); }
    void set(const std::string& name, std::uint64_t in, std::uint64_t out) {
        tree.write("sys/devices/" + name + "/statistics/rx_bytes", std::to_string(in) + "\n");
        tree.write("sys/devices/" + name + "/statistics/tx_bytes", std::to_string(out) + "\n");
    }
};

using Sum = NetworkSnapshot;

TEST(LinuxNetwork, OnlyPhysicalInterfacesCount) {
    Interfaces interfaces;
    interfaces.attach("eth0", 100, 10);
    interfaces.attach("wlan0", 50, 5);
    for (const char* name : {"lo", "docker0", "veth1", "tun0", "bond0", "eth0.7"})
        interfaces.attachVirtual(name, 1000, 1000);
    LinuxNetwork network(interfaces.tree.root());
    EXPECT_EQ(NetworkReader::read(network), (Sum{.bytesIn = 150, .bytesOut = 15}));
}

TEST(LinuxNetwork, WithoutAPhysicalInterfaceTheSumsAreZero) {
    Interfaces interfaces;
    interfaces.attachVirtual("lo", 1000, 1000);
    LinuxNetwork network(interfaces.tree.root());
    EXPECT_EQ(NetworkReader::read(network), Sum{});
}

TEST(LinuxNetwork, WithoutItsFolderItIsAbsentUntilTheFolderAppears) {
    Interfaces later;
    later.attach("eth0", 100, 10);
    const TemporaryTree tree;
    LinuxNetwork network(tree.root());
    EXPECT_EQ(NetworkReader::read(network), std::nullopt);
    tree.link("sys", later.tree.root() / "sys");
    EXPECT_EQ(NetworkReader::read(network), (Sum{.bytesIn = 100, .bytesOut = 10}));
}

TEST(LinuxNetwork, AnInterfaceThatLeavesKeepsItsCount) {
    Interfaces interfaces;
    interfaces.attach("eth0", 100, 10);
    interfaces.attach("usb0", 7, 7);
    LinuxNetwork network(interfaces.tree.root());
    EXPECT_EQ(NetworkReader::read(network), (Sum{.bytesIn = 107, .bytesOut = 17}));
    interfaces.detach("usb0");
    EXPECT_EQ(NetworkReader::read(network), (Sum{.bytesIn = 107, .bytesOut = 17}));
    interfaces.attach("usb0", 3, 4); // plugged in again, it counts from 0
    EXPECT_EQ(NetworkReader::read(network), (Sum{.bytesIn = 110, .bytesOut = 21}));
}

TEST(LinuxNetwork, ANewNameIsNoNewInterface) {
    Interfaces interfaces;
    interfaces.attach("eth0", 4, 100, 10);
    LinuxNetwork network(interfaces.tree.root());
    NetworkReader::read(network);
    interfaces.detach("eth0");
    interfaces.attach("enp3s0", 4, 120, 12);
    EXPECT_EQ(NetworkReader::read(network), (Sum{.bytesIn = 120, .bytesOut = 12}));
}

TEST(LinuxNetwork, AVirtualInterfaceOfTheSameNameDoesNotCount) {
    Interfaces interfaces;
    interfaces.attach("eth0", 100, 10);
    LinuxNetwork network(interfaces.tree.root());
    NetworkReader::read(network);
    interfaces.detach("eth0");
    NetworkReader::read(network);
    interfaces.attachVirtual("eth0", 5000, 5000);
    EXPECT_EQ(NetworkReader::read(network), (Sum{.bytesIn = 100, .bytesOut = 10}));
}

TEST(LinuxNetwork, ACounterThatStepsBackMakesNoFalseStep) {
    Interfaces interfaces;
    interfaces.attach("eth0", 4'294'967'290, 10);
    LinuxNetwork network(interfaces.tree.root());
    NetworkReader::read(network);
    interfaces.set("eth0", 5, 11);
    EXPECT_EQ(NetworkReader::read(network), (Sum{.bytesIn = 4'294'967'290, .bytesOut = 11}));
    interfaces.set("eth0", 9, 11);
    EXPECT_EQ(NetworkReader::read(network), (Sum{.bytesIn = 4'294'967'294, .bytesOut = 11}));
}

TEST(LinuxNetwork, AFigureThatBreaksKeepsTheLastCount) {
    Interfaces interfaces;
    interfaces.attach("eth0", 100, 10);
    LinuxNetwork network(interfaces.tree.root());
    NetworkReader::read(network);
    for (const char* text : {"", "x", "-1", "\n"}) {
        interfaces.tree.write("sys/devices/eth0/statistics/rx_bytes", text);
        EXPECT_EQ(NetworkReader::read(network), (Sum{.bytesIn = 100, .bytesOut = 10})) << text;
    }
}

TEST(LinuxNetwork, WithoutAnIndexTheNameIdentifies) {
    Interfaces interfaces;
    interfaces.attach("eth0", 100, 10);
    interfaces.attach("eth1", 7, 7);
    interfaces.tree.remove("sys/devices/eth0/ifindex");
    interfaces.tree.remove("sys/devices/eth1/ifindex");
    LinuxNetwork network(interfaces.tree.root());
    EXPECT_EQ(NetworkReader::read(network), (Sum{.bytesIn = 107, .bytesOut = 17}));
    interfaces.attachVirtual("veth1", 9, 9);
    EXPECT_EQ(NetworkReader::read(network), (Sum{.bytesIn = 107, .bytesOut = 17}));
}

// Whatever happens to the interfaces, the sums follow what went through them and nothing else.
TEST(LinuxNetwork, SumsFollowOnlyWhatWentThrough) {
    for (unsigned seed = 0; seed < 8; ++seed) {
        std::mt19937 random(seed);
        const auto pick = [&](unsigned below) { return static_cast<unsigned>(random() % below); };
        Interfaces interfaces;
        LinuxNetwork network(interfaces.tree.root());
        std::map<std::string, std::uint64_t> raw;
        Sum expected;
        const auto through = [&](std::uint64_t bytes) {
            expected.bytesIn += bytes;
            expected.bytesOut += 3 * bytes;
        };
        for (int step = 0; step < 60; ++step) {
            const std::string name = "eth" + std::to_string(pick(3));
            if (!raw.contains(name)) {
                raw[name] = pick(1000);
                interfaces.attach(name, raw[name], 3 * raw[name]);
                through(raw[name]);
            } else if (pick(4) == 0) {
                raw.erase(name);
                interfaces.detach(name);
            } else if (pick(5) == 0) {
                raw[name] /= 2;
                interfaces.set(name, raw[name], 3 * raw[name]);
            } else {
                const unsigned bytes = pick(100);
                raw[name] += bytes;
                interfaces.set(name, raw[name], 3 * raw[name]);
                through(bytes);
            }
            ASSERT_EQ(NetworkReader::read(network), expected)
                << "seed " << seed << ", step " << step;
        }
    }
}

} // namespace
} // namespace tavero
