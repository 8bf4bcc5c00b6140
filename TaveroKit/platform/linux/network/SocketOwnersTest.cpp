#include "platform/linux/network/SocketOwners.h"

#include "platform/linux/TemporaryTree.h"
#include "platform/linux/network/LinuxNetworkUsage.h"
#include "platform/linux/processes/AsNobody.h"

#include <gtest/gtest.h>

#include <string>

#include <sys/stat.h>

namespace tavero {
namespace {

// A machine with control groups, some of whose processes hide what they have open. What is asked of
// it must be asked as nobody, since nothing is hidden from root.
class SocketOwnersTest : public testing::Test {
  protected:
    SocketOwnersTest() { ::chmod(tree.root().c_str(), 0755); }
    ~SocketOwnersTest() override {
        for (const std::string& folder : hidden_) ::chmod((tree.root() / folder).c_str(), 0700);
    }

    std::uint64_t group(const std::string& path, const std::string& pids) {
        const std::string folder = "sys/fs/cgroup/" + path;
        tree.write(folder + "/cgroup.procs", pids);
        struct stat status = {};
        ::stat((tree.root() / folder).c_str(), &status);
        return status.st_ino;
    }
    void show(int pid) { tree.folder("proc/" + std::to_string(pid) + "/fd"); }
    void hide(int pid) {
        show(pid);
        hidden_.push_back("proc/" + std::to_string(pid) + "/fd");
        ::chmod((tree.root() / hidden_.back()).c_str(), 0);
    }

    TemporaryTree tree{{"proc/stat", ""}};
    SocketOwners owners{tree.root(), std::make_shared<ProcessFiles>(tree.root())};

  private:
    std::vector<std::string> hidden_;
};

TEST_F(SocketOwnersTest, OfAServiceTheFirstHiddenProcessIsTheOwner) {
    const std::uint64_t id = group("system.slice/cups.service", "299\n300\n301\n");
    show(299);
    hide(300);
    hide(301);
    const AsNobody nobody;
    EXPECT_EQ(owners.ofGroup(id), 300);
}

TEST_F(SocketOwnersTest, OfAScopeOnlyASingleHiddenProcessIsTheOwner) {
    const std::uint64_t one = group("user.slice/app-browser-1.scope", "400\n401\n");
    const std::uint64_t two = group("user.slice/session-2.scope", "500\n501\n");
    show(400);
    hide(401);
    hide(500);
    hide(501);
    const AsNobody nobody;
    EXPECT_EQ(owners.ofGroup(one), 401);
    EXPECT_EQ(owners.ofGroup(two), std::nullopt);
}

TEST_F(SocketOwnersTest, AUsersManagerIsNoService) {
    const std::uint64_t id = group("user.slice/user@1000.service", "600\n601\n");
    hide(600);
    hide(601);
    const AsNobody nobody;
    EXPECT_EQ(owners.ofGroup(id), std::nullopt);
}

TEST_F(SocketOwnersTest, AProcessThatShowsItsFilesAndLacksTheSocketIsNotTheOwner) {
    const std::uint64_t id = group("system.slice/cups.service", "300\n");
    show(300);
    const AsNobody nobody;
    EXPECT_EQ(owners.ofGroup(id), std::nullopt);
}

TEST_F(SocketOwnersTest, AGroupThatIsMadeLaterIsFoundAndOneThatIsGoneIsNobodys) {
    const std::uint64_t first = group("system.slice/a.service", "300\n");
    hide(300);
    {
        const AsNobody nobody;
        EXPECT_EQ(owners.ofGroup(first), 300);
    }
    const std::uint64_t second = group("system.slice/b.service", "301\n");
    hide(301);
    tree.remove("sys/fs/cgroup/system.slice/a.service");
    owners.forgetGroups();
    const AsNobody nobody;
    EXPECT_EQ(owners.ofGroup(second), 301);
    EXPECT_EQ(owners.ofGroup(first), std::nullopt);
    EXPECT_EQ(owners.ofGroup(0), std::nullopt);
    EXPECT_EQ(owners.ofGroup(~std::uint64_t{0}), std::nullopt);
}

TEST_F(SocketOwnersTest, TheListOfAGroupMayHoldAnything) {
    const std::uint64_t id =
        group("system.slice/odd.service", "\nabc\n0\n99999999999999999999\n-5\n300");
    hide(300);
    const AsNobody nobody;
    EXPECT_EQ(owners.ofGroup(id), 300);
}

TEST_F(SocketOwnersTest, AHiddenProcessGetsTheBytesOfItsGroup) {
    struct OneConnection : SockDiagSource {
        explicit OneConnection(std::uint64_t group) : group_(group) {}
        void read(TcpConnections& connections) override {
            bytes_ += 10;
            connections = {.open = {{.cookie = 1,
                                     .inode = 77,
                                     .cgroup = group_,
                                     .bytes = NetworkBytes{bytes_, 0}}},
                           .closed = {},
                           .isComplete = true};
        }
        std::uint64_t group_;
        std::uint64_t bytes_ = 0;
    };
    const std::uint64_t id = group("system.slice/cups.service", "300\n");
    hide(300);
    const AsNobody nobody;
    LinuxNetworkUsage usage(std::make_unique<OneConnection>(id), std::move(owners));
    usage.read();
    EXPECT_EQ(usage.read(), (std::unordered_map<std::int32_t, NetworkBytes>{{300, {10, 0}}}));
}

} // namespace
} // namespace tavero
