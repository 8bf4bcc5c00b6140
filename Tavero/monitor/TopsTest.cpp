#include "monitor/Tops.h"

#include "monitor/NotchTexts.h"

#include <gtest/gtest.h>

#include <limits>

namespace tavero {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

AppUsage app(std::string name, double cpu, std::uint64_t memory) {
    return {.identity = {AppIdentity::Kind::app, name},
            .name = name,
            .bundlePath = "/Applications/" + name,
            .cpu = cpu,
            .memory = memory};
}

std::string order(const LiveSnapshot& snapshot) {
    std::string names;
    for (const AppUsage& row : usingTheMost(snapshot)) names += row.name + " ";
    return names;
}

TEST(Tops, AreTheLargestOfTheRows) {
    EXPECT_EQ(tops({app("A", 0.5, 900), app("B", 2, 100)}), (Tops{2, 900}));
}

TEST(Tops, AreNeverNothing) {
    EXPECT_EQ(tops({}), (Tops{0.01, 1}));
    EXPECT_EQ(tops({app("A", 0.001, 1)}), (Tops{0.01, 1}));
    EXPECT_EQ(tops({app("A", nan, 2)}), (Tops{0.01, 2}));
}

TEST(UsingTheMost, IsByTheLargerShareOfCPUOrMemory) {
    LiveSnapshot snapshot;
    snapshot.cpu = {.perCore = {0, 0, 0, 0}};
    snapshot.memory = {.total = 1000};
    snapshot.apps = {app("A", 1, 100), app("B", 0.1, 300), app("C", 2, 0), app("D", 0, 0)};
    EXPECT_EQ(order(snapshot), "C B A D ");
}

TEST(UsingTheMost, LeavesOutWhatTheSystemBrings) {
    LiveSnapshot snapshot;
    snapshot.apps = {app("A", 1, 0), app("B", 2, 0), app("C", 3, 0)};
    snapshot.apps[0].bundlePath.reset();
    snapshot.apps[1].bundlePath = "/System/Library/CoreServices/B.app";
    snapshot.apps[2].bundlePath = "/System/Applications/C.app";
    EXPECT_EQ(order(snapshot), "C A ");
}

TEST(UsingTheMost, WithoutTotalsOneCoreAndOneByteAreAll) {
    LiveSnapshot snapshot;
    snapshot.apps = {app("A", 3, 1), app("B", 1, 2), app("C", nan, 4), app("D", 3, 0)};
    EXPECT_EQ(order(snapshot), "C A D B ");
    snapshot.cpu.emplace();
    snapshot.memory = {.total = 1};
    EXPECT_EQ(order(snapshot), "C A D B ");
}

TEST(IsTavero, ComparesTheBundlePath) {
    AppUsage row = app("Tavero.app", 0, 0);
    EXPECT_TRUE(isTavero(row, "/Applications/Tavero.app"));
    EXPECT_FALSE(isTavero(row, "/Applications/Other.app"));
    row.bundlePath.reset();
    EXPECT_FALSE(isTavero(row, "/Applications/Tavero.app"));
    EXPECT_FALSE(isTavero(row, ""));
}

TEST(NotchTexts, TellCPUAndMemory) {
    LiveSnapshot snapshot;
    EXPECT_EQ(notchCPU(snapshot), "–%");
    EXPECT_EQ(notchMemory(snapshot), "");
    snapshot.cpu = {.user = 0.3, .system = 0.17};
    snapshot.memory = {.app = 5ull << 30, .wired = 1ull << 29};
    EXPECT_EQ(notchCPU(snapshot), "47%");
    EXPECT_EQ(notchMemory(snapshot), "5.5 GB");
    snapshot.cpu->user = nan;
    EXPECT_EQ(notchCPU(snapshot), "–%");
}

} // namespace
} // namespace tavero
