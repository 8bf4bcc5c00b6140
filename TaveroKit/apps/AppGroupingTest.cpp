#include "apps/AppGrouping.h"

#include "apps/AppIdentities.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

namespace tavero {
namespace {

using testing::ElementsAre;

ProcessSample process(std::int32_t pid, const std::string& path, double cpu = 0,
                      std::uint64_t memory = 0) {
    return {.pid = pid,
            .path = path,
            .cpu = cpu,
            .memory = memory,
            .hasUsage = true,
            .app = AppGrouping::identity(path)};
}

// Names by bundle path where given, else as files are called.
struct Names {
    std::map<std::string, std::string> given;
    std::map<AppIdentity, std::string> asked;

    const std::string& operator()(const AppIdentity& identity) {
        const auto name = given.find(identity.id);
        return name != given.end() ? name->second
                                   : asked[identity] = AppGrouping::displayName(identity, nullptr);
    }
};

std::vector<AppGroup> group(const std::vector<ProcessSample>& samples,
                            std::map<std::string, std::string> names = {}) {
    // The names only have to live as long as the call.
    Names lookUp{std::move(names), {}};
    return AppGrouping::group(samples, std::ref(lookUp));
}

std::vector<std::string> names(const std::vector<AppGroup>& groups) {
    std::vector<std::string> result;
    result.reserve(groups.size());
    for (const AppGroup& g : groups) result.push_back(g.name());
    return result;
}

std::vector<std::int32_t> pids(const AppGroup& group) {
    std::vector<std::int32_t> result;
    result.reserve(group.processes().size());
    for (const ProcessSample* p : group.processes()) result.push_back(p->pid);
    return result;
}

TEST(AppGrouping, NoSamplesGiveNoGroups) { EXPECT_TRUE(group({}).empty()); }

TEST(AppGrouping, HelpersJoinTheirAppAndTheBusiestGroupComesFirst) {
    const std::vector<ProcessSample> samples{
        process(1, "/usr/libexec/trustd", 0.3, 5),
        process(2, "/Applications/Web.app/Contents/MacOS/Web", 0.25, 10),
        process(3, "/opt/homebrew/bin/node", 0.1, 1),
        process(4, "/Applications/Web.app/H/Helper.app/Helper", 0.25, 20)};
    const auto groups = group(samples);
    EXPECT_THAT(names(groups), ElementsAre("Web", "macOS System", "node"));
    EXPECT_THAT(pids(groups[0]), ElementsAre(2, 4));
    EXPECT_DOUBLE_EQ(groups[0].cpu(), 0.5);
    EXPECT_EQ(groups[0].memory(), 30u);
}

TEST(AppGrouping, EqualGroupsStayInTheOrderOfTheSamples) {
    const std::vector<ProcessSample> samples{process(1, "/opt/c"), process(2, "/opt/a"),
                                             process(3, "/opt/b"), process(4, "/opt/a")};
    EXPECT_THAT(names(group(samples)), ElementsAre("c", "a", "b"));
}

TEST(AppGrouping, ASupportToolJoinsTheRunningAppThatBearsItsFoldersNameInAnyCase) {
    const std::vector<ProcessSample> samples{
        process(1, "/Users/a/Library/Application Support/ÉDITEUR/agent", 0.5),
        process(2, "/Applications/E.app/Contents/MacOS/E", 0.1), process(3, "/opt/agent", 0.2)};
    const auto groups = group(samples, {{"/Applications/E.app", "éditeur"}});
    ASSERT_EQ(groups.size(), 1u);
    EXPECT_EQ(groups[0].identity(), samples[1].app);
    EXPECT_EQ(groups[0].name(), "éditeur");
    EXPECT_THAT(pids(groups[0]), ElementsAre(2, 1, 3)); // all of the tool, after the app's own
    EXPECT_DOUBLE_EQ(groups[0].cpu(), 0.8);
}

TEST(AppGrouping, WithoutThatAppASupportToolStaysAlone) {
    const std::vector<ProcessSample> samples{
        process(1, "/Library/Application Support/Maker/agent"),
        process(2, "/Applications/Other.app/Contents/MacOS/Other")};
    EXPECT_THAT(names(group(samples)), ElementsAre("agent", "Other"));
}

TEST(AppGrouping, APathThatEndsAtTheSupportFolderDoesNotDecide) {
    std::vector<ProcessSample> samples{
        process(1, "/Library/Application Support//"),
        process(2, "/Library/Application Support//Maker/Application Support"),
        process(3, "/Applications/Maker.app/x")};
    samples[0].app = samples[1].app; // the same tool
    const auto groups = group(samples);
    ASSERT_EQ(groups.size(), 1u);
    EXPECT_THAT(pids(groups[0]), ElementsAre(3, 1, 2));
}

TEST(AppGrouping, OnlyTheFirstSampleInASupportFolderDecides) {
    const std::vector<ProcessSample> samples{
        process(1, "/opt/agent"), process(2, "/Library/Application Support/Stranger/agent"),
        process(3, "/Library/Application Support/Maker/agent"),
        process(4, "/Applications/Maker.app/x")};
    EXPECT_THAT(names(group(samples)), ElementsAre("agent", "Maker"));
}

TEST(AppGrouping, TheFirstSupportFolderInAPathDecides) {
    const std::vector<ProcessSample> samples{
        process(1, "/Library/Application Support/A/Library/Application Support/Maker/agent"),
        process(2, "/Applications/Maker.app/x")};
    EXPECT_EQ(group(samples).size(), 2u);
}

TEST(AppGrouping, TheSystemAndAToolElsewhereAreNeverFolded) {
    std::vector<ProcessSample> samples{process(1, "/usr/Library/Application Support/Maker/x"),
                                       process(2, "/opt/Maker/agent"),
                                       process(3, "/Applications/Maker.app/x")};
    ASSERT_EQ(samples[0].app, AppIdentity::system);
    EXPECT_THAT(names(group(samples)), ElementsAre("macOS System", "agent", "Maker"));
}

TEST(AppGrouping, OfTwoAppsWithOneNameTheFirstTakesTheSupportTool) {
    const std::vector<ProcessSample> samples{process(1, "/Library/Application Support/Maker/agent"),
                                             process(2, "/Applications/MAKER.app/x"),
                                             process(3, "/Applications/Maker.app/x")};
    const auto groups = group(samples);
    EXPECT_THAT(names(groups), ElementsAre("MAKER", "Maker")); // names differ, so two groups
    EXPECT_THAT(pids(groups[0]), ElementsAre(2, 1));
}

TEST(AppGrouping, AppsThatShowTheSameNameAreOneGroupWithTheFirstOnesIdentity) {
    const std::vector<ProcessSample> samples{process(1, "/Applications/Maps.app/x", 0.1, 1),
                                             process(2, "/opt/busy", 0.5),
                                             process(3, "/Users/a/Maps.app/x", 0.9, 2)};
    const auto groups = group(samples);
    EXPECT_THAT(names(groups), ElementsAre("Maps", "busy"));
    EXPECT_EQ(groups[0].identity().id, "/Applications/Maps.app");
    EXPECT_THAT(pids(groups[0]), ElementsAre(1, 3));
    EXPECT_DOUBLE_EQ(groups[0].cpu(), 1.0);
    EXPECT_EQ(groups[0].memory(), 3u);
}

TEST(AppGrouping, AnAppAndAToolWithItsNameStayApart) {
    const std::vector<ProcessSample> samples{process(1, "/Applications/git.app/x"),
                                             process(2, "/opt/git")};
    EXPECT_EQ(group(samples).size(), 2u);
}

TEST(AppGrouping, AToolNamedLikeAnAppsKeySharesItsGroup) {
    const std::vector<ProcessSample> samples{process(1, "/Applications/Maps.app/x"),
                                             process(2, "/opt/app:Maps")};
    const auto groups = group(samples);
    ASSERT_EQ(groups.size(), 1u);
    EXPECT_EQ(groups[0].identity().kind, AppIdentity::Kind::app);
}

TEST(AppGrouping, AGroupOfRefusedProcessesIsZeroAndAllHidden) {
    std::vector<ProcessSample> samples{process(1, "/opt/agent"), process(2, "/opt/agent")};
    samples[0].hasUsage = samples[1].hasUsage = false;
    const auto groups = group(samples);
    ASSERT_EQ(groups.size(), 1u);
    EXPECT_EQ(groups[0].cpu(), 0);
    EXPECT_EQ(groups[0].memory(), 0u);
    EXPECT_EQ(groups[0].hiddenCount(), 2);
}

TEST(AppGroup, DiskCountersAreSumsThatDoNotWrap) {
    ProcessSample a{.diskRead = 1, .diskWritten = ~0ull}, b{.diskRead = 2, .diskWritten = 5};
    const AppGroup both({}, "both", {&a, &b});
    EXPECT_EQ(both.diskRead(), 3u);
    EXPECT_EQ(both.diskWritten(), ~0ull);
}

} // namespace
} // namespace tavero
