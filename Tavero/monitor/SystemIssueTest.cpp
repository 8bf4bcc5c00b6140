#include "monitor/SystemIssue.h"

#include <gtest/gtest.h>

namespace tavero {
namespace {

using namespace std::chrono_literals;

constexpr Date start{1'700'000'000s};
const SystemActivity indexing{.process = "indexer", .description = "Indexing files", .cpu = 1};
const SystemActivity backup{.process = "backupd", .description = "Backing up", .cpu = 2};

// An issue that is fed by the second.
struct Timeline {
    SystemIssue issue;

    void pass(std::chrono::seconds second, std::optional<SystemActivity> activity) {
        LiveSnapshot snapshot;
        snapshot.date = start + second;
        snapshot.systemActivity = std::move(activity);
        issue.update(snapshot);
        EXPECT_FALSE(issue.unusualSince() && issue.calmSince());
    }
    void busy(std::chrono::seconds second, const SystemActivity& activity = indexing) {
        pass(second, activity);
    }
    void calm(std::chrono::seconds second) { pass(second, std::nullopt); }
};

std::vector<AppUsage> rows() {
    return {{.identity = {AppIdentity::Kind::app, "Editor"}, .name = "Editor"},
            {.identity = AppIdentity::system, .name = "macOS"},
            {.identity = {AppIdentity::Kind::tool, "make"}, .name = "make"}};
}

TEST(SystemIssue, BusyForNineSecondsAndGoneNeverShows) {
    Timeline time;
    for (const auto second : {0s, 5s, 9s}) {
        time.busy(second);
        EXPECT_FALSE(time.issue.current());
    }
    time.calm(10s);
    EXPECT_FALSE(time.issue.current());
    EXPECT_FALSE(time.issue.unusualSince());
    EXPECT_FALSE(time.issue.calmSince());
}

TEST(SystemIssue, BusyForTenSecondsShowsAndOutlivesAGap) {
    Timeline time;
    time.busy(0s);
    time.busy(10s);
    EXPECT_EQ(time.issue.current(), indexing);
    time.calm(11s);
    EXPECT_EQ(time.issue.current(), indexing);
    EXPECT_EQ(time.issue.calmSince(), start + 11s);
    time.busy(15s);
    EXPECT_EQ(time.issue.current(), indexing);
    EXPECT_EQ(time.issue.unusualSince(), start + 15s);
    EXPECT_FALSE(time.issue.calmSince());
}

TEST(SystemIssue, OnceShownItFollowsTheBusiestProcess) {
    Timeline time;
    time.busy(0s);
    time.busy(10s);
    time.busy(11s, backup);
    EXPECT_EQ(time.issue.current(), backup);
    time.calm(12s);
    time.busy(13s, indexing); // without having to last again
    EXPECT_EQ(time.issue.current(), indexing);
}

TEST(SystemIssue, GoesAfterThirtySecondsOfCalm) {
    Timeline time;
    time.busy(0s);
    time.busy(10s);
    time.calm(11s);
    time.calm(40s);
    EXPECT_TRUE(time.issue.current());
    time.calm(41s);
    EXPECT_FALSE(time.issue.current());
    EXPECT_FALSE(time.issue.calmSince());
}

TEST(SystemIssue, AFlickerStartsTheCalmAnew) {
    Timeline time;
    time.busy(0s);
    time.busy(10s);
    time.calm(11s);
    time.busy(40s);
    time.calm(41s);
    time.calm(70s);
    EXPECT_TRUE(time.issue.current());
    time.calm(71s);
    EXPECT_FALSE(time.issue.current());
}

TEST(SystemIssue, WithAPassAMinuteItTakesTwoToShowAndTwoToGo) {
    Timeline time;
    time.busy(0s);
    EXPECT_FALSE(time.issue.current());
    time.busy(60s);
    EXPECT_TRUE(time.issue.current());
    time.calm(120s);
    EXPECT_TRUE(time.issue.current());
    time.calm(180s);
    EXPECT_FALSE(time.issue.current());
}

TEST(SystemIssue, AClockSetBackCountsFromThere) {
    Timeline time;
    time.busy(86400s);
    time.busy(0s);
    EXPECT_EQ(time.issue.unusualSince(), start);
    time.busy(10s);
    EXPECT_TRUE(time.issue.current());
}

TEST(SystemIssue, TheSystemsRowIsDroppedWithoutAnIssue) {
    const auto shown = SystemIssue().present(rows());
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_EQ(shown[0].name, "Editor");
    EXPECT_EQ(shown[1].name, "make");
}

TEST(SystemIssue, TheSystemsRowTellsTheIssueInItsPlace) {
    Timeline time;
    time.busy(0s);
    time.busy(10s);
    const auto shown = time.issue.present(rows());
    ASSERT_EQ(shown.size(), 3u);
    EXPECT_EQ(shown[0], rows()[0]);
    EXPECT_EQ(shown[1].name, "macOS \u00B7 Indexing files");
    EXPECT_EQ(shown[1].flag, "Unusual");
    EXPECT_EQ(shown[2], rows()[2]);
    EXPECT_EQ(time.issue.present(shown), shown);
    EXPECT_EQ(time.issue.present(rows(), "Linux")[1].name, "Linux \u00B7 Indexing files");
}

} // namespace
} // namespace tavero
