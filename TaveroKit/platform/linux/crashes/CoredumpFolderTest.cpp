#include "platform/linux/crashes/CoredumpFolder.h"

#include "platform/linux/TemporaryTree.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>

#include <sys/stat.h>

namespace tavero {
namespace {

using namespace std::chrono_literals;

constexpr uid_t ada = 1000;
constexpr Date launch(1763640000s + 500ms);

std::string dump(const std::string& comm, Date time, uid_t uid = ada) {
    const auto microseconds =
        std::chrono::duration_cast<std::chrono::microseconds>(time.time_since_epoch()).count();
    return "dumps/core." + comm + "." + std::to_string(uid) +
           ".0123456789abcdef0123456789abcdef.4711." + std::to_string(microseconds) + ".zst";
}

class CoredumpFolderTest : public testing::Test {
  protected:
    TemporaryTree tree{{"apps/org.example.Editor.desktop",
                        "[Desktop Entry]\nType=Application\nName=Text Editor\nExec=editor %U\n"}};

    void SetUp() override { tree.folder("dumps"); }

    CoredumpFolder watch() {
        return {tree.root() / "dumps", ada, launch, CrashedApps({(tree.root() / "apps").string()})};
    }
    static std::vector<std::string> names(CoredumpFolder& folder) {
        std::vector<std::string> names;
        for (const CrashReport& report : folder.newReports(launch + 1h))
            names.push_back(report.appName);
        return names;
    }
    using Names = std::vector<std::string>;
};

TEST_F(CoredumpFolderTest, ANewDumpIsReportedOnceUnderTheNameOfItsApp) {
    CoredumpFolder folder = watch();
    EXPECT_EQ(folder.newReports(launch + 30s), std::vector<CrashReport>());
    tree.write(dump("editor", launch + 10s), "");
    EXPECT_EQ(folder.newReports(launch + 60s),
              (std::vector<CrashReport>{{"Text Editor", "org.example.Editor"}}));
    EXPECT_EQ(folder.newReports(launch + 90s), std::vector<CrashReport>());
}

TEST_F(CoredumpFolderTest, AProgramThatIsNoAppIsCalledByItsName) {
    CoredumpFolder folder = watch();
    tree.write(dump("my\\x20tool", launch + 10s), "");
    EXPECT_EQ(folder.newReports(launch + 60s),
              (std::vector<CrashReport>{{"my tool", std::nullopt}}));
}

TEST_F(CoredumpFolderTest, WhatWasThereAtTheLaunchIsNotReported) {
    tree.write(dump("editor", launch + 10s), ""); // as if the clock had been ahead
    CoredumpFolder folder = watch();
    EXPECT_EQ(names(folder), Names());
}

TEST_F(CoredumpFolderTest, ACrashBeforeTheLaunchIsNotReportedHoweverLateItsDump) {
    CoredumpFolder folder = watch();
    tree.write(dump("before", launch - 1500ms), "");
    tree.write(dump("same-second", launch - 500ms), ""); // may have been after it
    EXPECT_EQ(names(folder), Names{"same-second"});
}

TEST_F(CoredumpFolderTest, OtherUsersAndOtherFilesAreIgnored) {
    CoredumpFolder folder = watch();
    tree.write(dump("editor", launch + 10s, 0), "");
    tree.write(dump("editor", launch + 10s, ada + 1), "");
    tree.write("dumps/README", "");
    tree.write("dumps/core", "");
    EXPECT_EQ(names(folder), Names());
}

TEST_F(CoredumpFolderTest, NothingInTheFolderIsOpened) {
    CoredumpFolder folder = watch();
    const auto path = [&](const char* comm) { return tree.root() / dump(comm, launch + 1s); };
    ASSERT_EQ(::mkfifo(path("a-pipe").c_str(), 0600), 0); // opening it would wait for a writer
    tree.link(dump("b-link", launch + 1s), "/nowhere");
    tree.link(dump("c-loop", launch + 1s), path("c-loop").string());
    tree.write(dump("d-large", launch + 1s), "");
    std::filesystem::resize_file(path("d-large"), std::uintmax_t{1} << 40); // a hole, on most disks
    EXPECT_EQ(names(folder), (Names{"a-pipe", "b-link", "c-loop", "d-large"}));
}

TEST_F(CoredumpFolderTest, AFolderThatComesLaterIsRead) {
    tree.remove("dumps");
    CoredumpFolder folder = watch();
    EXPECT_EQ(names(folder), Names());
    tree.write(dump("editor", launch + 10s), "");
    tree.write(dump("older", launch - 1h), "");
    EXPECT_EQ(names(folder), Names{"Text Editor"});
}

TEST_F(CoredumpFolderTest, ADumpThatCannotBeSeenForAWhileIsNotReportedTwice) {
    CoredumpFolder folder = watch();
    tree.write(dump("editor", launch + 10s), "");
    EXPECT_EQ(names(folder).size(), 1u);
    std::filesystem::rename(tree.root() / "dumps", tree.root() / "elsewhere");
    EXPECT_EQ(names(folder), Names());
    std::filesystem::rename(tree.root() / "elsewhere", tree.root() / "dumps");
    EXPECT_EQ(names(folder), Names());
}

} // namespace
} // namespace tavero
