#include "platform/linux/processes/SandboxPids.h"

#include "platform/linux/TemporaryTree.h"
#include "platform/linux/processes/AsNobody.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include <unistd.h>

namespace tavero {
namespace {

class SandboxPidsTest : public testing::Test {
  protected:
    static std::string path(std::int32_t pid, const std::string& name) {
        return "proc/" + std::to_string(pid) + "/" + name;
    }
    void set(std::int32_t pid, const std::string& namespacePids, const std::string& flatpakId,
             const std::string& cgroup = "/") const {
        tree.write(path(pid, "status"), "Name:\tthing\nPid:\t1\nNStgid:\t1\nNSpid:\t" +
                                            namespacePids + "\nNSpgid:\t1\n");
        tree.write(path(pid, "cgroup"), "0::" + cgroup + "\n");
        if (!flatpakId.empty())
            tree.write(path(pid, "root/.flatpak-info"),
                       "[Application]\nname=" + flatpakId + "\nruntime=x\n\n[Instance]\n");
    }
    auto find(const std::string& flatpakId, std::int32_t pidInside) const {
        return hostPid(tree.root(), flatpakId, pidInside);
    }

    TemporaryTree tree{{"proc/self/cgroup", "0::/\n"}};
};

TEST_F(SandboxPidsTest, TheInnermostPidAndTheAppTellTheProcess) {
    set(100, "100", "");
    set(200, "200\t3", "org.x.Radio");
    set(300, "300\t2", "org.x.Other");
    set(400, "400\t2", "org.x.Radio");
    EXPECT_EQ(find("org.x.Radio", 2), 400);
    EXPECT_EQ(find("org.x.Radio", 3), 200);
    EXPECT_EQ(find("org.x.Other", 2), 300);
}

TEST_F(SandboxPidsTest, ASandboxInASandboxCountsByItsOwn) {
    set(200, "200\t7\t2", "org.x.Radio");
    EXPECT_EQ(find("org.x.Radio", 2), 200);
    EXPECT_FALSE(find("org.x.Radio", 7));
    EXPECT_FALSE(find("org.x.Radio", 200));
}

TEST_F(SandboxPidsTest, AnAppThatRunsTwiceIsFoundByAnyOfItsProcesses) {
    set(300, "300\t2", "org.x.Radio");
    set(200, "200\t2", "org.x.Radio");
    EXPECT_EQ(find("org.x.Radio", 2), 200);
}

TEST_F(SandboxPidsTest, WhatIsNotThereIsNotFound) {
    set(200, "200\t2", "org.x.Radio");
    set(300, "300\t4", ""); // in no sandbox of a Flatpak
    EXPECT_FALSE(find("org.x.Radio", 5));
    EXPECT_FALSE(find("org.x.Rad", 2));
    EXPECT_FALSE(find("org.x.Radio", 4));
    EXPECT_FALSE(find("", 4));
    EXPECT_FALSE(find("org.x.Radio", 0));
    EXPECT_FALSE(find("org.x.Radio", -2));
    EXPECT_FALSE(hostPid(tree.root() / "nowhere", "org.x.Radio", 2));
}

TEST_F(SandboxPidsTest, ASandboxThatIsClosedIsKnownByItsUnit) {
    const std::string unit = "/app.slice/app-flatpak-org.x.Radio-81.scope";
    set(150, "150\t2", "", unit); // beside the sandbox, as its start is
    set(200, "200\t2", "org.x.Radio", unit);
    set(300, "300\t2", "org.x.Radio", "/app.slice/app-flatpak-org.x.Other-82.scope");
    std::filesystem::permissions(tree.root(), std::filesystem::perms::all);
    const auto allow = [&](std::int32_t pid, std::filesystem::perms perms) {
        std::filesystem::permissions(tree.root() / path(pid, "root"), perms);
    };
    for (const std::int32_t pid : {200, 300}) allow(pid, std::filesystem::perms::none);
    {
        const AsNobody nobody;
        EXPECT_EQ(find("org.x.Radio", 2), 200);
        EXPECT_EQ(find("org.x.Other", 2), 300);
    }
    // What a sandbox says itself counts more.
    allow(300, std::filesystem::perms::all);
    {
        const AsNobody nobody;
        EXPECT_EQ(find("org.x.Radio", 2), 300);
    }
    allow(200, std::filesystem::perms::all);
}

TEST_F(SandboxPidsTest, BrokenFilesAreNoTrouble) {
    set(200, "x", "org.x.Radio");
    set(201, "99999999999999999999", "org.x.Radio");
    set(202, "", "org.x.Radio");
    tree.write(path(203, "status"), std::string(100'000, 'N'));
    tree.folder("proc/204");
    set(205, "205\t2", "");
    tree.write(path(205, "root/.flatpak-info"), "name=org.x.Radio\n");
    EXPECT_FALSE(find("org.x.Radio", 2));
}

TEST(SandboxPidsHost, NothingOnThisMachineIsAnAppThatDoesNotExist) {
    EXPECT_FALSE(hostPid("/", "org.example.DoesNotExist", ::getpid()));
}

} // namespace
} // namespace tavero
