#include "apps/AppRows.h"

#include <gtest/gtest.h>

#include <vector>

namespace tavero {
namespace {

const AppIdentity web{AppIdentity::Kind::app, "/Applications/Web.app"};
const AppIdentity node{AppIdentity::Kind::tool, "node"};

ProcessSample process(std::int32_t pid, const std::string& name, double cpu,
                      std::uint64_t memory = 0) {
    return {.pid = pid, .name = name, .cpu = cpu, .memory = memory, .hasUsage = true};
}

AppUsage row(const std::vector<ProcessSample>& processes, const UsageExtras& extras = {},
             const NetworkTotals& totals = {}, const AppIdentity& identity = web) {
    std::vector<const ProcessSample*> borrowed;
    borrowed.reserve(processes.size());
    for (const ProcessSample& p : processes) borrowed.push_back(&p);
    return usage(AppGroup(identity, "Web", borrowed), extras, totals);
}

TEST(AppRows, ARowSumsItsProcesses) {
    ProcessSample a = process(1, "Web", 0.5, 10), b = process(2, "Helper", 0.25, 20);
    a.diskReadRate = 1, a.diskWriteRate = 2, a.threads = 3;
    b.diskReadRate = 10, b.diskWriteRate = 20, b.threads = 30;
    const AppUsage sum = row({a, b});
    EXPECT_EQ(sum.identity, web);
    EXPECT_EQ(sum.name, "Web");
    EXPECT_EQ(sum.bundlePath, web.id);
    EXPECT_DOUBLE_EQ(sum.cpu, 0.75);
    EXPECT_EQ(sum.memory, 30u);
    EXPECT_EQ(sum.processCount, 2);
    EXPECT_DOUBLE_EQ(sum.diskReadRate, 11);
    EXPECT_DOUBLE_EQ(sum.diskWriteRate, 22);
    EXPECT_EQ(sum.threads, 33);
}

TEST(AppRows, OnlyAnAppHasABundlePath) {
    EXPECT_FALSE(row({process(1, "node", 0)}, {}, {}, node).bundlePath);
    EXPECT_FALSE(row({process(1, "mds", 0)}, {}, {}, AppIdentity::system).bundlePath);
}

TEST(AppRows, GPUSharesAreSummedAndAbsentIfNoProcessHasOne) {
    const std::vector<ProcessSample> processes{process(1, "a", 0), process(2, "b", 0),
                                               process(3, "c", 0)};
    EXPECT_FALSE(row(processes, {.gpuShares = {{9, 0.5}}}).gpu);
    EXPECT_EQ(row(processes, {.gpuShares = {{2, 0.0}}}).gpu, 0.0);
    EXPECT_EQ(row(processes, {.gpuShares = {{1, 0.25}, {3, 0.5}, {9, 1.0}}}).gpu, 0.75);
}

TEST(AppRows, NetworkRatesAreSummedAndTotalsComeFromTheIdentity) {
    const std::vector<ProcessSample> processes{process(1, "a", 0), process(2, "b", 0)};
    const UsageExtras extras{.networkRates = {{1, {3, 4}}, {2, {10, 20}}, {9, {100, 100}}}};
    const AppUsage sum = row(processes, extras, {{web, {1000, 2000}}, {node, {5, 5}}});
    EXPECT_DOUBLE_EQ(sum.networkInRate, 13);
    EXPECT_DOUBLE_EQ(sum.networkOutRate, 24);
    EXPECT_EQ(sum.networkInTotal, 1000u);
    EXPECT_EQ(sum.networkOutTotal, 2000u);
    EXPECT_EQ(row(processes, extras).networkInTotal, 0u);
}

TEST(AppRows, AnAppWithASingleProcessHasNoChildrenAndNoNote) {
    const AppUsage single = row({process(1, "Helper", 2.0)});
    EXPECT_TRUE(single.children.empty());
    EXPECT_FALSE(single.note);
}

TEST(AppRows, ChildrenAreOneRowAProcessName) {
    ProcessSample helper = process(3, "Helper", 0.25, 7);
    helper.threads = 5, helper.diskReadRate = 1, helper.diskWriteRate = 2;
    const AppUsage parent =
        row({process(1, "Web", 0.4, 3), process(2, "Helper", 0.25, 5), helper},
            {.gpuShares = {{3, 0.5}}, .networkRates = {{3, {8, 9}}}}, {{web, {1, 1}}});
    ASSERT_EQ(parent.children.size(), 2u);
    EXPECT_EQ(parent.children[0],
              (AppUsage{.identity = {AppIdentity::Kind::tool, web.id + "|Helper"},
                        .name = "Helper × 2",
                        .cpu = 0.5,
                        .memory = 12,
                        .processCount = 2,
                        .diskReadRate = 1,
                        .diskWriteRate = 2,
                        .gpu = 0.5,
                        .threads = 5,
                        .networkInRate = 8,
                        .networkOutRate = 9}));
    EXPECT_EQ(parent.children[1], (AppUsage{.identity = {AppIdentity::Kind::tool, web.id + "|Web"},
                                            .name = "Web",
                                            .cpu = 0.4,
                                            .memory = 3,
                                            .processCount = 1}));
}

TEST(AppRows, ChildrenWithEqualCPUAreSortedByMemory) {
    const AppUsage parent =
        row({process(1, "a", 0, 1), process(2, "b", 0, 9), process(3, "c", 0.1, 0)});
    ASSERT_EQ(parent.children.size(), 3u);
    EXPECT_EQ(parent.children[0].name, "c");
    EXPECT_EQ(parent.children[1].name, "b");
    EXPECT_EQ(parent.children[2].name, "a");
}

TEST(AppRows, TwoProcessesOfOneNameAreOneChild) {
    const AppUsage parent = row({process(1, "worker", 0.5), process(2, "worker", 0.5)});
    ASSERT_EQ(parent.children.size(), 1u);
    EXPECT_EQ(parent.note, "mostly worker × 2");
}

TEST(AppRows, ANoteNeedsABusyRowAndADominantChild) {
    EXPECT_EQ(row({process(1, "Web", 0.08), process(2, "Tab", 0.12)}).note, "mostly Tab");
    EXPECT_FALSE(row({process(1, "Web", 0.0799), process(2, "Tab", 0.12)}).note);
    EXPECT_FALSE(row({process(1, "Web", 0.41), process(2, "Tab", 0.59)}).note);
    EXPECT_EQ(row({process(1, "Web", 0.25), process(2, "Tab", 0.75)}).note, "mostly Tab");
}

TEST(AppRows, AChildWhoseNameBeginsWithTheAppsGivesNoNote) {
    EXPECT_FALSE(row({process(1, "x", 0.1), process(2, "Web", 0.9)}).note);
    EXPECT_FALSE(row({process(1, "x", 0.1), process(2, "Web Content", 0.9)}).note);
    EXPECT_EQ(row({process(1, "x", 0.1), process(2, "web", 0.9)}).note, "mostly web");
}

AppUsage traffic(const std::string& name, double in, double out, std::uint64_t totalIn = 0,
                 std::uint64_t totalOut = 0) {
    return {.name = name,
            .networkInRate = in,
            .networkOutRate = out,
            .networkInTotal = totalIn,
            .networkOutTotal = totalOut};
}

TEST(NetworkApps, RowsWithNoTrafficNowOrEverAreDropped) {
    const auto rows =
        networkApps({traffic("never", 0, 0), traffic("now", 0, 1), traffic("once", 0, 0, 0, 7)});
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0].name, "now");
    EXPECT_EQ(rows[1].name, "once");
}

TEST(NetworkApps, SortedByRateThenByTotalThenAsGiven) {
    const auto rows = networkApps({traffic("a", 1, 1, 1, 1), traffic("b", 0, 3),
                                   traffic("c", 2, 0, 5, 5), traffic("d", 1, 1, 1, 1)});
    ASSERT_EQ(rows.size(), 4u);
    EXPECT_EQ(rows[0].name, "b");
    EXPECT_EQ(rows[1].name, "c");
    EXPECT_EQ(rows[2].name, "a");
    EXPECT_EQ(rows[3].name, "d");
}

TEST(NetworkApps, FifteenStandAndMoreAreCut) {
    std::vector<AppUsage> rows;
    rows.reserve(16);
    for (int i = 0; i < 15; ++i) rows.push_back(traffic(std::to_string(i), 100.0 - i, 0));
    EXPECT_EQ(networkApps(rows).size(), 15u);
    rows.push_back(traffic("busiest", 1000, 0));
    const auto cut = networkApps(rows);
    ASSERT_EQ(cut.size(), 15u);
    EXPECT_EQ(cut.front().name, "busiest");
    EXPECT_EQ(cut.back().name, "13");
}

TEST(NetworkApps, TotalsThatDoNotFitStillCount) {
    EXPECT_EQ(networkApps({traffic("a", 0, 0, ~0ull, 1)}).size(), 1u);
}

} // namespace
} // namespace tavero
