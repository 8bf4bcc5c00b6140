#include "platform/linux/processes/ProcFolder.h"

#include "platform/linux/TemporaryTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <string>

namespace tavero {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(ProcFolder, ListsPidsInTheirOrderAndNothingElse) {
    const TemporaryTree tree;
    for (const char* name : {"10/", "9/", "1/", "1000/", "self/", "0/", "-5/", "12x/", "stat/",
                             "99999999999/", "+7/", "2147483647/"})
        tree.folder(name);
    ProcFolder proc(tree.root().string());
    std::vector<std::int32_t> pids{3};
    EXPECT_TRUE(proc.list(pids));
    EXPECT_THAT(pids, ElementsAre(1, 9, 10, 1000, 2147483647));
    tree.remove("9");
    tree.folder("11/");
    EXPECT_TRUE(proc.list(pids));
    EXPECT_THAT(pids, ElementsAre(1, 10, 11, 1000, 2147483647));
}

TEST(ProcFolder, WhatIsNotThereIsAbsentAndNotRefused) {
    const TemporaryTree tree;
    ProcFolder proc(tree.root().string());
    std::array<char, 16> buffer;
    EXPECT_FALSE(proc.read(7, "stat", buffer));
    EXPECT_FALSE(proc.wasRefused());
    EXPECT_FALSE(proc.link(7, "exe"));
    EXPECT_FALSE(proc.wasRefused());
}

TEST(ProcFolder, AFolderThatAppearsLaterIsFound) {
    const TemporaryTree tree;
    ProcFolder proc((tree.root() / "proc").string());
    std::vector<std::int32_t> pids{3};
    std::array<char, 16> buffer;
    EXPECT_FALSE(proc.list(pids));
    EXPECT_THAT(pids, IsEmpty());
    EXPECT_FALSE(proc.read(1, "stat", buffer));
    EXPECT_FALSE(proc.link(1, "exe"));
    tree.folder("proc/1");
    EXPECT_TRUE(proc.list(pids));
    EXPECT_THAT(pids, ElementsAre(1));
}

TEST(ProcFolder, ReadsNoMoreThanTheBufferHolds) {
    const TemporaryTree tree{{"7/cmdline", std::string(100'000, 'a')}, {"7/empty", ""}};
    ProcFolder proc(tree.root().string());
    std::array<char, 64> buffer;
    EXPECT_EQ(proc.read(7, "cmdline", buffer)->size(), 64u);
    EXPECT_EQ(proc.read(7, "empty", buffer), "");
    EXPECT_FALSE(proc.read(7, std::string(500, 'x'), buffer));
}

TEST(ProcFolder, ALinkMayLeadNowhere) {
    const TemporaryTree tree;
    tree.link("7/exe", "/opt/gone (deleted)");
    ProcFolder proc(tree.root().string());
    EXPECT_EQ(proc.link(7, "exe"), "/opt/gone (deleted)");
}

} // namespace
} // namespace tavero
