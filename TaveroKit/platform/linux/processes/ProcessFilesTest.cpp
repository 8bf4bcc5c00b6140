#include "platform/linux/processes/ProcessFiles.h"

#include "platform/linux/TemporaryTree.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tavero {
namespace {

class ProcessFilesTest : public testing::Test {
  protected:
    using Holders = std::unordered_map<std::uint64_t, HeldFile>;

    void hold(int pid, int number, const std::string& target) {
        tree.link(fd(pid, number), target);
    }
    void release(int pid, int number) { tree.remove(fd(pid, number)); }
    Holders holders(std::vector<std::uint64_t> sockets) { return files.holders(sockets); }

    TemporaryTree tree{{"proc/stat", ""}};
    ProcessFiles files{tree.root()};

  private:
    static std::string fd(int pid, int number) {
        return "proc/" + std::to_string(pid) + "/fd/" + std::to_string(number);
    }
};

TEST_F(ProcessFilesTest, AHolderIsFoundBySocket) {
    hold(10, 3, "socket:[77]");
    hold(20, 4, "socket:[78]");
    hold(20, 5, "/dev/null");
    EXPECT_EQ(holders({77, 78, 79}), (Holders{{77, {10, 3}}, {78, {20, 4}}}));
    EXPECT_EQ(holders({}), Holders{});
}

TEST_F(ProcessFilesTest, AProcessThatCameLaterIsFoundToo) {
    hold(10, 3, "socket:[77]");
    holders({77});
    hold(5, 1, "socket:[80]");
    hold(30, 1, "socket:[81]");
    hold(10, 4, "socket:[82]");
    EXPECT_EQ(holders({80, 81, 82}), (Holders{{80, {5, 1}}, {81, {30, 1}}, {82, {10, 4}}}));
}

TEST_F(ProcessFilesTest, AFileIsASocketForAsLongAsItIsOpen) {
    hold(10, 3, "socket:[77]");
    EXPECT_TRUE(files.isSocket({10, 3}, 77));
    EXPECT_FALSE(files.isSocket({10, 3}, 7));
    release(10, 3);
    EXPECT_FALSE(files.isSocket({10, 3}, 77));
}

TEST_F(ProcessFilesTest, OddLinksAreNoSockets) {
    int number = 0;
    for (const char* target :
         {"socket:[]", "socket:[77", "socket:[7x]", "socket:[-77]", "socket:[99999999999999999999]",
          "socket:77", "pipe:[77]", "socket:[ 77]"})
        hold(10, ++number, target);
    hold(10, 50, "socket:[" + std::string(200, '7') + "]");
    EXPECT_EQ(holders({77, 7}), Holders{});
}

TEST_F(ProcessFilesTest, GraphicsFilesArePickedUpOnTheWay) {
    hold(10, 3, "/dev/dri/renderD128");
    hold(20, 4, "socket:[78]");
    holders({78, 79});
    EXPECT_EQ(files.graphics(), (std::vector<GraphicsFile>{{{10, 3}, "renderD128"}}));
    files.forget({10, 3});
    EXPECT_TRUE(files.graphics().empty());
}

TEST_F(ProcessFilesTest, AnEighthOfTheProcessesIsLookedThroughAtATime) {
    hold(1, 3, "/dev/null");
    files.lookOn();
    for (int pid = 1; pid <= 40; ++pid) hold(pid, 4, "/dev/dri/card0");
    files.lookOn();
    EXPECT_EQ(files.graphics().size(), 6u);
    for (int i = 0; i < 7; ++i) files.lookOn();
    EXPECT_EQ(files.graphics().size(), 40u);
}

TEST_F(ProcessFilesTest, AtFirstAllAreLookedThrough) {
    for (int pid = 1; pid <= 40; ++pid) hold(pid, 3, "/dev/dri/card0");
    files.lookOn();
    EXPECT_EQ(files.graphics().size(), 40u);
}

TEST_F(ProcessFilesTest, WhatASearchLookedThroughIsNotLookedThroughAgain) {
    for (int pid = 1; pid <= 40; ++pid) hold(pid, 3, "/dev/null");
    holders({77}); // goes all the way round
    for (int pid = 1; pid <= 40; ++pid) hold(pid, 4, "/dev/dri/card0");
    files.lookOn();
    EXPECT_TRUE(files.graphics().empty());
    files.lookOn();
    EXPECT_EQ(files.graphics().size(), 6u);
}

TEST_F(ProcessFilesTest, ANumberThatIsUsedAgainGetsItsNewNode) {
    hold(10, 3, "/dev/dri/card0");
    files.lookOn();
    release(10, 3);
    hold(10, 3, "/dev/dri/renderD129");
    files.lookOn();
    EXPECT_EQ(files.graphics(), (std::vector<GraphicsFile>{{{10, 3}, "renderD129"}}));
}

TEST_F(ProcessFilesTest, TheInfoOfAClosedFileIsAbsent) {
    tree.write("proc/10/fdinfo/3", "pos:\t0\n");
    std::array<char, 64> buffer;
    EXPECT_EQ(files.info({10, 3}, buffer), "pos:\t0\n");
    EXPECT_EQ(files.info({10, 4}, buffer), std::nullopt);
}

TEST_F(ProcessFilesTest, WithoutItsFolderThereIsNobody) {
    ProcessFiles nothing("/nowhere");
    const std::vector<std::uint64_t> sockets{77};
    EXPECT_TRUE(nothing.holders(sockets).empty());
    nothing.lookOn();
    EXPECT_TRUE(nothing.graphics().empty());
    EXPECT_FALSE(nothing.isReadable(10));
}

TEST(ProcessFilesHost, OurOwnSocketIsOursOnThisMachine) {
    const int ends = ::socket(AF_UNIX, SOCK_STREAM, 0);
    struct stat status = {};
    ASSERT_EQ(::fstat(ends, &status), 0);
    ProcessFiles files("/");
    const std::vector<std::uint64_t> sockets{status.st_ino};
    const auto found = files.holders(sockets);
    ASSERT_EQ(found.size(), 1u);
    const HeldFile held = found.begin()->second;
    EXPECT_EQ(held, (HeldFile{::getpid(), ends}));
    EXPECT_TRUE(files.isSocket(held, status.st_ino));
    ::close(ends);
    EXPECT_FALSE(files.isSocket(held, status.st_ino));
}

} // namespace
} // namespace tavero
