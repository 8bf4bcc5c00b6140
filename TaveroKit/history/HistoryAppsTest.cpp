#include "history/test/HistoryStoreTest.h"

namespace tavero {
namespace {

TEST_F(HistoryStoreTest, AnAppsRowAddsUpRatesTimesTheSecondsTheyStandFor) {
    AppUsage mail = app("mail", 0.5, 100);
    mail.diskWriteRate = 3;
    mail.bundlePath = "/Applications/Mail.app";
    store_.record({.date = at(0), .networkApps = {networkApp("mail", 5, 7)}, .apps = {mail}}, 10);
    store_.record({.date = at(10), .networkApps = {networkApp("mail", 1, 0)}, .apps = {mail}}, 20);
    store_.flush();
    EXPECT_EQ(apps("name, bundle_path, cpu_seconds, memory_sum, samples, disk_written, net_in,"
                   " net_out"),
              Rows{"0|mail|mail|/Applications/Mail.app|15.0|200.0|2|90.0|70.0|70.0"});
}

TEST_F(HistoryStoreTest, AToolHasNoBundlePath) {
    recordApp(0, app("git"), 5);
    EXPECT_EQ(apps("bundle_path"), Rows{"0|git|NULL"});
}

TEST_F(HistoryStoreTest, WithoutSecondsAppsAreLeftOut) {
    store_.record({.date = at(0), .networkApps = {networkApp("b", 1, 1)}, .apps = {app("a")}},
                  std::nullopt);
    store_.flush();
    EXPECT_EQ(apps("samples"), Rows{});
}

TEST_F(HistoryStoreTest, TheFirstAppsOfALaunchAreWrittenAtOnceAndThenEveryFiveMinutes) {
    recordApp(0, app("a"), 5);
    EXPECT_EQ(apps("samples"), Rows{"0|a|1"});
    recordApp(100, app("a"), 5);
    recordApp(299.9, app("a"), 5);
    EXPECT_EQ(apps("samples"), Rows{"0|a|1"});
    recordApp(300, app("a"), 5);
    EXPECT_EQ(apps("samples"), Rows{"0|a|4"});
    recordApp(599, app("a"), 5);
    EXPECT_EQ(apps("samples"), Rows{"0|a|4"});
    recordApp(600, app("a"), 5);
    EXPECT_EQ(apps("samples"), Rows{"0|a|6"});
}

TEST_F(HistoryStoreTest, ANewHourWritesTheOldOne) {
    recordApp(3500, app("a"), 5);
    recordApp(3599, app("a"), 5);
    recordApp(3600, app("a"), 5);
    EXPECT_EQ(apps("samples"), Rows{"0|a|2"});
    store_.flush();
    EXPECT_EQ(apps("samples"), (Rows{"0|a|2", "3600|a|1"}));
}

TEST_F(HistoryStoreTest, AnAppKeepsTheNameAndPathItWasFirstSeenWith) {
    AppUsage first = app("a"), later = app("a");
    first.name = "First";
    first.bundlePath = "/First.app";
    later.name = "Later";
    later.bundlePath.reset();
    store_.record({.date = at(0), .apps = {first, later}}, 5);
    recordApp(1, later, 5);
    store_.flush();
    EXPECT_EQ(apps("name, bundle_path, samples"), Rows{"0|a|First|/First.app|3"});
}

TEST_F(HistoryStoreTest, NetworkAppsAloneGainRowsWithoutSamples) {
    store_.record({.date = at(0), .networkApps = {networkApp("a", 2, 1)}}, 10);
    EXPECT_EQ(apps("memory_sum, samples, net_in, net_out"), Rows{"0|a|0.0|0|20.0|10.0"});
}

TEST_F(HistoryStoreTest, AnAppInBothListsHasOneRowAndOneInEitherHasItsOwn) {
    store_.record({.date = at(0),
                   .networkApps = {networkApp("both", 1, 0), networkApp("network", 0, 1)},
                   .apps = {app("both", 1, 5), app("cpu", 1, 5)}},
                  10);
    EXPECT_EQ(apps("samples, cpu_seconds, net_in, net_out"),
              (Rows{"0|both|1|10.0|10.0|0.0", "0|cpu|1|10.0|0.0|0.0", "0|network|0|0.0|0.0|10.0"}));
}

TEST_F(HistoryStoreTest, ANetworkAppWithoutTrafficGainsNoRow) {
    store_.record({.date = at(0), .networkApps = {networkApp("b", 0, 0)}, .apps = {app("a")}}, 10);
    EXPECT_EQ(apps("samples"), Rows{"0|a|1"});
}

TEST_F(HistoryStoreTest, AFlushDoesNotMoveTheNextWriteOfApps) {
    recordApp(0, app("a"), 5);
    recordApp(200, app("a"), 5);
    store_.flush();
    EXPECT_EQ(apps("samples"), Rows{"0|a|2"});
    recordApp(300, app("a"), 5);
    EXPECT_EQ(apps("samples"), Rows{"0|a|3"});
}

} // namespace
} // namespace tavero
