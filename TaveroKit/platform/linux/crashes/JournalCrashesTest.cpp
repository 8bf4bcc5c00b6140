#include "platform/linux/crashes/JournalCrashes.h"

#include "platform/linux/TemporaryTree.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <map>

#include <unistd.h>

namespace tavero {
namespace {

using namespace std::chrono_literals;

constexpr uid_t ada = 1000;
constexpr Date launch(1763640000s);

struct Entry {
    Date time;
    std::string program = "/usr/bin/editor";
    uid_t uid = ada;
    std::string messageId = "fc2e22bc6ee647b6b90729ab34a250b1";
    std::string more;
};

// As `journalctl --output=export` writes it.
std::string exported(const std::vector<Entry>& entries) {
    std::string text;
    int number = 0;
    for (const Entry& entry : entries) {
        const auto time =
            std::chrono::duration_cast<std::chrono::microseconds>(entry.time.time_since_epoch());
        text += "__REALTIME_TIMESTAMP=" + std::to_string(time.count()) +
                "\n__MONOTONIC_TIMESTAMP=" + std::to_string(1000 + ++number) +
                "\n_BOOT_ID=0123456789abcdef0123456789abcdef\nMESSAGE=A process crashed.\n"
                "MESSAGE_ID=" +
                entry.messageId + "\nCOREDUMP_UID=" + std::to_string(entry.uid) +
                "\nCOREDUMP_COMM=comm\nCOREDUMP_EXE=" + entry.program + "\n" + entry.more + "\n";
    }
    return text;
}

// A journal that the journal's own tool wrote.
class JournalCrashesTest : public testing::Test {
  protected:
    TemporaryTree tree{{"apps/org.example.Editor.desktop",
                        "[Desktop Entry]\nType=Application\nName=Text Editor\n"
                        "Exec=/usr/bin/editor %U\n"}};

    void SetUp() override { tree.folder("journal"); }

    void write(const std::string& file, const std::vector<Entry>& entries) {
        tree.write("export", exported(entries));
        const std::string root = tree.root().string();
        const std::string command = std::string(TAVERO_JOURNAL_REMOTE) + " --output=" + root +
                                    "/journal/" + file + " " + root + "/export >" + root +
                                    "/said 2>&1";
        ASSERT_EQ(std::system(command.c_str()), 0);
    }
    std::unique_ptr<JournalCrashes> open() {
        return JournalCrashes::inFolder(tree.root() / "journal", ada, launch,
                                        CrashedApps({(tree.root() / "apps").string()}));
    }
    static std::vector<std::string> names(CrashReports& crashes) {
        std::vector<std::string> names;
        for (const CrashReport& report : crashes.newReports(launch + 1h))
            names.push_back(report.appName);
        return names;
    }
    using Names = std::vector<std::string>;
};

TEST_F(JournalCrashesTest, TellsWhatCrashedSinceTheLaunchOnce) {
    write("user.journal", {{launch - 1s, "/opt/a/before"},
                           {launch, "/opt/b/at-launch"},
                           {launch + 1us, "/opt/c/just-after"},
                           {launch + 5s}});
    const auto crashes = open();
    ASSERT_TRUE(crashes);
    EXPECT_EQ(crashes->newReports(launch + 30s),
              (std::vector<CrashReport>{{"just-after", std::nullopt},
                                        {"Text Editor", "org.example.Editor"}}));
    EXPECT_EQ(names(*crashes), Names());
}

TEST_F(JournalCrashesTest, OtherUsersAndOtherMessagesAreLeftOut) {
    write("user.journal", {{launch + 1s, "/opt/a/others", 0},
                           {launch + 2s, "/opt/a/others", ada + 1},
                           {launch + 3s, "/opt/a/other", ada, "5aadd8e954dc4b1a8c954d63fd9e1137"},
                           {launch + 4s, "/opt/a/mine"}});
    EXPECT_EQ(names(*open()), Names{"mine"});
}

TEST_F(JournalCrashesTest, WhatComesLaterIsNoticedInTheSameFileAndInANewOne) {
    const auto crashes = open();
    ASSERT_TRUE(crashes);
    EXPECT_EQ(names(*crashes), Names());
    write("user.journal", {{launch + 5s, "/opt/a/first"}});
    EXPECT_EQ(names(*crashes), Names{"first"});
    write("user.journal", {{launch + 9s, "/opt/a/second"}});
    EXPECT_EQ(names(*crashes), Names{"second"});
    write("user@1.journal", {{launch + 12s, "/opt/a/third"}}); // after a rotation
    EXPECT_EQ(names(*crashes), Names{"third"});
    EXPECT_EQ(names(*crashes), Names());
}

TEST_F(JournalCrashesTest, ALargeFieldIsNotCopied) {
    write("user.journal", {{launch + 5s, "/opt/a/big", ada, "fc2e22bc6ee647b6b90729ab34a250b1",
                            "COREDUMP_PROC_MAPS=" + std::string(1 << 20, 'm') + "\n"},
                           {launch + 6s, "/opt/" + std::string(1 << 18, 'n') + "/long"}});
    const Names found = names(*open());
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[0], "big");
    EXPECT_LE(found[1].size(), 16u << 10);
}

TEST_F(JournalCrashesTest, ADamagedFileGivesNothingAndHidesNoOther) {
    write("user.journal", {{launch + 5s, "/opt/a/whole"}});
    tree.write("journal/torn.journal", std::string(4096, '\x7f'));
    tree.write("journal/empty.journal", "");
    tree.link("journal/loop.journal", "loop.journal");
    EXPECT_EQ(names(*open()), Names{"whole"});
}

TEST_F(JournalCrashesTest, AFolderThatIsMissingIsNoJournal) {
    tree.remove("journal");
    EXPECT_FALSE(open());
}

TEST(JournalCrash, TheProgramIsThePathOrElseTheName) {
    const auto crash = [](std::map<std::string, std::string> fields) {
        return crashOf([fields = std::move(fields)](const char* name) {
            const auto found = fields.find(name);
            return found == fields.end() ? std::nullopt : std::optional(found->second);
        });
    };
    EXPECT_EQ(crash({{"COREDUMP_EXE", "/bin/a"}, {"COREDUMP_COMM", "b"}})->program, "/bin/a");
    EXPECT_EQ(crash({{"COREDUMP_COMM", "b"}, {"COREDUMP_CGROUP", "/c"}})->program, "b");
    EXPECT_EQ(crash({{"COREDUMP_COMM", "b"}, {"COREDUMP_CGROUP", "/c"}})->cgroup, "/c");
    EXPECT_EQ(crash({{"COREDUMP_EXE", ""}, {"COREDUMP_COMM", "b"}})->program, "b");
    EXPECT_FALSE(crash({{"COREDUMP_CGROUP", "/c"}}));
}

TEST(HostCrashReportsOnThisMachine, NothingIsReportedOfTheFuture) {
    const auto crashes = hostCrashReports(Date::max() - 24h);
    ASSERT_TRUE(crashes);
    EXPECT_EQ(crashes->newReports(Date::max()), std::vector<CrashReport>());
}

} // namespace
} // namespace tavero
