#include "apps/SystemActivities.h"

#include <gtest/gtest.h>

#include <vector>

namespace tavero {
namespace {

ProcessSample system(const std::string& name, double cpu) {
    return {.name = name, .cpu = cpu, .hasUsage = true, .app = AppIdentity::system};
}

std::optional<SystemActivity> unusual(const std::vector<ProcessSample>& samples) {
    return unusualActivity(samples);
}

TEST(SystemActivities, NothingRunsNothingIsUnusual) { EXPECT_FALSE(unusual({})); }

TEST(SystemActivities, ManyProcessesThatEachUseLittleRaiseNothing) {
    EXPECT_FALSE(unusual({system("mds", 0.59), system("WindowServer", 0.59)}));
}

TEST(SystemActivities, OfEqualsTheEarlierIsNamed) {
    EXPECT_EQ(unusual({system("mds", 0.7), system("WindowServer", 0.7)}),
              (SystemActivity{"mds", "Spotlight indexing", 0.7}));
    EXPECT_EQ(unusual({system("WindowServer", 0.7), system("mds", 0.7)}),
              (SystemActivity{"WindowServer", "Drawing the screen", 0.7}));
}

TEST(SystemActivities, TheBusiestIsNamed) {
    EXPECT_EQ(unusual({system("mds", 0.7), system("trustd", 0.9), system("logd", 0.8)})->process,
              "trustd");
}

TEST(SystemActivities, ExactlyTheLimitIsUnusual) {
    EXPECT_EQ(unusual({system("mdworker_shared", 0.6)}),
              (SystemActivity{"mdworker_shared", "Spotlight indexing", 0.6}));
}

TEST(SystemActivities, AnUnknownProcessIsDescribedByItsName) {
    EXPECT_EQ(unusual({system("foo", 0.9)}), (SystemActivity{"foo", "foo", 0.9}));
    EXPECT_EQ(describeSystemProcess("MDS"), "MDS");
    EXPECT_EQ(describeSystemProcess(""), "");
}

TEST(SystemActivities, AppsAndToolsNeverRaiseOne) {
    ProcessSample app = system("Web", 3.0), tool = system("mds", 3.0);
    app.app = {AppIdentity::Kind::app, "/Applications/Web.app"};
    tool.app = {AppIdentity::Kind::tool, "mds"};
    EXPECT_FALSE(unusual({app, tool}));
    EXPECT_EQ(unusual({app, tool, system("mds", 0.6)})->cpu, 0.6);
}

TEST(SystemActivities, TheProcessesOfMacOSAreDescribedInPlainWords) {
    EXPECT_EQ(describeSystemProcess("kernel_task"), "Cooling the Mac");
    EXPECT_EQ(describeSystemProcess("backupd-helper"), "Time Machine backup");
    EXPECT_EQ(describeSystemProcess("photolibraryd"), "Photos analysing your library");
    EXPECT_EQ(describeSystemProcess("CloudKeychainProxy"), "iCloud syncing");
    EXPECT_EQ(describeSystemProcess("mobileassetd"), "Installing updates");
    EXPECT_EQ(describeSystemProcess("syspolicyd"), "Checking apps for malware");
    EXPECT_EQ(describeSystemProcess("coreaudiod"), "Playing audio");
    EXPECT_EQ(describeSystemProcess("diskimages-helper"), "Opening a disk image");
    EXPECT_EQ(describeSystemProcess("fseventsd"), "Tracking file changes");
    EXPECT_EQ(describeSystemProcess("trustd"), "Checking certificates");
    EXPECT_EQ(describeSystemProcess("logd"), "Writing system logs");
    EXPECT_EQ(describeSystemProcess("knowledge-agent"), "Apple Intelligence");
    EXPECT_EQ(describeSystemProcess("sharingd"), "AirDrop and Handoff");
    EXPECT_EQ(describeSystemProcess("bluetoothd"), "Bluetooth");
    EXPECT_EQ(describeSystemProcess("locationd"), "Location Services");
}

TEST(SystemActivities, AnotherSystemHasItsOwnVocabulary) {
    constexpr SystemProcess words[]{{"packagekitd", "Installing updates"}};
    EXPECT_EQ(describeSystemProcess("packagekitd", words), "Installing updates");
    EXPECT_EQ(describeSystemProcess("bird", words), "bird"); // a router's daemon there
    const std::vector<ProcessSample> samples{system("packagekitd", 1)};
    EXPECT_EQ(unusualActivity(samples, words)->description, "Installing updates");
}

} // namespace
} // namespace tavero
